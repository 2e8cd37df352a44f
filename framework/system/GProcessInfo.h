#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"

/// GProcessInfo: facts about the running processes and the machine's memory.
///
/// A process that cannot be opened or named is left out. PWin32SystemException is thrown when the
/// list of processes itself cannot be had. Callable from any thread.
class QUILLON_EXPORT GProcessInfo {
public:
    GProcessInfo(const GProcessInfo&) = delete;
    GProcessInfo& operator=(const GProcessInfo&) = delete;
    virtual ~GProcessInfo();

    /// In bytes; 0 when the system does not tell.
    virtual unsigned long long GetTotalPhysicalMemory() = 0;
    /// The same for what is free now.
    virtual unsigned long long GetAvailablePhysicalMemory() = 0;
    /// The bytes that this process has committed for itself; 0 when the system does not tell.
    virtual unsigned long long GetOwnMemory() = 0;
    /// Replaces `ids` with the processes whose program file has exactly this leaf, such as
    /// "notepad.exe" (case matters): those of all users, or of the current user only.
    virtual void GetProcessIDs(const GString& name, GTable<std::int32_t>& ids, bool currentUserOnly) = 0;
    /// Replaces `names` with the leaf of every process's program file, one entry a process.
    virtual void GetProcessNames(GTable<GString>& names, bool currentUserOnly) = 0;
    virtual long GetCurrentProcessID() = 0;  ///< never fails
    /// Whether the system lists it now; an ID may be given to another process once its own has ended.
    virtual bool IsProcessRunning(long processID) = 0;
    /// The processes that were started by that one and run now.
    virtual GTable<std::int32_t> GetChildProcessIDs(long processID) = 0;
    /// The file of the running program.
    virtual GPathName GetApplicationPath() = 0;
    /// All processes, whether they can be opened or not: one look at the system, however many are asked
    /// about afterwards.
    virtual GTable<std::int32_t> GetRunningProcessIDs() = 0;
    /// The leaf of the process's program file; empty for a process that is not there or cannot be opened.
    /// Asks about this process alone, while a list of all takes the system the longer the more there are.
    virtual GString GetProcessName(long processID) = 0;

    /// Never null; the platform's own is made on first use.
    static GProcessInfo* GetInstance();
    /// Takes ownership of `info` and deletes the one before. Null, and the framework's end, bring the
    /// platform's own back on the next use. Not while another thread uses the old one.
    static void SetInstance(GProcessInfo* info);

protected:
    GProcessInfo() = default;

private:
    static GProcessInfo* CreateDefault();  // supplied by the platform
};
