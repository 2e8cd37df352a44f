// What becomes of a message: taken, waited for, kept, dropped.
#include "framework/core/events/GBasicSignals.h"
#include "tests/monitor/handoff/HandOffTestSupport.h"

namespace {

struct GPPIPCManagerDeliveryTest : HandOffTest {
    Application mListener{mWorld, cListener};
    Monitor mMonitor{mWorld, cMonitor, 0};
};

TEST_F(GPPIPCManagerDeliveryTest, WaitsForAMessageSentOnceToBeTakenLookingMoreAndMoreSeldom) {
    const std::tuple<const char*, std::size_t, std::size_t, unsigned long long> rows[] = {
        {"during the first sleep", 1, 1, 1},
        {"later", 4, 4, 15},
        {"once it looks every 300 ms", 11, 11, 1111},
        {"in the last", 18, 18, 3000},
        {"never", 0, 18, 3000}};
    for (const auto& [what, takenAt, sleeps, slept] : rows) {
        SCOPED_TRACE(what);
        const unsigned long long start = mSleep.GetSlept();
        mSleep.mSleeps.clear();
        mSleep.mReaction = [&](std::size_t count) {
            if (count == takenAt) mListener.Tick();
        };
        Send(mMonitor, cListener);
        EXPECT_EQ(mSleep.mSleeps.size(), sleeps);
        EXPECT_EQ(mSleep.GetSlept() - start, slept);
    }
    // What was never taken is still waiting. The same again is not added, but waited for.
    Application second(mWorld, cListener, 1);
    mSleep.mSleeps.clear();
    Send(mMonitor, cListener);
    EXPECT_EQ(mSleep.mSleeps.size(), 18u) << "two queues take no longer than one";
    for (Application* each : {&mListener, &second}) EXPECT_EQ(each->Tick(), Log{"100:145:job"});
    mSleep.mSleeps.clear();
    mMonitor.mManager->SendRaw(cListener, cType, BufferOf("not once"));
    EXPECT_TRUE(mSleep.mSleeps.empty());
}

TEST_F(GPPIPCManagerDeliveryTest, TellsManyBeforeItWaitsOnceForAll) {
    std::vector<std::unique_ptr<Application>> listeners;
    for (long id = 400; id < 450; ++id)
        listeners.push_back(std::make_unique<Application>(mWorld, id, id % 2));
    const auto isWanted = [](std::int32_t processID) { return processID >= 400; };
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
        mMonitor.Act();
        const auto result = mMonitor.mManager->SendOnceRaw(isWanted, cType, BufferOf("job"));
        EXPECT_EQ(result.mReached, 50);
        EXPECT_EQ(result.mFailed, 0);
        EXPECT_EQ(mSleep.mSleeps.size(), sleeps);
        EXPECT_EQ(told, 50 - idle);
        tickFrom(0);
    }
}

TEST_F(GPPIPCManagerDeliveryTest, AQueueThatIsSpoiledWhileItIsWaitedForCountsAsReached) {
    const auto raw = mListener.OpenGlobalQueue();
    mSleep.mReaction = [&](std::size_t) { raw->SetWord(8, 0xFFFFFFFF); };
    EXPECT_EQ(ThrownBy([&] { Send(mMonitor, cListener); }), 0);
    EXPECT_EQ(mSleep.mSleeps.size(), 1u);
    EXPECT_EQ(CountIn("Session\\1\\"), 1u);
}

TEST_F(GPPIPCManagerDeliveryTest, KeepsAtMost64MessagesForATargetTheNewestOnes) {
    Application other(mWorld, cOther);
    for (Application* each : {&mListener, &other}) each->FillGlobalQueue();
    Send(mMonitor, cOther, "the other's");
    for (int i = 1; i <= 66; ++i) Send(mMonitor, cListener, std::to_string(i).c_str());
    EXPECT_EQ(mMonitor.mManager->GetDelayedCount(), 65);
    mListener.Tick();
    other.Tick();
    mMonitor.Act();
    mMonitor.mManager->ForceProcessPendingMessages();
    const Log log = mListener.Tick();
    ASSERT_EQ(log.size(), 64u);
    EXPECT_EQ(log.front(), "100:145:3");
    EXPECT_EQ(log.back(), "100:145:66");
    EXPECT_EQ(other.Tick(), Log{"100:145:the other's"});
}

TEST_F(GPPIPCManagerDeliveryTest, DropsWhatItKeepsForAQueueThatIsGoneOrBrokenAndNothingElse) {
    for (const char* what : {"broken", "ended", "gone"}) {
        SCOPED_TRACE(what);
        const Application other(mWorld, cOther);
        const auto raw = other.OpenGlobalQueue();
        other.FillGlobalQueue();
        Send(mMonitor, cOther);
        mMonitor.mManager->ForceProcessPendingMessages();
        ASSERT_EQ(mMonitor.mManager->GetDelayedCount(), 1);
        if (*what == 'b') raw->SetWord(8, 7);
        if (*what == 'e') mWorld.Kill(cOther);
        if (*what == 'g') raw->SetWord(4, 2);
        EXPECT_EQ(ThrownBy([&] { mMonitor.mManager->ForceProcessPendingMessages(); }), 0);
        EXPECT_EQ(mMonitor.mManager->GetDelayedCount(), 0);
        EXPECT_EQ(RegistrationIn("Session\\1\\", cOther), other.mManager->GetRegistrationID());
    }
}

TEST_F(GPPIPCManagerDeliveryTest, LeavesAQueueAloneWhileItIsBeingWrittenTo) {
    mListener.FillGlobalQueue();
    Send(mMonitor, cListener, "kept");
    mListener.Tick();
    mSleep.mReaction = [&](std::size_t count) {
        // A program that goes on ticking while it waits.
        if (count == 1) {
            GBasicSignals::DevoteTimeToRepeaters();
            EXPECT_EQ(mMonitor.mManager->GetDelayedCount(), 1);
        }
    };
    Send(mMonitor, cListener, "new");
    mSleep.mReaction = nullptr;
    mMonitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(mMonitor.mManager->GetDelayedCount(), 0);
    EXPECT_EQ(mListener.Tick(), (Log{"100:145:new", "100:145:kept"}));
}

TEST_F(GPPIPCManagerDeliveryTest, AMutexThatSomebodyKeepsCostsTheMonitorItsBudgetAndNoMore) {
    GWaitBudget budget(20);
    // Both registries may have begun with the same seed. One mutex would then guard both queues.
    RawSegment::Open("Global\\", cRegistryName)->SetWord(8, 0);
    RawSegment::Open("Session\\1\\", cRegistryName)->SetWord(8, 5);
    Application other(mWorld, cOther);
    Monitor monitor(mWorld, cMonitor, 0, &budget);
    other.FillGlobalQueue();
    Send(monitor, cOther, "kept");
    const long sessionID = RegistrationIn("Session\\1\\", cOther);
    ASSERT_NE(sessionID, other.mGlobalID);
    {
        const MutexHog first(GIPCMessageQueue::ConvertToMemoryID(cOther, sessionID));
        const MutexHog second(GIPCMessageQueue::ConvertToMemoryID(cOther, other.mGlobalID));
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->GetListeningState(cOther); }), 40202);
        EXPECT_EQ(budget.GetRemaining(), 0);
        EXPECT_EQ(ThrownBy([&] { Send(monitor, cOther); }), 40202);
        Send(monitor, cListener);
        EXPECT_EQ(mListener.Tick(), Log{"100:145:job"});
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->ForceProcessPendingMessages(); }), 0);
        EXPECT_EQ(monitor.mManager->GetDelayedCount(), 1) << "held against nobody";
    }
    other.Tick();
    monitor.mManager->ForceProcessPendingMessages();
    EXPECT_EQ(other.Tick(), Log{"100:145:kept"});
    {
        const MutexHog hog(GShMemID("GIPCTest_PP"));
        EXPECT_EQ(ThrownBy([&] { Send(monitor, cListener); }), 40202);
        EXPECT_EQ(ThrownBy([&] { monitor.mManager->GetListeningState(cListener); }), 40202);
        EXPECT_EQ(ThrownBy([&] { GPPIPCManager::AddReference(cTest, &budget); }), 40202);
        EXPECT_EQ(GPPIPCManager::GetInstance(), nullptr);
    }
}

TEST_F(GPPIPCManagerDeliveryTest, AtItsEndItHandlesWhatIsPending) {
    mListener.FillGlobalQueue();
    Send(mMonitor, cListener);
    mListener.Tick();
    mMonitor.Act();
    mMonitor.mManager.reset();
    EXPECT_EQ(mListener.Tick(), Log{"100:145:job"});
    NotingReceiver* receiver = mListener.mReceiver.get();
    Monitor neighbour(mWorld, cOther, 1);
    Send(neighbour, cListener, "last");
    mListener.Act();
    mListener.mManager.reset();
    EXPECT_EQ(receiver->TakeLog(), Log{"300:145:last"});
    EXPECT_EQ(CountIn("Session\\1\\"), 0u);
}

}  // namespace
