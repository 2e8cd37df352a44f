#include "monitor/GPPIPCManager.h"

#include "framework/core/GBasicSignals.h"
#include "tests/ipc/ManagerTestSupport.h"
#include "tests/ipc/RawSegment.h"

namespace {

constexpr long cType = 145;
constexpr long cMonitor = 100;
constexpr long cListener = 200;
constexpr long cOther = 300;
constexpr auto cTest = GIPCMessageQueueMgr::cTest;
constexpr const char* cRegistryName = "QulShDGIPCTest_PP";

GShMemID RegistryID() {
    return GShMemID("GIPCTest_PP");
}

std::string QueueName(long processID, long registrationID) {
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

class GPPIPCManagerTest : public testing::Test {
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

TEST_F(GPPIPCManagerTest, AUsersProcessStandsInItsSessionsRegistryAndInTheGlobalOne) {
    Listener listener(mWorld, cListener, 1);
    EXPECT_FALSE(listener.mManager->RunsInServicesSession());
    EXPECT_TRUE(listener.mManager->HasGlobalRegistry());
    for (const char* path : {"Session\\1\\", "Global\\"}) {
        SCOPED_TRACE(path);
        ASSERT_EQ(CountIn(path), 1u);
        EXPECT_EQ(Registry(path)[0].first, cListener);
        EXPECT_NE(RawSegment::Open(path, QueueName(cListener, Registry(path)[0].second)), nullptr);
    }
    EXPECT_EQ(listener.mManager->GetRegistrationID(), RegistrationIn("Session\\1\\", cListener));
    listener.mReceiver->Unregister(cType);
    EXPECT_EQ(CountIn("Session\\1\\"), 0u);
    EXPECT_EQ(CountIn("Global\\"), 0u);
    listener.mReceiver->Register(cType);
    EXPECT_EQ(CountIn("Global\\"), 1u);
}

TEST_F(GPPIPCManagerTest, AServicesProcessRegistersOnce) {
    Listener listener(mWorld, cListener, 0);
    EXPECT_TRUE(listener.mManager->RunsInServicesSession());
    EXPECT_TRUE(listener.mManager->HasGlobalRegistry());
    EXPECT_EQ(CountIn("Session\\0\\"), 1u);
    // Where this is the same object, it has the same entry; elsewhere it has none.
    EXPECT_LE(CountIn("Global\\"), 1u);
    Process sender(mWorld, cMonitor, 0);
    mSleep.mReaction = [&](std::size_t) { listener.Tick(); };
    Send(sender, cListener);
    EXPECT_EQ(mSleep.mSleeps.size(), 1u);
}

TEST_F(GPPIPCManagerTest, WithoutASessionThereIsOneRegistry) {
    Listener listener(mWorld, cListener, -1);
    EXPECT_TRUE(listener.mManager->RunsInServicesSession());
    EXPECT_FALSE(listener.mManager->HasGlobalRegistry());
    EXPECT_EQ(CountIn("Global\\"), 1u);
    Process sender(mWorld, cMonitor, -1);
    Send(sender, cListener);
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
}

TEST_F(GPPIPCManagerTest, TheNormalRegistryIsAnotherOne) {
    mWorld.ActAs(cListener, 1);
    const GPPIPCManager manager;
    EXPECT_NE(RawSegment::Open("Session\\1\\", "QulShDGIPC_PP"), nullptr);
    EXPECT_EQ(RawSegment::Open("Session\\1\\", "QulShDGIPCTest_PP"), nullptr);
    EXPECT_EQ(RawSegment::Open("Session\\1\\", "QulShDGIPC"), nullptr);
}

TEST_F(GPPIPCManagerTest, AGlobalRegistryThatIsRefusedIsDoneWithout) {
    // In its place stands something that cannot be opened as one.
    const auto obstacle = RawSegment::Make("Global\\", cRegistryName, 100);
    Listener listener(mWorld, cListener, 1);
    EXPECT_FALSE(listener.mManager->HasGlobalRegistry());
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
    Process sender(mWorld, cOther, 1);
    Send(sender, cListener);
    EXPECT_EQ(listener.Tick(), Log{"300:145:job"});
}

TEST_F(GPPIPCManagerTest, AGlobalQueueThatIsRefusedIsDoneWithout) {
    Process monitor(mWorld, cMonitor, 0);
    monitor.mManager->GetListeningState(cListener);
    GIPCMessageQueueMgr global(RegistryID(), -1, GIPCMessageQueueMgr::Scope::cOwnOnly);
    RawSegment::Open("Global\\", cRegistryName)->SetWord(8, 0);  // the next ID will be 16838
    const auto obstacle = RawSegment::Make("Global\\", QueueName(cListener, 16838), 100);
    Listener listener(mWorld, cListener, 1);
    EXPECT_TRUE(listener.mReceiver != nullptr && listener.mManager->IsListening());
    EXPECT_EQ(CountIn("Global\\"), 0u);
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cListening);
    Send(monitor, cListener);
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
}

TEST_F(GPPIPCManagerTest, TellsListenersInEverySessionOnce) {
    Listener there(mWorld, cListener, 1);
    Listener here(mWorld, cOther, 0);
    Process monitor(mWorld, cMonitor, 0);
    for (Listener* listener : {&there, &here}) {
        SCOPED_TRACE(listener->mID);
        EXPECT_EQ(monitor.mManager->GetListeningState(listener->mID), GIPCManager::cListening);
        Send(monitor, listener->mID);
        EXPECT_EQ(listener->Tick(), Log{"100:145:job"});
        EXPECT_TRUE(listener->Tick().empty());
    }
    monitor.Act();
    monitor.mManager->BroadcastRaw(cType, Bytes("all"));
    for (Listener* listener : {&there, &here}) EXPECT_EQ(listener->Tick(), Log{"100:145:all"});
}

TEST_F(GPPIPCManagerTest, ChoosesTheSessionsQueueForItsOwnSessionAndTheGlobalOneForOthers) {
    Listener listener(mWorld, cListener, 1);
    GIPCMessageQueue own(1, cListener, RegistrationIn("Session\\1\\", cListener));
    GIPCMessageQueue global(-1, cListener, RegistrationIn("Global\\", cListener));
    Process neighbour(mWorld, cOther, 1);
    Send(neighbour, cListener, "from here");
    EXPECT_TRUE(own.ContainsRawMessage(cType, Bytes("from here")));
    EXPECT_FALSE(global.ContainsRawMessage(cType, Bytes("from here")));
    Process monitor(mWorld, cMonitor, 0);
    Send(monitor, cListener, "from there");
    EXPECT_FALSE(own.ContainsRawMessage(cType, Bytes("from there")));
    EXPECT_TRUE(global.ContainsRawMessage(cType, Bytes("from there")));
    EXPECT_EQ(listener.Tick(), (Log{"300:145:from here", "100:145:from there"}));
}

TEST_F(GPPIPCManagerTest, PassesOverQueuesThatCannotBeOpenedWhileAnotherCan) {
    Listener listener(mWorld, cListener, 1);
    GIPCMessageQueueMgr session(RegistryID(), 1, GIPCMessageQueueMgr::Scope::cOwnOnly);
    GIPCMessageQueueMgr global(RegistryID(), -1, GIPCMessageQueueMgr::Scope::cOwnOnly);
    Process neighbour(mWorld, cOther, 1);
    Process monitor(mWorld, cMonitor, 0);
    for (Process* sender : {&neighbour, &monitor}) {
        for (GIPCMessageQueueMgr* stale : {&session, &global}) {
            SCOPED_TRACE(sender->mID * 10 + stale->GetSession());
            stale->Register(cListener);
            EXPECT_EQ(sender->mManager->GetListeningState(cListener), GIPCManager::cListening);
            Send(*sender, cListener);
            EXPECT_EQ(listener.Tick().size(), 1u);
            stale->UnregisterOwn();
        }
    }
    // The whole of one registry's queues is stale: the other registry's is used.
    global.Unregister(cListener);
    global.Register(cListener);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cListening);
    Send(monitor, cListener);
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
}

TEST_F(GPPIPCManagerTest, TakesATargetWithoutAnyUsableQueueOutOfTheRegistries) {
    Process monitor(mWorld, cMonitor, 1);
    GIPCMessageQueueMgr session(RegistryID(), 1, GIPCMessageQueueMgr::Scope::cOwnOnly);
    GIPCMessageQueueMgr global(RegistryID(), -1, GIPCMessageQueueMgr::Scope::cOwnOnly);
    session.Register(cListener);
    global.Register(cListener);
    mWorld.ActAs(cListener, 1);
    monitor.Act();
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cNotUsable);
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 2450);
    EXPECT_EQ(CountIn("Session\\1\\"), 0u);
    EXPECT_EQ(CountIn("Global\\"), 0u);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cNotListening);
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 0);
}

TEST_F(GPPIPCManagerTest, AProcessThatDiedIsRegisteredButNotUsable) {
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    mWorld.Kill(cListener);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cNotUsable);
}

TEST_F(GPPIPCManagerTest, WaitsForAMessageSentOnceToBeTaken) {
    const struct {
        const char* what;
        std::size_t takenAt;  // the sleep in which the listener drains; 0 for never
        std::size_t sleeps;
    } rows[] = {{"during the first sleep", 1, 1}, {"later", 4, 4}, {"in the last", 11, 11}, {"never", 0, 11}};
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        mSleep.mSleeps.clear();
        mSleep.mReaction = [&](std::size_t count) {
            if (count == row.takenAt) listener.Tick();
        };
        Send(monitor, cListener);
        EXPECT_EQ(mSleep.mSleeps, std::vector<long>(row.sleeps, 300));
    }
    // What was never taken is still waiting. The same again is not added, but waited for.
    mSleep.mSleeps.clear();
    Send(monitor, cListener);
    EXPECT_EQ(mSleep.mSleeps.size(), 11u);
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
    mSleep.mSleeps.clear();
    monitor.mManager->SendRaw(cListener, cType, Bytes("not once"));
    EXPECT_TRUE(mSleep.mSleeps.empty());
}

TEST_F(GPPIPCManagerTest, ManyQueuesOfOneTargetDoNotMultiplyTheWait) {
    Listener first(mWorld, cListener, 1);
    Listener second(mWorld, cListener, 1);
    Listener third(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    Send(monitor, cListener);
    EXPECT_EQ(mSleep.mSleeps.size(), 11u);
    for (Listener* listener : {&first, &second, &third}) EXPECT_EQ(listener->Tick(), Log{"100:145:job"});
}

TEST_F(GPPIPCManagerTest, AQueueThatIsSpoiledWhileItIsWaitedForCountsAsReached) {
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    const auto raw =
        RawSegment::Open("Global\\", QueueName(cListener, RegistrationIn("Global\\", cListener)));
    mSleep.mReaction = [&](std::size_t) { raw->SetWord(8, 0xFFFFFFFF); };
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 0);
    EXPECT_EQ(mSleep.mSleeps.size(), 1u);
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
}

TEST_F(GPPIPCManagerTest, KeepsWhatDoesNotFitAndDeliversItOnATickWithoutWaiting) {
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    listener.Fill(-1, RegistrationIn("Global\\", cListener));
    Send(monitor, cListener, "first");
    Send(monitor, cListener, "second");
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 2);
    EXPECT_TRUE(GBasicSignals::GetRepeaters().IsSubscribed(*monitor.mManager));
    listener.Tick();
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
    EXPECT_FALSE(GBasicSignals::GetRepeaters().IsSubscribed(*monitor.mManager));
    listener.Tick();
    EXPECT_TRUE(mSleep.mSleeps.empty());
}

TEST_F(GPPIPCManagerTest, KeepsAtMost64MessagesForATargetTheNewestOnes) {
    Listener listener(mWorld, cListener, 1);
    Listener other(mWorld, cOther, 1);
    Process monitor(mWorld, cMonitor, 0);
    listener.Fill(-1, RegistrationIn("Global\\", cListener));
    other.Fill(-1, RegistrationIn("Global\\", cOther));
    Send(monitor, cOther, "the other's");
    for (int i = 1; i <= 66; ++i) Send(monitor, cListener, std::to_string(i).c_str());
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 65);
    listener.Tick();
    other.Tick();
    monitor.Act();
    monitor.mManager->ForceProcessPendingMessages();
    const Log log = listener.Tick();
    ASSERT_EQ(log.size(), 64u);
    EXPECT_EQ(log.front(), "100:145:3");
    EXPECT_EQ(log.back(), "100:145:66");
    EXPECT_EQ(other.Tick(), Log{"100:145:the other's"});
}

TEST_F(GPPIPCManagerTest, DropsWhatItKeepsForATargetThatHasEnded) {
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    listener.Fill(-1, RegistrationIn("Global\\", cListener));
    Send(monitor, cListener);
    monitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 1);
    mWorld.Kill(cListener);
    monitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
}

TEST_F(GPPIPCManagerTest, DropsWhatItKeepsForAQueueThatIsGoneOrBrokenAndNothingElse) {
    const struct {
        const char* what;
        long offset;
        std::uint32_t value;
    } rows[] = {{"another version", 4, 2}, {"an impossible end offset", 8, 7}, {"an impossible size", 0, 3}};
    Process monitor(mWorld, cMonitor, 0);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Listener listener(mWorld, cListener, 1);
        const long registrationID = RegistrationIn("Global\\", cListener);
        listener.Fill(-1, registrationID);
        Send(monitor, cListener);
        ASSERT_EQ(monitor.mManager->GetDelayedCount(), 1);
        const auto raw = RawSegment::Open("Global\\", QueueName(cListener, registrationID));
        raw->SetWord(row.offset, row.value);
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->ForceProcessPendingMessages(); }), 0);
        EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
        EXPECT_EQ(RegistrationIn("Session\\1\\", cListener), listener.mManager->GetRegistrationID());
        raw->SetWord(0, 32772);
    }
    {
        Listener listener(mWorld, cListener, 1);
        listener.Fill(-1, RegistrationIn("Global\\", cListener));
        Send(monitor, cListener);
    }
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 1);
    monitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
}

TEST_F(GPPIPCManagerTest, LeavesAQueueAloneWhileItIsBeingWrittenTo) {
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    listener.Fill(-1, RegistrationIn("Global\\", cListener));
    Send(monitor, cListener, "kept");
    listener.Tick();
    mSleep.mReaction = [&](std::size_t count) {
        // A program that goes on ticking while it waits.
        if (count == 1) {
            GBasicSignals::DevoteTimeToRepeaters();
            EXPECT_EQ(monitor.mManager->GetDelayedCount(), 1);
        }
    };
    Send(monitor, cListener, "new");
    mSleep.mReaction = nullptr;
    monitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
    EXPECT_EQ(listener.Tick(), (Log{"100:145:new", "100:145:kept"}));
}

TEST_F(GPPIPCManagerTest, ThrowsForWhatNoQueueCouldHold) {
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener, Filler(40000).c_str()); }), 40153);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cListening);
    EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
}

TEST_F(GPPIPCManagerTest, AMutexThatSomebodyKeepsCostsTheMonitorItsBudgetAndNoMore) {
    GWaitBudget budget(20);
    // Both registries may have begun with the same seed. One mutex would then guard both queues.
    GIPCMessageQueueMgr global(RegistryID(), -1, GIPCMessageQueueMgr::Scope::cOwnOnly);
    RawSegment::Open("Global\\", cRegistryName)->SetWord(8, 0);
    GIPCMessageQueueMgr session(RegistryID(), 1, GIPCMessageQueueMgr::Scope::cOwnOnly);
    RawSegment::Open("Session\\1\\", cRegistryName)->SetWord(8, 5);
    Listener listener(mWorld, cListener, 1);
    Listener free(mWorld, cOther, 1);
    Process monitor(mWorld, cMonitor, 0, &budget);
    Send(monitor, cOther);
    EXPECT_EQ(free.Tick(), Log{"100:145:job"});
    const long sessionID = RegistrationIn("Session\\1\\", cListener);
    const long globalID = RegistrationIn("Global\\", cListener);
    ASSERT_NE(sessionID, globalID);
    {
        const MutexHog first(GIPCMessageQueue::ConvertToMemoryID(cListener, sessionID));
        const MutexHog second(GIPCMessageQueue::ConvertToMemoryID(cListener, globalID));
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->GetListeningState(cListener); }), 40202);
        EXPECT_EQ(budget.GetRemaining(), 0);
        EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 40202);
        Send(monitor, cOther, "still");
        EXPECT_EQ(free.Tick(), Log{"100:145:still"});
    }
    Send(monitor, cListener);
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
    {
        const MutexHog hog(RegistryID());
        EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 40202);
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->GetListeningState(cListener); }), 40202);
        EXPECT_EQ(ThrownBy([&] { GPPIPCManager::AddReference(cTest, &budget); }), 40202);
        EXPECT_EQ(GPPIPCManager::GetInstance(), nullptr);
    }
}

TEST_F(GPPIPCManagerTest, AKeptMessageWaitsForNoMutex) {
    GWaitBudget budget(0);
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0, &budget);
    const long registrationID = RegistrationIn("Global\\", cListener);
    listener.Fill(-1, registrationID);
    Send(monitor, cListener);
    listener.Tick();
    {
        const MutexHog hog(GIPCMessageQueue::ConvertToMemoryID(cListener, registrationID));
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->Receive(101, GEmptyMessage()); }), 0);
        EXPECT_EQ(monitor.mManager->GetDelayedCount(), 1);
    }
    monitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
}

TEST_F(GPPIPCManagerTest, HostileRegistriesSurfaceAsNumbersAndDoNotHideTheGoodOne) {
    Listener listener(mWorld, cListener, 1);
    Process neighbour(mWorld, cOther, 1);
    const auto session = RawSegment::Open("Session\\1\\", cRegistryName);
    const auto global = RawSegment::Open("Global\\", cRegistryName);
    const std::uint32_t good = session->GetWord(12);
    session->SetWord(12, 0xFFFFFFFF);
    EXPECT_EQ(neighbour.mManager->GetListeningState(cListener), GIPCManager::cListening);
    Send(neighbour, cListener);
    global->SetWord(12, 5);
    EXPECT_EQ(ThrownBy([&] { neighbour.mManager->GetListeningState(cListener); }), 40161);
    EXPECT_EQ(ThrownBy([&] { Send(neighbour, cListener); }), 40161);
    session->SetWord(12, good);
    Send(neighbour, cListener, "other");
    EXPECT_EQ(listener.Tick(), (Log{"300:145:other", "300:145:job"}));
    global->SetWord(12, good);
}

TEST_F(GPPIPCManagerTest, TheInstanceIsCounted) {
    mWorld.ActAs(cMonitor, 0);
    GPPIPCManager::AddReference(cTest);
    GPPIPCManager* instance = GPPIPCManager::GetInstance();
    ASSERT_NE(instance, nullptr);
    GPPIPCManager::AddReference(cTest);
    GPPIPCManager::ReleaseReference();
    EXPECT_EQ(GPPIPCManager::GetInstance(), instance);
    GPPIPCManager::ReleaseReference();
    EXPECT_EQ(GPPIPCManager::GetInstance(), nullptr);
    EXPECT_EQ(RawSegment::Open("Session\\0\\", cRegistryName), nullptr);
    GPPIPCManager::ReleaseReference();
    GPPIPCManager::AddReference(cTest);
    EXPECT_NE(GPPIPCManager::GetInstance(), nullptr);
    GPPIPCManager::ReleaseReference();
}

TEST_F(GPPIPCManagerTest, AtItsEndItHandlesWhatIsPending) {
    Listener listener(mWorld, cListener, 1);
    {
        Process monitor(mWorld, cMonitor, 0);
        listener.Fill(-1, RegistrationIn("Global\\", cListener));
        Send(monitor, cListener);
        listener.Tick();
    }
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
    NotingReceiver* receiver = listener.mReceiver.get();
    Process neighbour(mWorld, cOther, 1);
    Send(neighbour, cListener, "last");
    listener.Act();
    listener.mManager.reset();
    EXPECT_EQ(receiver->TakeLog(), Log{"300:145:last"});
    EXPECT_EQ(CountIn("Session\\1\\"), 0u);
}

}  // namespace
