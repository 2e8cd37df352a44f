#pragma once

#include "monitor/handoff/GPPIPCManager.h"
#include "tests/ipc/IPCTestSupport.h"

inline constexpr long cType = 145;
inline constexpr long cMonitor = 100;
inline constexpr long cListener = 200;
inline constexpr long cOther = 300;
inline constexpr auto cTest = GIPCMessageQueueMgr::cTest;
inline constexpr const char* cRegistryName = "QulShDGIPCTest_PP";

inline GShMemID RegistryID() {
    return GShMemID("GIPCTest_PP");
}

/// As the monitor, in the registries for tests.
struct Monitor : Process<GPPIPCManager> {
    Monitor(IPCWorld& world, long processID, long session, GWaitBudget* budget = nullptr)
        : Process(world, processID, session, cTest, budget) {}
};

/// As a processing application.
struct Application : Listener<GPPIPCManager> {
    Application(IPCWorld& world, long processID, long session) : Listener(world, processID, session, cTest) {}
    /// Fills the queue that stands under this path.
    void Fill(long session, long registrationID) {
        GIPCMessageQueue(session, mID, registrationID).TryToAddRawMessage(1, BufferOf(Filler(32740)));
    }
};

/// A machine on which monitors and processing applications meet.
struct HandOffTest : testing::Test {
    static Entries Registry(const char* path) {
        return EntriesOf(RawSegment::Open(path, cRegistryName).get());
    }
    static long RegistrationIn(const char* path, long processID) {
        for (const auto& [id, registrationID] : Registry(path))
            if (id == processID) return registrationID;
        return 0;
    }
    static Entries::size_type CountIn(const char* path) { return Registry(path).size(); }
    void Send(Monitor& sender, long processID, const char* text = "job") {
        sender.Act();
        sender.mManager->SendOnceRaw(processID, cType, BufferOf(text));
    }

    IPCWorld mWorld;
    SleepLog mSleep;
};
