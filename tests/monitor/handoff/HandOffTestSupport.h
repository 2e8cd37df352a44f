#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "monitor/handoff/GPPIPCManager.h"
#include "tests/ipc/ManagerTestSupport.h"
#include "tests/ipc/RawSegment.h"

inline constexpr long cType = 145;
inline constexpr long cMonitor = 100;
inline constexpr long cListener = 200;
inline constexpr long cOther = 300;
inline constexpr auto cTest = GIPCMessageQueueMgr::cTest;
inline constexpr const char* cRegistryName = "QulShDGIPCTest_PP";

inline GShMemID RegistryID() {
    return GShMemID("GIPCTest_PP");
}

inline std::string QueueName(long processID, long registrationID) {
    return "QulShDP" + std::to_string(processID) + "MQ" + std::to_string(registrationID);
}

/// A process with a manager, as the monitor's.
struct Process {
    Process(IPCWorld& world, long processID, long session, GWaitBudget* budget = nullptr)
        : mWorld(world), mID(processID), mSession(session) {
        Act();
        mManager = std::make_unique<GPPIPCManager>(cTest, budget);
    }
    ~Process() {
        Act();
        mManager.reset();
    }
    void Act() { mWorld.ActAs(mID, mSession); }

    IPCWorld& mWorld;
    long mID;
    long mSession;
    std::unique_ptr<GPPIPCManager> mManager;
};

/// One that listens, as a processing application.
struct Listener : Process {
    Listener(IPCWorld& world, long processID, long session) : Process(world, processID, session) {
        mReceiver = std::make_unique<NotingReceiver>(mManager.get(), cType);
    }
    ~Listener() {
        Act();
        mReceiver.reset();
    }
    Log Tick() {
        mManager->ForceProcessPendingMessages();
        return mReceiver->TakeLog();
    }
    /// Fills the queue that stands under this path.
    void Fill(long session, long registrationID) {
        GIPCMessageQueue(session, mID, registrationID).TryToAddRawMessage(1, Bytes(Filler(32740)));
    }

    std::unique_ptr<NotingReceiver> mReceiver;
};

/// A machine on which monitors and processing applications meet.
class HandOffTest : public testing::Test {
protected:
    using Entries = std::vector<std::pair<long, long>>;

    /// Process and registration ID of every entry that a registry's segment holds.
    static Entries Registry(const char* path) {
        Entries entries;
        const auto raw = RawSegment::Open(path, cRegistryName);
        for (long offset = 16; raw && offset < static_cast<long>(raw->GetWord(12)) + 4; offset += 8)
            entries.push_back({raw->GetWord(offset), raw->GetWord(offset + 4)});
        return entries;
    }
    static long RegistrationIn(const char* path, long processID) {
        for (const auto& [id, registrationID] : Registry(path))
            if (id == processID) return registrationID;
        return 0;
    }
    static Entries::size_type CountIn(const char* path) { return Registry(path).size(); }
    void Send(Process& sender, long processID, const char* text = "job") {
        sender.Act();
        sender.mManager->SendOnceRaw(processID, cType, Bytes(text));
    }

    IPCWorld mWorld;
    SleepLog mSleep;
};
