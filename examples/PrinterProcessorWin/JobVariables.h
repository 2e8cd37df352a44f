#pragma once

#include <string>
#include <utility>
#include <vector>

#include "framework/services/GVariableMgr.h"
#include "receiver/Job.h"

/// JobVariables: what the variables in the command of --run stand for.
///
///     %JobPath%      the job file, as a full path             QUILLON_JOB_PATH
///     %JobName%      its name without folder and ".ps"        QUILLON_JOB_NAME
///     %UserName%     who printed                              QUILLON_USER_NAME
///     %PrinterName%  the printer                              QUILLON_PRINTER_NAME
///     %PortName%     the port                                 QUILLON_PORT_NAME
///     %CopyCount%    copies asked for                         QUILLON_COPY_COUNT
///
/// and those of GVariableMgr, of which %User Name% is who printed, %Current Document Name% the same as
/// %JobName%, and %Unique ID% differs from job to job.
///
/// Whoever prints chooses the values, so all but %JobPath% are made fit to stand in a file name or alone: no
/// separator of paths, no quotation mark, no percent sign (which many programs read as a pattern), and no
/// '-' or '@' in front, which could be read as an option.
class JobVariables final : public GVariableMgr {
public:
    /// The job outlives the object.
    explicit JobVariables(const Job& job);

    /// The variables of the environment in the right column and their values: as they came, but with '_' for
    /// control characters and quotation marks, with which a value could get out of a batch file's quotes.
    std::vector<std::pair<std::wstring, std::wstring>> GetEnvironment() const;

protected:
    void GetUserName(GString& value) const override;
    void GetCurrentDocumentName(GString& value) const override;
    void GetUniqueID(GString& value) const override;
    bool GetCustomVariable(const GString& name, GString& value) const override;

private:
    const Job& mJob;
};
