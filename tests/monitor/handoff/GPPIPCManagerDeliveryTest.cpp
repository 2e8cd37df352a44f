// What becomes of a message: taken, waited for, kept, dropped.
#include "framework/core/events/GBasicSignals.h"
#include "tests/monitor/handoff/HandOffTestSupport.h"

namespace {

using GPPIPCManagerDeliveryTest = HandOffTest;

TEST_F(GPPIPCManagerDeliveryTest, WaitsForAMessageSentOnceToBeTakenLookingMoreAndMoreSeldom) {
    const std::tuple<const char*, std::size_t, std::size_t, unsigned long long> rows[] = {
        {"during the first sleep", 1, 1, 1},
        {"later", 4, 4, 15},
        {"once it looks every 300 ms", 11, 11, 1111},
        {"in the last", 18, 18, 3000},
        {"never", 0, 18, 3000}};
    Application listener(mWorld, cListener, 1);
    Monitor monitor(mWorld, cMonitor, 0);
    for (const auto& [what, takenAt, sleeps, slept] : rows) {
        SCOPED_TRACE(what);
        const unsigned long long start = mSleep.GetSlept();
        mSleep.mSleeps.clear();
        mSleep.mReaction = [&](std::size_t count) {
            if (count == takenAt) listener.Tick();
        };
        Send(monitor, cListener);
        EXPECT_EQ(mSleep.mSleeps.size(), sleeps);
        EXPECT_EQ(mSleep.GetSlept() - start, slept);
    }
    // What was never taken is still waiting. The same again is not added, but waited for.
    Application second(mWorld, cListener, 1);
    mSleep.mSleeps.clear();
    Send(monitor, cListener);
    EXPECT_EQ(mSleep.mSleeps.size(), 18u) << "two queues take no longer than one";
    for (Application* each : {&listener, &second}) EXPECT_EQ(each->Tick(), Log{"100:145:job"});
    mSleep.mSleeps.clear();
    monitor.mManager->SendRaw(cListener, cType, BufferOf("not once"));
    EXPECT_TRUE(mSleep.mSleeps.empty());
}

TEST_F(GPPIPCManagerDeliveryTest, TellsManyBeforeItWaitsOnceForAll) {
    std::vector<std::unique_ptr<Application>> listeners;
    for (std::int32_t id = 400; id < 450; ++id) {
        listeners.push_back(std::make_unique<Application>(mWorld, id, id % 2));
    }
    Monitor monitor(mWorld, cMonitor, 0);
    for (const auto& [idle, sleeps] : {std::pair<std::size_t, std::size_t>{5, 18}, {0, 3}}) {
        std::size_t told = 0;
        const auto tickFrom = [&](std::size_t first) {
            for (std::size_t i = first; i < listeners.size(); ++i)
                told += listeners[i]->Tick() == Log{"100:145:job"};
        };
        mSleep.mSleeps.clear();
        mSleep.mReaction = [&, first = idle](std::size_t count) {
            if (count == 3) tickFrom(first);
        };
        monitor.Act();
        const auto result =
            monitor.mManager->SendOnceRaw([](std::int32_t) { return true; }, cType, BufferOf("job"));
        EXPECT_EQ(result.mReached, 50);
        EXPECT_EQ(result.mFailed, 0);
        EXPECT_EQ(mSleep.mSleeps.size(), sleeps);
        EXPECT_EQ(told, 50 - idle);
        tickFrom(0);
    }
}

TEST_F(GPPIPCManagerDeliveryTest, AQueueThatIsSpoiledWhileItIsWaitedForCountsAsReached) {
    Application listener(mWorld, cListener, 1);
    Monitor monitor(mWorld, cMonitor, 0);
    const auto raw =
        RawSegment::Open("Global\\", QueueName(cListener, RegistrationIn("Global\\", cListener)));
    mSleep.mReaction = [&](std::size_t) { raw->SetWord(8, 0xFFFFFFFF); };
    EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 0);
    EXPECT_EQ(mSleep.mSleeps.size(), 1u);
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
}

TEST_F(GPPIPCManagerDeliveryTest, KeepsAtMost64MessagesForATargetTheNewestOnes) {
    Application listener(mWorld, cListener, 1);
    Application other(mWorld, cOther, 1);
    Monitor monitor(mWorld, cMonitor, 0);
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
    Monitor monitor(mWorld, cMonitor, 0);
    for (const char* what : {"broken", "ended", "gone"}) {
        SCOPED_TRACE(what);
        auto listener = std::make_unique<Application>(mWorld, cListener, 1);
        const long registrationID = RegistrationIn("Global\\", cListener);
        const auto raw = RawSegment::Open("Global\\", QueueName(cListener, registrationID));
        listener->Fill(-1, registrationID);
        Send(monitor, cListener);
        monitor.mManager->ForceProcessPendingMessages();
        ASSERT_EQ(monitor.mManager->GetDelayedCount(), 1);
        if (*what == 'b') raw->SetWord(8, 7);
        if (*what == 'e') mWorld.Kill(cListener);
        if (*what == 'g') raw->SetWord(4, 2);
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->ForceProcessPendingMessages(); }), 0);
        EXPECT_EQ(monitor.mManager->GetDelayedCount(), 0);
        EXPECT_EQ(RegistrationIn("Session\\1\\", cListener), listener->mManager->GetRegistrationID());
    }
}

TEST_F(GPPIPCManagerDeliveryTest, LeavesAQueueAloneWhileItIsBeingWrittenTo) {
    Application listener(mWorld, cListener, 1);
    Monitor monitor(mWorld, cMonitor, 0);
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
    Application free(mWorld, cOther, 1);
    // Both registries may have begun with the same seed. One mutex would then guard both queues.
    RawSegment::Open("Global\\", cRegistryName)->SetWord(8, 0);
    RawSegment::Open("Session\\1\\", cRegistryName)->SetWord(8, 5);
    Application listener(mWorld, cListener, 1);
    Monitor monitor(mWorld, cMonitor, 0, &budget);
    listener.Fill(-1, RegistrationIn("Global\\", cListener));
    Send(monitor, cListener, "kept");
    const long sessionID = RegistrationIn("Session\\1\\", cListener);
    const long globalID = RegistrationIn("Global\\", cListener);
    ASSERT_NE(sessionID, globalID);
    {
        const MutexHog first(GIPCMessageQueue::ConvertToMemoryID(cListener, sessionID));
        const MutexHog second(GIPCMessageQueue::ConvertToMemoryID(cListener, globalID));
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->GetListeningState(cListener); }), 40202);
        EXPECT_EQ(budget.GetRemaining(), 0);
        EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 40202);
        Send(monitor, cOther);
        EXPECT_EQ(free.Tick(), Log{"100:145:job"});
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->ForceProcessPendingMessages(); }), 0);
        EXPECT_EQ(monitor.mManager->GetDelayedCount(), 1) << "held against nobody";
    }
    listener.Tick();
    monitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(listener.Tick(), Log{"100:145:kept"});
    {
        const MutexHog hog(RegistryID());
        EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 40202);
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->GetListeningState(cListener); }), 40202);
        EXPECT_EQ(ThrownBy([&] { GPPIPCManager::AddReference(cTest, &budget); }), 40202);
        EXPECT_EQ(GPPIPCManager::GetInstance(), nullptr);
    }
}

TEST_F(GPPIPCManagerDeliveryTest, AtItsEndItHandlesWhatIsPending) {
    Application listener(mWorld, cListener, 1);
    {
        Monitor monitor(mWorld, cMonitor, 0);
        listener.Fill(-1, RegistrationIn("Global\\", cListener));
        Send(monitor, cListener);
        listener.Tick();
    }
    EXPECT_EQ(listener.Tick(), Log{"100:145:job"});
    NotingReceiver* receiver = listener.mReceiver.get();
    Monitor neighbour(mWorld, cOther, 1);
    Send(neighbour, cListener, "last");
    listener.Act();
    listener.mManager.reset();
    EXPECT_EQ(receiver->TakeLog(), Log{"300:145:last"});
    EXPECT_EQ(CountIn("Session\\1\\"), 0u);
}

}  // namespace
