// Where a manager registers, and how it finds others.
#include "tests/monitor/handoff/HandOffTestSupport.h"

namespace {

using GPPIPCManagerTest = HandOffTest;

TEST_F(GPPIPCManagerTest, AUsersProcessStandsInItsSessionsRegistryAndInTheGlobalOne) {
    Application listener(mWorld, cListener);
    EXPECT_TRUE(listener.mManager->HasGlobalRegistry());
    for (const char* path : {"Session\\1\\", "Global\\"}) {
        EXPECT_EQ(CountIn(path), 1u) << path;
        EXPECT_NE(RawSegment::Open(path, QueueName(cListener, RegistrationIn(path, cListener))), nullptr);
    }
    EXPECT_EQ(listener.mManager->GetRegistrationID(), RegistrationIn("Session\\1\\", cListener));
    listener.mReceiver->Unregister(cType);
    EXPECT_EQ(CountIn("Session\\1\\") + CountIn("Global\\"), 0u);
    listener.mReceiver->Register(cType);
    EXPECT_EQ(CountIn("Global\\"), 1u);
}

TEST_F(GPPIPCManagerTest, WithoutASessionOfItsOwnAProcessRegistersOnce) {
    for (const long session : {0L, -1L}) {
        SCOPED_TRACE(session);
        Application listener(mWorld, cListener, session);
        EXPECT_EQ(listener.mManager->HasGlobalRegistry(), session == 0);
        EXPECT_EQ(CountIn(session == 0 ? "Session\\0\\" : "Global\\"), 1u);
        // Where the two are the same object, it has the same entry; elsewhere it has none.
        EXPECT_LE(CountIn("Global\\"), 1u);
        Monitor sender(mWorld, cMonitor, session);
        mSleep.mSleeps.clear();
        mSleep.mReaction = [&](std::size_t) { EXPECT_EQ(listener.Tick(), Log{"100:145:job"}); };
        Send(sender, cListener);
        EXPECT_EQ(mSleep.mSleeps.size(), 1u);
    }
}

TEST_F(GPPIPCManagerTest, AGlobalRegistryThatIsRefusedIsDoneWithout) {
    // In its place stands something that cannot be opened as one.
    const auto obstacle = RawSegment::Make("Global\\", cRegistryName, 100);
    Application listener(mWorld, cListener);
    EXPECT_FALSE(listener.mManager->HasGlobalRegistry());
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
    Monitor sender(mWorld, cOther, 1);
    Send(sender, cListener);
    EXPECT_EQ(listener.Tick(), Log{"300:145:job"});
}

TEST_F(GPPIPCManagerTest, AGlobalQueueThatIsRefusedIsDoneWithout) {
    Monitor monitor(mWorld, cMonitor, 0);
    monitor.mManager->GetListeningState(cListener);
    const SomebodysRegistry global(-1);
    RawSegment::Open("Global\\", cRegistryName)->SetWord(8, 0);  // the next ID will be 16838
    const auto obstacle = RawSegment::Make("Global\\", QueueName(cListener, 16838), 100);
    Application listener(mWorld, cListener);
    EXPECT_TRUE(listener.mReceiver != nullptr && listener.mManager->IsListening());
    EXPECT_EQ(CountIn("Global\\"), 0u);
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cListening);
    Send(monitor, cListener);
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
}

TEST_F(GPPIPCManagerTest, TellsListenersInEverySessionOnceThroughTheQueueThatIsNearest) {
    Application there(mWorld, cListener, 1);
    Application here(mWorld, cOther, 0);
    const std::string ownQueue = QueueName(cListener, RegistrationIn("Session\\1\\", cListener));
    for (const long session : {1L, 0L}) {
        SCOPED_TRACE(session);
        Monitor sender(mWorld, cMonitor, session);
        mSleep.mSleeps.clear();
        mSleep.mReaction = [&](std::size_t count) {
            const std::uint32_t end = RawSegment::Open("Session\\1\\", ownQueue)->GetWord(8);
            EXPECT_TRUE(count > 1 || (end > 8) == (session == 1))
                << "the session's own queue, or the global one";
        };
        for (Application* listener : {&there, &here}) {
            EXPECT_EQ(sender.mManager->GetListeningState(listener->mID), GIPCManager::cListening);
            Send(sender, listener->mID);
            EXPECT_EQ(listener->Tick(), Log{"100:145:job"});
        }
        sender.Act();
        sender.mManager->BroadcastRaw(cType, BufferOf("all"));
        for (Application* listener : {&there, &here}) EXPECT_EQ(listener->Tick(), Log{"100:145:all"});
    }
    Monitor monitor(mWorld, cMonitor, 0);
    mWorld.Kill(cListener);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cNotUsable);
}

TEST_F(GPPIPCManagerTest, PassesOverQueuesThatCannotBeOpenedWhileAnotherCan) {
    Application listener(mWorld, cListener);
    SomebodysRegistry session(1), global(-1);
    Monitor neighbour(mWorld, cOther, 1);
    Monitor monitor(mWorld, cMonitor, 0);
    for (Monitor* sender : {&neighbour, &monitor}) {
        for (SomebodysRegistry* stale : {&session, &global}) {
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
    Monitor monitor(mWorld, cMonitor, 1);
    SomebodysRegistry session(1), global(-1);
    session.Register(cListener);
    global.Register(cListener);
    mWorld.ActAs(cListener, 1);
    monitor.Act();
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cNotUsable);
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 2450);
    EXPECT_EQ(CountIn("Session\\1\\") + CountIn("Global\\"), 0u);
    EXPECT_EQ(monitor.mManager->GetListeningState(cListener), GIPCManager::cNotListening);
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 0);
}

TEST_F(GPPIPCManagerTest, TheInstanceIsCounted) {
    mWorld.ActAs(cMonitor, 0);
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 2; ++i) GPPIPCManager::AddReference(cTest);
        GPPIPCManager::ReleaseReference();
        EXPECT_NE(GPPIPCManager::GetInstance(), nullptr);
        for (int i = 0; i < 2; ++i) GPPIPCManager::ReleaseReference();
        EXPECT_EQ(GPPIPCManager::GetInstance(), nullptr);
        EXPECT_EQ(RawSegment::Open("Session\\0\\", cRegistryName), nullptr);
    }
}

}  // namespace
