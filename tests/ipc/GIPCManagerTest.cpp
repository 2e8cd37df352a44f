#include "framework/ipc/GIPCManager.h"

#include "framework/core/events/GBasicSignals.h"
#include "tests/ipc/IPCTestSupport.h"

namespace {

constexpr long cType = 145;
constexpr long cSender = 100;  // in session 1, like the others
constexpr long cListener = 200;
constexpr long cOther = 300;

using ListeningProcess = Listener<GIPCManager>;

struct GIPCManagerTest : testing::Test {
    void ActAsSender() { mWorld.ActAs(cSender, 1); }
    void Send(const std::string& text, long processID = cListener, long type = cType) {
        ActAsSender();
        mSender.SendRaw(processID, type, BufferOf(text));
    }
    static std::size_t CountEntries() {
        return EntriesOf(RawSegment::Open("Session\\1\\", "QulShDGIPC").get()).size();
    }

    IPCWorld mWorld;
    SleepLog mSleep;
    GIPCMessageQueueMgr mRegistry;
    ListeningProcess mListener{mWorld, cListener, 1};
    GIPCManager mSender;
};

TEST_F(GIPCManagerTest, ListensFromTheFirstReceiverToTheLast) {
    EXPECT_TRUE(mListener.mManager->IsListening());
    EXPECT_TRUE(mRegistry.IsRegistered(cListener));
    EXPECT_NE(mListener.OpenQueue(), nullptr);
    const long registrationID = mListener.mManager->GetRegistrationID();
    NotingReceiver second(mListener.mManager.get(), cType);
    mListener.mReceiver->Unregister(cType);
    mListener.mReceiver->Unregister(cType);
    EXPECT_EQ(mListener.mManager->GetRegistrationID(), registrationID);
    second.Unregister(cType);
    EXPECT_FALSE(mListener.mManager->IsListening());
    EXPECT_EQ(mListener.mManager->GetRegistrationID(), 0);
    EXPECT_FALSE(mRegistry.IsRegistered(cListener));
    EXPECT_FALSE(GBasicSignals::GetRepeaters().IsSubscribed(*mListener.mManager));
    mWorld.ActAs(cListener, 1);
    second.Register(146);
    EXPECT_TRUE(mRegistry.IsRegistered(cListener));
}

TEST_F(GIPCManagerTest, NoticesThatItsEntryOrQueueIsGoneAndListensAnew) {
    EXPECT_FALSE(mSender.IsStillRegistered());
    mWorld.ActAs(cListener, 1);
    for (const auto& [offset, value] : {std::pair<long, std::uint32_t>{4, 2}, {8, 7}, {0, 3}, {-1, 0}}) {
        SCOPED_TRACE(offset);
        EXPECT_TRUE(mListener.mManager->IsStillRegistered());
        mSender.SendRaw(cListener, cType, BufferOf("waits"));
        const long before = mListener.mManager->GetRegistrationID();
        offset < 0 ? mRegistry.Unregister(cListener) : mListener.OpenQueue()->SetWord(offset, value);
        EXPECT_EQ(mListener.mManager->IsStillRegistered(), offset == 8);
        mListener.mManager->Reregister();
        EXPECT_TRUE(mListener.mManager->IsStillRegistered());
        EXPECT_NE(mListener.mManager->GetRegistrationID(), before);
        EXPECT_EQ(CountEntries(), 1u);
        EXPECT_EQ(mListener.mReceiver->TakeLog().size(), offset == 4 || offset < 0 ? 1u : 0u);
    }
}

TEST_F(GIPCManagerTest, WhoWantsToListenNeedsARegistryOfItsVersionAndEmptiesOneThatMakesNoSense) {
    mWorld.ActAs(cOther, 1);
    const auto raw = RawSegment::Open("Session\\1\\", "QulShDGIPC");
    raw->SetWord(4, 2);  // another version
    GIPCManager manager;
    NotingReceiver receiver(&manager);
    EXPECT_EQ(ThrownBy([&] { receiver.Register(cType); }), 40154);
    EXPECT_FALSE(manager.IsListening());
    raw->SetWord(4, 1);
    for (const auto& [word, spoilt] : {std::pair(12L, 11U), {12L, 0xFFFFFFFFU}, {0L, 3U}}) {
        raw->SetWord(word, spoilt);
        receiver.Register(cType);
        manager.Reregister();
        EXPECT_TRUE(manager.IsStillRegistered()) << spoilt;
        EXPECT_EQ(raw->GetWord(12), 20U) << "one entry, its own";
    }
}

TEST_F(GIPCManagerTest, DeliversOnTheRepeaterSignalInOrderAndByType) {
    NotingReceiver other(mListener.mManager.get(), 146);
    NotingReceiver both(mListener.mManager.get(), cType);
    both.Register(146);
    both.Register(146);
    Send("a");
    mSender.Send(cListener, 146);
    Send("nobody's", cListener, 147);
    Send("b");
    mListener.mManager->Receive(100, GEmptyMessage());
    EXPECT_TRUE(both.TakeLog().empty());
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(mListener.mReceiver->TakeLog(), (Log{"100:145:a", "100:145:b"}));
    EXPECT_EQ(other.TakeLog(), Log{"100:146:"});
    EXPECT_EQ(both.TakeLog(), (Log{"100:145:a", "100:146:", "100:145:b"}));
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_TRUE(both.TakeLog().empty());
}

TEST_F(GIPCManagerTest, AMessageEndsTheWaitForOneAndAnEventThatIsSetForNothingDoesNot) {
    GIPCManager& manager = *mListener.mManager;
    EXPECT_FALSE(manager.WaitForMessages(0));
    EXPECT_EQ(manager.GetWakeHandles().GetCount(), 1);
    EXPECT_EQ(mSender.GetWakeHandles().GetCount(), 0);
    ActAsSender();
    for (const bool once : {false, true}) {
        std::thread([&] {
            once ? mSender.SendOnceRaw(cListener, cType, BufferOf("a"))
                 : mSender.SendRaw(cListener, cType, BufferOf("a"));
        }).join();
        EXPECT_TRUE(manager.WaitForMessages(1000000));
        EXPECT_EQ(mListener.Tick(), Log{"100:145:a"});
    }
    EXPECT_TRUE(mSleep.mSleeps.empty());
    // The event is set still: nobody has waited for it.
    EXPECT_FALSE(manager.WaitForMessages(1));
    EXPECT_EQ(mSleep.mSleeps, std::vector<long>{1});
    EXPECT_FALSE(mSender.WaitForMessages(50));
    EXPECT_EQ(mSleep.mSleeps.back(), 50);
}

TEST_F(GIPCManagerTest, SendsToEveryRegistrationOfAProcessAndOnceWhatStillWaits) {
    ListeningProcess twin(mWorld, cListener, 1);
    Send("to nobody", cOther);
    for (int i = 0; i < 2; ++i) {
        mSender.SendOnceRaw(cListener, cType, BufferOf("a"));
        mSender.SendOnce(cListener, cType);
    }
    for (ListeningProcess* each : {&mListener, &twin})
        EXPECT_EQ(each->Tick(), (Log{"100:145:a", "100:145:"}));
}

TEST_F(GIPCManagerTest, KeepsWhatDoesNotFitAndDeliversItInOrderAsFarAsThereIsRoom) {
    Send(Filler(32740));
    for (const char* text : {"a", "b", "a"}) mSender.SendOnceRaw(cListener, cType, BufferOf(text));
    for (const std::string& text : {"b"s, Filler(20000, 'A'), Filler(20000, 'B')}) Send(text);
    EXPECT_EQ(mSender.GetDelayedCount(), 6);
    GBasicSignals::GetRepeaters().Unsubscribe(*mListener.mManager);
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(mSender.GetDelayedCount(), 6);
    EXPECT_EQ(mListener.Tick().size(), 1u);
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(mSender.GetDelayedCount(), 1);
    // The second "a" found the first one waiting; the second "b" was to be sent in any case.
    EXPECT_EQ(mListener.Tick(), (Log{"100:145:a", "100:145:b", "100:145:b", "100:145:20000 x A"}));
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_FALSE(GBasicSignals::GetRepeaters().IsSubscribed(mSender));
    EXPECT_EQ(mListener.Tick(), Log{"100:145:20000 x B"});
}

TEST_F(GIPCManagerTest, TakesATargetWithABrokenQueueOutOfTheRegistry) {
    for (const auto& [what, offset, value, thrown] : {std::tuple("another version", 4L, 2U, 40154L),
                                                      {"an impossible end offset", 8, 0xFFFFFFFF, 40161},
                                                      {"an impossible size", 0, 0, 40163}}) {
        SCOPED_TRACE(what);
        ListeningProcess target(mWorld, cOther, 1);
        for (const long each : {cOther, cListener})
            for (const std::string& text : {Filler(32740), "kept"s}) Send(text, each);
        target.OpenQueue()->SetWord(offset, value);
        EXPECT_EQ(ThrownBy([&] { Send("a", cOther); }), thrown);
        EXPECT_FALSE(mRegistry.IsRegistered(cOther));
        EXPECT_EQ(mSender.GetDelayedCount(), 1);
        EXPECT_EQ(ThrownBy([&] { Send("a", cOther); }), 0);
        mListener.Tick();
        mSender.ForceProcessPendingMessages();
        EXPECT_EQ(mListener.Tick(), Log{"100:145:kept"});
    }
}

TEST_F(GIPCManagerTest, ATickPurgesTheTargetOfAKeptMessageWhoseQueueIsGone) {
    {
        const ListeningProcess target(mWorld, cOther, 1);
        for (const std::string& text : {Filler(32740), "kept"s, "kept too"s}) Send(text, cOther);
    }
    ActAsSender();
    mRegistry.Register(cOther);
    EXPECT_EQ(ThrownBy([&] { mSender.ForceProcessPendingMessages(); }), 0);
    EXPECT_EQ(mSender.GetDelayedCount(), 0);
    EXPECT_FALSE(mRegistry.IsRegistered(cOther));
}

TEST_F(GIPCManagerTest, BroadcastsToAllWhomeverItCannotReach) {
    ListeningProcess second(mWorld, cOther, 1);
    mRegistry.Register(400);  // which has no queue
    ActAsSender();
    mSender.BroadcastRaw(cType, BufferOf("a"));
    EXPECT_FALSE(mRegistry.IsRegistered(400));
    mSender.BroadcastRaw(cType, BufferOf("a"));
    mSender.BroadcastOnceRaw(cType, BufferOf("a"));
    mSender.Broadcast(cType);
    mSender.BroadcastOnce(cType);
    for (ListeningProcess* process : {&mListener, &second})
        EXPECT_EQ(process->Tick(), (Log{"100:145:a", "100:145:a", "100:145:"}));
    EXPECT_EQ(ThrownBy([&] { mSender.BroadcastRaw(cType, BufferOf(Filler(40000))); }), 0);
    EXPECT_EQ(CountEntries(), 2u);
}

TEST_F(GIPCManagerTest, TellsWhoListens) {
    EXPECT_EQ(mSender.GetListeningState(cOther), GIPCManager::cNotListening);
    EXPECT_EQ(mSender.GetListeningState(cListener), GIPCManager::cListening);
    {
        GIPCMessageQueueMgr another;
        another.Register(cListener);  // a second registration, without a queue
        EXPECT_EQ(mSender.GetListeningState(cListener), GIPCManager::cNotUsable);
    }
    EXPECT_EQ(mSender.GetListeningState(cListener), GIPCManager::cListening) << "it took back its own alone";
    mWorld.Kill(cListener);
    EXPECT_EQ(mSender.GetListeningState(cListener), GIPCManager::cNotUsable);
}

TEST_F(GIPCManagerTest, WaitsTillAProcessListensOrEnds) {
    mSender.WaitTillListening(cListener);
    EXPECT_TRUE(mSleep.mSleeps.empty());
    mWorld.ActAs(cOther, 1);
    mSleep.mReaction = [&](std::size_t count) {
        if (count == 3) mRegistry.Register(cOther);
        if (count == 5) mWorld.Kill(cOther);
    };
    mSender.WaitTillListening(cOther);
    EXPECT_EQ(mSleep.mSleeps, (std::vector<long>{100, 100, 100}));
    mRegistry.UnregisterOwn();
    EXPECT_EQ(ThrownBy([&] { mSender.WaitTillListening(cOther); }), 40152);
    EXPECT_EQ(mSleep.mSleeps.size(), 5u);
}

TEST_F(GIPCManagerTest, ReceiversMayComeAndGoWhileAMessageIsHandedOut) {
    auto doomed = std::make_unique<NotingReceiver>(mListener.mManager.get(), cType);
    NotingReceiver late(mListener.mManager.get());
    NotingReceiver last(mListener.mManager.get(), cType);
    mListener.mReceiver->mReaction = [&] {
        mListener.mReceiver->mReaction = nullptr;
        mListener.mReceiver->Unregister(cType);
        doomed.reset();
        for (long type = 1000; type < 1100; ++type) late.Register(type);
        late.Register(cType);
    };
    Send("a");
    EXPECT_EQ(mListener.Tick(), Log{"100:145:a"});
    EXPECT_EQ(last.TakeLog(), Log{"100:145:a"});
    EXPECT_EQ(late.TakeLog(), Log{"100:145:a"});
    // The end of the listening, in the middle of what has come.
    late.mReaction = [&] {
        late.mReaction = nullptr;
        for (long type = 1000; type < 1100; ++type) late.Unregister(type);
        late.Unregister(cType);
        last.Unregister(cType);
    };
    for (const char* text : {"b", "c"}) Send(text);
    EXPECT_TRUE(mListener.Tick().empty());
    EXPECT_EQ(late.TakeLog(), Log{"100:145:b"});
    EXPECT_FALSE(mRegistry.IsRegistered(cListener));
}

TEST_F(GIPCManagerTest, WhatAReceiverThrowsComesAfterTheOtherMessages) {
    NotingReceiver second(mListener.mManager.get(), cType);
    mListener.mReceiver->mReaction = [] { throw std::runtime_error("refused"); };
    for (const char* text : {"a", "b"}) Send(text);
    EXPECT_THROW(mListener.mManager->ForceProcessPendingMessages(), std::runtime_error);
    EXPECT_EQ(mListener.mReceiver->TakeLog().size(), 2u);
    EXPECT_EQ(second.TakeLog(), (Log{"100:145:a", "100:145:b"}));
    EXPECT_EQ(ThrownBy([&] { mListener.mManager->ForceProcessPendingMessages(); }), 0);
}

TEST_F(GIPCManagerTest, ABrokenInboxIsReportedOnceAndWorksAgain) {
    const auto raw = mListener.OpenQueue();
    for (const long spoiled : {0L, 8L, 39L}) {  // the size, the end offset, the second record's length
        SCOPED_TRACE(spoiled);
        for (const char* text : {"one", "two"}) Send(text);
        raw->SetWord(spoiled, 0xFFFFFFFF);
        EXPECT_EQ(ThrownBy([&] { mListener.mManager->ForceProcessPendingMessages(); }),
                  spoiled == 0 ? 40163 : 40161);
        EXPECT_EQ(mListener.mReceiver->TakeLog(), spoiled == 39 ? Log{"100:145:one"} : Log{});
        Send("three");
        EXPECT_EQ(mListener.Tick(), Log{"100:145:three"});
    }
}

TEST_F(GIPCManagerTest, TheFrameworksInstanceIsCountedAndTakesRegistrationsAlong) {
    NotingReceiver receiver(nullptr);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(ThrownBy([&] { receiver.Register(cType); }), 40169);
        GIPCManager::Initialize();
        GIPCManager::Initialize();
        GIPCManager* instance = GIPCManager::GetInstance();
        ASSERT_NE(instance, nullptr);
        mWorld.ActAs(cOther, 1);
        receiver.Register(cType);
        GIPCManager::Finalize();
        EXPECT_EQ(GIPCManager::GetInstance(), instance);
        EXPECT_TRUE(mRegistry.IsRegistered(cOther));
        GIPCManager::Finalize();
        EXPECT_EQ(GIPCManager::GetInstance(), nullptr);
        EXPECT_FALSE(mRegistry.IsRegistered(cOther));
        receiver.Unregister(cType);
        GIPCManager::Finalize();
    }
}

}  // namespace
