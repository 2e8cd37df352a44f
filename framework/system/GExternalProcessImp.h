#pragma once

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"

/// GExternalProcessImp: what a platform supplies for GExternalProcess, where the calls are described.
class QUILLON_EXPORT GExternalProcessImp {
public:
    GExternalProcessImp(const GExternalProcessImp&) = delete;
    GExternalProcessImp& operator=(const GExternalProcessImp&) = delete;
    virtual ~GExternalProcessImp();

    virtual bool Run(const GPathName& program, const GTable<GString>& arguments, bool showWindow,
                     bool argumentsPrepared, const GPathName& workingFolder) = 0;
    virtual bool IsRunning() = 0;
    virtual bool WaitForEnd(long milliseconds) = 0;
    virtual long GetReturnValue() const = 0;
    virtual long GetProcessID() const = 0;
    virtual bool SetPriority(long priority) = 0;
    virtual bool TerminateProcess() = 0;
    virtual void DetachProcess() = 0;

    /// The platform's own, attached to that process, or to none for 0; the caller owns it.
    static GExternalProcessImp* Create(long processID);

protected:
    GExternalProcessImp() = default;
};
