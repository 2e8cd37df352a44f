#pragma once

#include <set>
#include <string>
#include <vector>

#include "framework/ipc/GShMemID.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"

/// A machine with the processes and sessions that a test needs, played by this one process.
///
/// Sessions 0 and 1 and the global name space are there on every system that the tests run on.
class IPCWorld {
public:
    static constexpr long cOtherProgram = 9000;

    IPCWorld();
    ~IPCWorld();
    IPCWorld(const IPCWorld&) = delete;
    IPCWorld& operator=(const IPCWorld&) = delete;

    /// Puts this world in place of the machine's own; again after the framework's end, which takes it away.
    void Install();
    /// From now on this process is `processID`, runs in `session`, and is alive. Each is a processing
    /// application, but for cOtherProgram.
    void ActAs(long processID, long session);
    void Kill(long processID) { mRunning.erase(processID); }
    /// From now on the system tells nothing about processes (GExceptionID::cUNIXSystemError), or tells again.
    void SetProcessesKnown(bool known) { mProcessesKnown = known; }
    /// What the system lists, -1 included.
    void SetSessions(const std::vector<long>& sessions) { mSessions = sessions; }

private:
    class Machine;

    long mProcessID = 0;
    long mSession = 0;
    bool mProcessesKnown = true;
    std::set<long> mRunning;
    std::vector<long> mSessions;
};
