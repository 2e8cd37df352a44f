#pragma once

#include "framework/system/GProcessInfo.h"

/// PWinProcessInfo: the processes as the process snapshot and the terminal services tell them.
class PWinProcessInfo : public GProcessInfo {
public:
    unsigned long long GetTotalPhysicalMemory() override;
    unsigned long long GetAvailablePhysicalMemory() override;
    unsigned long long GetOwnMemory() override;
    void GetProcessIDs(const GString& name, GTable<std::int32_t>& ids, bool currentUserOnly) override;
    void GetProcessNames(GTable<GString>& names, bool currentUserOnly) override;
    long GetCurrentProcessID() override;
    bool IsProcessRunning(long processID) override;
    GTable<std::int32_t> GetChildProcessIDs(long processID) override;
    GPathName GetApplicationPath() override;
    GTable<std::int32_t> GetRunningProcessIDs() override;
    GString GetProcessName(long processID) override;
};
