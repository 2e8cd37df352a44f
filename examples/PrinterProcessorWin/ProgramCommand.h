#pragma once

#include <string>
#include <vector>

#include "framework/core/containers/GTable.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"

class JobVariables;

/// ProgramCommand: the command of --run, a program and its arguments with variables in them.
///
/// The text is taken apart once, as Windows programs do it, before any variable is expanded. So no title
/// and no name of a job changes which program runs, or what is one argument: each is expanded by itself and
/// once only, and quoted so that it arrives unchanged.
class ProgramCommand {
public:
    /// The program may hold the variables that are paths, such as "%Program Files%", and none of a job.
    /// Without a folder it is looked for in the system's and then along PATH; with one, from the current
    /// folder on.
    ///
    /// Throws a UsageFailure when there is no such program, or it is a batch file or no program at all, and
    /// when an argument holds a variable that nobody knows or a percent sign without a partner.
    explicit ProgramCommand(const std::wstring& text);

    /// A full path.
    const std::wstring& GetProgram() const { return mProgram; }
    /// For GExternalProcess::Run, prepared.
    GTable<GString> MakeArguments(const JobVariables& variables) const;
    /// One line on what is dangerous in this command; empty when nothing is.
    std::wstring GetWarning() const;

private:
    std::wstring mProgram;
    std::vector<GString> mArguments;
};
