// What becomes of a message: taken, waited for, kept, dropped.
#include "framework/core/events/GBasicSignals.h"
#include "tests/monitor/handoff/HandOffTestSupport.h"

#include <tuple>

namespace {

using GPPIPCManagerDeliveryTest = HandOffTest;

TEST_F(GPPIPCManagerDeliveryTest, WaitsForAMessageSentOnceToBeTaken) {
    const std::tuple<const char*, std::size_t, std::size_t> rows[] = {
        {"during the first sleep", 1, 1}, {"later", 4, 4}, {"in the last", 11, 11}, {"never", 0, 11}};
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    for (const auto& [what, takenAt, sleeps] : rows) {
        SCOPED_TRACE(what);
        mSleep.mSleeps.clear();
        mSleep.mReaction = [&](std::size_t count) {
            if (count == takenAt) listener.Tick();
        };
        Send(monitor, cListener);
        EXPECT_EQ(mSleep.mSleeps, std::vector<long>(sleeps, 300));
    }
    // What was never taken is still waiting. The same again is not added, but waited for; many queues of one
    // target do not multiply the wait.
    Listener second(mWorld, cListener, 1);
    mSleep.mSleeps.clear();
    Send(monitor, cListener);
    EXPECT_EQ(mSleep.mSleeps.size(), 11u);
    for (Listener* each : {&listener, &second}) EXPECT_EQ(each->Tick(), Log{"100:145:job"});
    mSleep.mSleeps.clear();
    monitor.mManager->SendRaw(cListener, cType, Bytes("not once"));
    EXPECT_TRUE(mSleep.mSleeps.empty());
}

TEST_F(GPPIPCManagerDeliveryTest, AQueueThatIsSpoiledWhileItIsWaitedForCountsAsReached) {
    Listener listener(mWorld, cListener, 1);
    Process monitor(mWorld, cMonitor, 0);
    const auto raw =
        RawSegment::Open("Global\\", QueueName(cListener, RegistrationIn("Global\\", cListener)));
    mSleep.mReaction = [&](std::size_t) { raw->SetWord(8, 0xFFFFFFFF); };
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 0);
    EXPECT_EQ(mSleep.mSleeps.size(), 1u);
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
}

TEST_F(GPPIPCManagerDeliveryTest, KeepsAtMost64MessagesForATargetTheNewestOnes) {
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

TEST_F(GPPIPCManagerDeliveryTest, DropsWhatItKeepsForAQueueThatIsGoneOrBrokenAndNothingElse) {
    const std::tuple<const char*, long, std::uint32_t> rows[] = {
        {"another version", 4, 2}, {"an impossible end offset", 8, 7}, {"an impossible size", 0, 3}};
    Process monitor(mWorld, cMonitor, 0);
    for (const auto& [what, offset, value] : rows) {
        SCOPED_TRACE(what);
        Listener listener(mWorld, cListener, 1);
        const long registrationID = RegistrationIn("Global\\", cListener);
        listener.Fill(-1, registrationID);
        Send(monitor, cListener);
        ASSERT_EQ(monitor.mManager->GetDelayedCount(), 1);
        const auto raw = RawSegment::Open("Global\\", QueueName(cListener, registrationID));
        raw->SetWord(offset, value);
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->ForceProcessPendingMessages(); }), 0);
        EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
        EXPECT_EQ(RegistrationIn("Session\\1\\", cListener), listener.mManager->GetRegistrationID());
        raw->SetWord(0, 32772);
    }
    for (const bool isKilled : {false, true}) {
        {
            Listener listener(mWorld, cListener, 1);
            listener.Fill(-1, RegistrationIn("Global\\", cListener));
            Send(monitor, cListener);
            monitor.mManager->ForceProcessPendingMessages();
            EXPECT_EQ(monitor.mManager->GetDelayedCount(), 1);
            if (isKilled) {
                mWorld.Kill(cListener);
                monitor.mManager->ForceProcessPendingMessages();
                EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
            }
        }
        monitor.mManager->ForceProcessPendingMessages();
        EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
    }
}

TEST_F(GPPIPCManagerDeliveryTest, LeavesAQueueAloneWhileItIsBeingWrittenTo) {
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

TEST_F(GPPIPCManagerDeliveryTest, AMutexThatSomebodyKeepsCostsTheMonitorItsBudgetAndNoMore) {
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

TEST_F(GPPIPCManagerDeliveryTest, AtItsEndItHandlesWhatIsPending) {
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
