#include "tests/ipc/IPCWorld.h"

#include "framework/core/errors/GException.h"
#include "framework/system/PSystem.h"

class IPCWorld::Processes : public GProcessInfo {
public:
    explicit Processes(const IPCWorld& world) : mWorld(world) {}

    unsigned long long GetTotalPhysicalMemory() override { return 0; }
    unsigned long long GetAvailablePhysicalMemory() override { return 0; }
    unsigned long long GetOwnMemory() override { return 0; }
    /// All are processing applications.
    void GetProcessIDs(const GString&, GTable<std::int32_t>& ids, bool) override {
        if (!mWorld.mProcessesKnown) throw GSimpleException(GExceptionID::cUNIXSystemError);
        ids.Clear();
        for (const long processID : mWorld.mRunning) ids.Append(static_cast<std::int32_t>(processID));
    }
    void GetProcessNames(GTable<GString>& names, bool) override { names.Clear(); }
    long GetCurrentProcessID() override { return mWorld.mProcessID; }
    bool IsProcessRunning(long processID) override { return mWorld.mRunning.count(processID) > 0; }
    GTable<std::int32_t> GetChildProcessIDs(long) override { return {}; }
    GPathName GetApplicationPath() override { return GPathName(); }
    GTable<std::int32_t> GetRunningProcessIDs() override {
        GTable<std::int32_t> ids;
        GetProcessIDs(GString(), ids, false);
        return ids;
    }
    GString GetProcessName(long processID) override {
        if (!mWorld.mProcessesKnown) throw GSimpleException(GExceptionID::cUNIXSystemError);
        if (!IsProcessRunning(processID)) return GString();
        return GString(processID == cOtherProgram ? "printerprocessorwin.exe" : "PrinterProcessorWin.exe");
    }

private:
    const IPCWorld& mWorld;
};

class IPCWorld::Sessions : public GSessionInfo {
public:
    explicit Sessions(const IPCWorld& world) : mWorld(world) {}

    long GetCurrentSessionID() override { return mWorld.mSession; }
    void GetSessionIDs(GTable<std::int32_t>& ids) override {
        ids.Clear();
        for (const long session : mWorld.mSessions) ids.Append(static_cast<std::int32_t>(session));
    }
    void GetSessionPath(GBuffer& path, long session) override {
        path = (session < 0 ? "Global\\" : "Session\\" + std::to_string(session) + "\\").c_str();
    }

private:
    const IPCWorld& mWorld;
};

void IPCWorld::Install() {
    GShMemID::Initialize();
    GProcessInfo::SetInstance(new Processes(*this));
    GSessionInfo::SetInstance(new Sessions(*this));
}

IPCWorld::IPCWorld() {
    Install();
    // Only Windows has a name space beside its sessions that is not searched with them.
    const bool isWindows = PSystem::GetPlatformCode() == PSystem::cPlatformWindows;
    mSessions = isWindows ? std::vector<long>{-1, 0, 1} : std::vector<long>{0, 1};
    ActAs(4711, 1);
}

IPCWorld::~IPCWorld() {
    GSessionInfo::SetInstance(nullptr);
    GProcessInfo::SetInstance(nullptr);
    GShMemID::Finalize();
}

void IPCWorld::ActAs(long processID, long session) {
    mProcessID = processID;
    mSession = session;
    mRunning.insert(processID);
}
