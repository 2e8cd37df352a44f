#include "tests/ipc/IPCWorld.h"

#include "framework/core/errors/GException.h"
#include "framework/system/PSystem.h"

// Both kinds of information. Each of the two places where the framework looks for one owns a machine.
class IPCWorld::Machine : public GProcessInfo, public GSessionInfo {
public:
    explicit Machine(const IPCWorld& world) : mWorld(world) {}

    unsigned long long GetTotalPhysicalMemory() override { return 0; }
    unsigned long long GetAvailablePhysicalMemory() override { return 0; }
    unsigned long long GetOwnMemory() override { return 0; }
    GTable<std::int32_t> GetRunningProcessIDs() override {
        if (!mWorld.mProcessesKnown) throw GSimpleException(GExceptionID::cUNIXSystemError);
        GTable<std::int32_t> ids;
        for (const long processID : mWorld.mRunning) ids.Append(static_cast<std::int32_t>(processID));
        return ids;
    }
    /// All are processing applications.
    void GetProcessIDs(const GString&, GTable<std::int32_t>& ids, bool) override {
        ids = GetRunningProcessIDs();
    }
    void GetProcessNames(GTable<GString>& names, bool) override { names.Clear(); }
    long GetCurrentProcessID() override { return mWorld.mProcessID; }
    bool IsProcessRunning(long processID) override { return mWorld.mRunning.count(processID) > 0; }
    GTable<std::int32_t> GetChildProcessIDs(long) override { return {}; }
    GPathName GetApplicationPath() override { return GPathName(); }
    GString GetProcessName(long processID) override {
        if (!mWorld.mProcessesKnown) throw GSimpleException(GExceptionID::cUNIXSystemError);
        if (!IsProcessRunning(processID)) return GString();
        return GString(processID == cOtherProgram ? "printerprocessorwin.exe" : "PrinterProcessorWin.exe");
    }

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
    GProcessInfo::SetInstance(new Machine(*this));
    GSessionInfo::SetInstance(new Machine(*this));
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
