// What only more than one process can show.
#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "framework/core/GBasicSignals.h"
#include "framework/ipc/GIPCInbox.h"
#include "monitor/GPPIPCManager.h"
#include "platform/win32/PWin32Api.h"
#include "tests/ipc/FixedSession.h"
#include "tests/ipc/ManagerTestSupport.h"
#include "tests/tools/ChildProcess.h"

namespace {

constexpr long cRequest = 145;
constexpr long cAnswer = 146;

class CrossProcessTest : public testing::Test {
protected:
    using Peer = std::unique_ptr<ChildProcess>;

    CrossProcessTest() {
        GShMemID::Initialize();
        GSessionInfo::SetInstance(new FixedSession(0));
    }
    ~CrossProcessTest() override {
        GSessionInfo::SetInstance(nullptr);
        GShMemID::Finalize();
    }
    static Peer Start(const std::string& arguments) {
        const std::wstring wide(arguments.begin(), arguments.end());
        return std::make_unique<ChildProcess>(L"IPCPeer.exe " + wide, L"NUL", L"NUL");
    }
    /// Waits as long as it takes, up to half a minute.
    template <class Condition>
    static bool WaitUntil(Condition condition) {
        for (int i = 0; i < 3000; ++i) {
            if (condition()) return true;
            ::Sleep(10);
        }
        return false;
    }
    static long ID(const Peer& peer) { return static_cast<long>(peer->GetID()); }
};

TEST_F(CrossProcessTest, AHolderThatDiesHasReleasedTheMutex) {
    GIPMutex mutex(GShMemID("TestDying"), GIPPrefix::cSharedMemoryLock);
    EXPECT_EQ(Start("die-holding TestDying")->WaitForExitCode(), 7);
    mutex.Lock();
    mutex.Unlock();
    EXPECT_EQ(Start("die-holding TestDying")->WaitForExitCode(), 7);
    EXPECT_TRUE(mutex.TryToLock(0));
    mutex.Unlock();
}

TEST_F(CrossProcessTest, ListenersInTwoSessionsAnswer) {
    GPPIPCManager manager(GIPCMessageQueueMgr::cTest);
    NotingReceiver answers(&manager, cAnswer);
    const Peer peers[] = {Start("answer 1"), Start("answer 0")};
    for (const Peer& peer : peers) {
        ASSERT_TRUE(
            WaitUntil([&] { return manager.GetListeningState(ID(peer)) == GIPCManager::cListening; }));
        manager.SendRaw(ID(peer), cRequest, Bytes("Hi!"));
        Log log;
        EXPECT_TRUE(WaitUntil([&] {
            GBasicSignals::DevoteTimeToRepeaters();
            log = answers.TakeLog();
            return !log.empty();
        }));
        EXPECT_EQ(log, Log{std::to_string(ID(peer)) + ":146:Hi!"});
        manager.SendOnceRaw(ID(peer), cRequest, Bytes("stop"));
        EXPECT_EQ(peer->WaitForExitCode(), 0);
        EXPECT_EQ(manager.GetListeningState(ID(peer)), GIPCManager::cNotListening);
    }
}

TEST_F(CrossProcessTest, AListenerThatIsKilledLeavesAnEntryThatIsPurged) {
    GPPIPCManager manager(GIPCMessageQueueMgr::cTest);
    const Peer peer = Start("ignore 1");
    ASSERT_TRUE(WaitUntil([&] { return manager.GetListeningState(ID(peer)) == GIPCManager::cListening; }));
    for (int i = 0; i < 3; ++i) manager.SendRaw(ID(peer), cRequest, Bytes(Filler(20000)));
    EXPECT_EQ(manager.GetDelayedCount(), 2);
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(manager.GetDelayedCount(), 2);
    peer->Kill();
    EXPECT_EQ(manager.GetListeningState(ID(peer)), GIPCManager::cNotUsable);
    GBasicSignals::DevoteTimeToRepeaters();
    EXPECT_EQ(manager.GetDelayedCount(), 0);
    EXPECT_EQ(ThrownBy([&] { manager.SendRaw(ID(peer), cRequest, Bytes("late")); }), 2450);
    EXPECT_EQ(manager.GetListeningState(ID(peer)), GIPCManager::cNotListening);
}

/// A queue of this process in the global name space, and what has come into it.
class Collector {
public:
    Collector()
        : mRegistry(GShMemID("GIPCTest"), -1, GIPCMessageQueueMgr::Scope::cOwnOnly), mInbox(mRegistry) {}

    std::string MakeArguments(long count) const {
        return "write " + std::to_string(::GetCurrentProcessId()) + " " +
               std::to_string(mInbox.GetRegistrationID()) + " " + std::to_string(count);
    }
    /// The number of each message, by sender, in order of arrival.
    void Drain() {
        GTable<GSmartPtr<GIPCMessage>> messages;
        mInbox.Drain(messages);
        for (const auto& message : messages) {
            const long number = std::atol(message->GetData().GetPtr());
            EXPECT_EQ(Text(message->GetData()), std::to_string(number) + ":" + Filler(number % 977, '.'));
            mNumbers[message->GetSenderProcessID()].push_back(number);
        }
    }

    std::map<long, std::vector<long>> mNumbers;

private:
    GIPCMessageQueueMgr mRegistry;
    GIPCInbox mInbox;
};

TEST_F(CrossProcessTest, ManyWritersLoseNothingAndKeepTheirOrder) {
    constexpr long cCount = 1500;
    Collector collector;
    std::vector<Peer> writers;
    for (int i = 0; i < 4; ++i) writers.push_back(Start(collector.MakeArguments(cCount)));
    const auto running = [](const Peer& writer) { return writer->IsRunning(); };
    while (std::any_of(writers.begin(), writers.end(), running)) collector.Drain();
    collector.Drain();
    std::vector<long> all(cCount);
    for (long i = 0; i < cCount; ++i) all[static_cast<std::size_t>(i)] = i;
    for (const Peer& writer : writers) EXPECT_EQ(collector.mNumbers[ID(writer)], all);
}

TEST_F(CrossProcessTest, AWriterKilledAtAnyMomentLeavesTheQueueUsable) {
    Collector collector;
    for (std::size_t round = 1; round <= 8; ++round) {
        const Peer writer = Start(collector.MakeArguments(1000000));
        ASSERT_TRUE(WaitUntil([&] {
            collector.Drain();
            return collector.mNumbers[ID(writer)].size() > 50 * round;
        }));
        writer->Kill();
        EXPECT_EQ(ThrownBy([&] { collector.Drain(); }), 0);
    }
}

}  // namespace
