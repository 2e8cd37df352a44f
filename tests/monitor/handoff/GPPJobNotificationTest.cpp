// Whom the monitor tells of a job, whatever processing applications have done to the shared memory.
#include "monitor/handoff/GPPJobNotification.h"

#include "monitor/handoff/GPPJobRecord.h"
#include "monitor/handoff/GPPPrinterProcessorLayer.h"
#include "platform/posix/ipc/PMemoryIPMutexImp.h"
#include "tests/monitor/handoff/HandOffTestSupport.h"

namespace {

/// In the registries that the monitor looks into.
using Receiver = Listener<GPPIPCManager>;

struct GPPJobNotificationTest : HandOffTest {
    GPPJobNotificationTest() { mWorld.ActAs(cMonitor, 1); }
    ~GPPJobNotificationTest() override { GPPPrinterProcessorLayer::Finalize(); }

    bool Notify(const GString& printer = GString("Proof")) {
        mWorld.ActAs(cMonitor, 1);
        return mNotification.NotifyPrintProcessor(
            GPPJobRecord(GString("anna"), GPathName("C:/a.ps"), printer, GString("QuillonPDFPort:"), 1));
    }
    static std::unique_ptr<RawSegment> OpenRegistry(const char* path = "Session\\1\\") {
        return RawSegment::Open(path, "QulShDGIPC_PP");
    }

    GPPJobNotification mNotification;
};

TEST_F(GPPJobNotificationTest, TellsEveryApplicationThatListensOfEveryJob) {
    EXPECT_FALSE(Notify()) << "nobody is there";
    mWorld.ActAs(400, 1);  // there, but it does not listen
    EXPECT_FALSE(Notify());
    Receiver own(mWorld, cMonitor, 1), other(mWorld, IPCWorld::cOtherProgram, 1);
    EXPECT_FALSE(Notify()) << "only itself and a program of another name listen";
    Receiver first(mWorld, 200, 1), second(mWorld, 300, 1);
    for (const bool known : {true, false, true}) {
        mWorld.SetProcessesKnown(known);
        EXPECT_EQ(ThrownBy([&] { EXPECT_EQ(Notify(), known) << "who runs is not known"; }), 0);
        for (Receiver* each : {&first, &second}) EXPECT_EQ(each->Tick().size(), known ? 1u : 0u);
        for (Receiver* each : {&own, &other}) EXPECT_EQ(each->Tick().size(), 0u);
    }
    mWorld.Kill(200);
    EXPECT_TRUE(Notify());
    mWorld.Kill(300);
    EXPECT_FALSE(Notify());
}

TEST_F(GPPJobNotificationTest, NothingThatATargetDoesEndsTheJobOrCostsAnotherTarget) {
    // What becomes of the queue of process 200, by the offset of a word in it, and of its entries.
    const std::tuple<const char*, long, std::uint32_t, Entries> rows[] = {
        {"no size", 0, 3, {}},
        {"another version", 4, 2, {}},
        {"an impossible end", 8, 0xFFFFFFFF, {}},
        {"a negative registration and a spoilt queue", 8, 40000, {{200, -5}}},
        {"numbers outside the allowed ones", 4, 2, {{-200, 5}, {200, 0}, {200, 32768}, {0, 7}}},
        {"entries without a queue", 8, 40000, {{200, 1}, {200, 2}, {300, 3}}}};
    for (const auto& [what, offset, value, entries] : rows) {
        SCOPED_TRACE(what);
        Receiver spoilt(mWorld, 200, 1), good(mWorld, 300, 1);
        for (const char* path : {"Session\\1\\", "Global\\"}) {
            if (const auto raw = spoilt.OpenQueue(path)) raw->SetWord(offset, value);
            for (const auto& [processID, registrationID] : entries)
                AddEntry(*OpenRegistry(path), processID, registrationID);
        }
        EXPECT_EQ(ThrownBy([&] { EXPECT_TRUE(Notify()); }), 0);
        EXPECT_EQ(good.Tick().size(), 1u);
    }
    Receiver kept(mWorld, 200, 1), good(mWorld, 300, 1);
    const MutexHog hog(GIPCMessageQueue::ConvertToMemoryID(200, kept.mManager->GetRegistrationID()));
    EXPECT_TRUE(Notify());
    EXPECT_EQ(good.Tick().size(), 1u);
}

TEST_F(GPPJobNotificationTest, ReadsRegistriesAsOftenForManyTargetsAsForFew) {
    std::vector<std::unique_ptr<Receiver>> applications;
    long waits[3];
    Notify();  // which starts the layer
    for (long& count : waits) {
        for (int i = 0; i < 10; ++i)
            applications.push_back(
                std::make_unique<Receiver>(mWorld, 200 + static_cast<long>(applications.size()), 1));
        mSleep.mReaction = [&](std::size_t) {
            for (const auto& application : applications) application->mManager->ForceProcessPendingMessages();
        };
        const long before = PMemoryIPMutexImp::GetWaitCount();
        Notify();
        // Every listener's tick waits for its own two queues.
        count = PMemoryIPMutexImp::GetWaitCount() - before - 2 * static_cast<long>(applications.size());
    }
    EXPECT_EQ(waits[2] - waits[1], waits[1] - waits[0]);
    EXPECT_EQ(waits[1] - waits[0], 4 * 10) << "opened, posted to, and looked into before and after the tick";
}

TEST_F(GPPJobNotificationTest, TidiesARegistryThatIsNearlyFullAndCountsAnEntryOnce) {
    for (const auto& [added, left] : {std::pair<int, std::size_t>{767, 768}, {768, 1}}) {
        Receiver listener(mWorld, 200, 1);
        const auto raw = OpenRegistry();
        for (int i = 0; i < added; ++i)
            AddEntry(*raw, i % 2 ? 200 : 999,
                     static_cast<std::int32_t>(i % 2 ? listener.mManager->GetRegistrationID() : i + 1));
        EXPECT_TRUE(Notify());
        EXPECT_EQ(listener.Tick().size(), 1u);
        EXPECT_EQ((raw->GetWord(12) - 12) / 8, left);
        raw->SetWord(12, 12);
    }
}

TEST_F(GPPJobNotificationTest, SpoiltRegistriesLetNothingThroughAndDoNotHideAGoodOne) {
    Receiver listener(mWorld, 200, 1);
    const auto session = OpenRegistry(), global = OpenRegistry("Global\\");
    const std::uint32_t good = session->GetWord(12);
    ASSERT_EQ(global->GetWord(12), good);
    for (const auto& [inSession, inGlobal] :
         {std::pair(0x7FFFFFFFu, 0xFFFFFFFFu), {0xFFFFFFFF, good}, {good, 5}, {good, good}}) {
        SCOPED_TRACE(testing::Message() << inSession << ", " << inGlobal);
        session->SetWord(12, inSession);
        global->SetWord(12, inGlobal);
        const bool isReadable = inSession == good || inGlobal == good;
        EXPECT_EQ(Notify(), isReadable);
        for (RawSegment* each : {session.get(), global.get()}) each->SetWord(12, good);
        EXPECT_EQ(listener.Tick().size(), isReadable ? 1u : 0u);
    }
}

TEST_F(GPPJobNotificationTest, PassesOnThatARecordIsTooLargeForAnyQueue) {
    Receiver listener(mWorld, 200, 1);
    EXPECT_EQ(ThrownBy([&] { Notify(GString::FromUTF8(Filler(40000).c_str())); }), 40153);
    EXPECT_TRUE(Notify());
    EXPECT_EQ(listener.Tick().size(), 1u);
}

TEST_F(GPPJobNotificationTest, WhatAFullQueueDidNotTakeIsDeliveredAtALaterTickWithoutWaiting) {
    mNotification.RetryDelayed();
    EXPECT_FALSE(GPPPrinterProcessorLayer::IsInitialized()) << "a tick starts nothing";
    Receiver listener(mWorld, 200, 1);
    listener.mManager->SendRaw(200, 146, BufferOf(Filler(32740)));
    EXPECT_TRUE(Notify()) << "kept for later counts as sent";
    EXPECT_EQ(listener.Tick().size(), 0u);
    mSleep.mSleeps.clear();
    mWorld.ActAs(cMonitor, 1);
    mNotification.RetryDelayed();
    EXPECT_EQ(listener.Tick().size(), 1u);
    EXPECT_TRUE(mSleep.mSleeps.empty());
    EXPECT_EQ(GPPPrinterProcessorLayer::GetWaitBudget().GetRemaining(), 0);
}

TEST_F(GPPJobNotificationTest, TheLayerIsStartedAnewAsLongAsItCouldNot) {
    {
        // In the registry's place stands something that cannot be opened as one.
        const auto obstacle = RawSegment::Make("Session\\1\\", "QulShDGIPC_PP", 100);
        EXPECT_FALSE(Notify());
        EXPECT_FALSE(GPPPrinterProcessorLayer::IsInitialized());
    }
    mWorld.Install();  // the start that failed has taken everything back
    Receiver listener(mWorld, 200, 1);
    EXPECT_TRUE(Notify());
    EXPECT_TRUE(GPPPrinterProcessorLayer::IsInitialized());
    EXPECT_EQ(listener.Tick().size(), 1u);
}

}  // namespace
