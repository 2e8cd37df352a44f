#pragma once

#include "monitor/handoff/GPPIPCManager.h"
#include "tests/ipc/IPCTestSupport.h"

inline constexpr long cType = 145;
inline constexpr long cMonitor = 100, cListener = 200, cOther = 300;  // processes
inline constexpr auto cTest = GIPCMessageQueueMgr::cTest;
inline constexpr const char* cRegistryName = "QulShDGIPCTest_PP";

/// The registry of that session, or of the machine, as any process can open it.
struct SomebodysRegistry : GIPCMessageQueueMgr {
    explicit SomebodysRegistry(long session)
        : GIPCMessageQueueMgr(GShMemID("GIPCTest_PP"), session, Scope::cOwnOnly) {}
};

/// As the monitor, in the registries for tests.
struct Monitor : Process<GPPIPCManager> {
    Monitor(IPCWorld& world, long processID, long session, GWaitBudget* budget = nullptr)
        : Process(world, processID, session, cTest, budget) {}
};

inline Entries Registry(const char* path) {
    return EntriesOf(RawSegment::Open(path, cRegistryName).get());
}
inline std::size_t CountIn(const char* path) {
    return Registry(path).size();
}
inline long RegistrationIn(const char* path, long processID) {
    for (const auto& [id, registrationID] : Registry(path))
        if (id == processID) return registrationID;
    return 0;
}

/// As a processing application.
struct Application : Listener<GPPIPCManager> {
    Application(IPCWorld& world, long processID, long session = 1)
        : Listener(world, processID, session, cTest), mGlobalID(RegistrationIn("Global\\", processID)) {}
    std::unique_ptr<RawSegment> OpenGlobalQueue() const {
        return RawSegment::Open("Global\\", QueueName(mID, mGlobalID));
    }
    void FillGlobalQueue() const {
        GIPCMessageQueue(-1, mID, mGlobalID).TryToAddRawMessage(1, BufferOf(Filler(32740)));
    }

    const long mGlobalID;
};

/// A machine on which monitors and processing applications meet.
struct HandOffTest : testing::Test {
    void Send(Monitor& sender, long processID, const char* text = "job") {
        sender.Act();
        sender.mManager->SendOnceRaw(processID, cType, BufferOf(text));
    }

    IPCWorld mWorld;
    SleepLog mSleep;
};
