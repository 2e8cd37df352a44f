// What only more than one process can show.
#include <map>

#include "framework/ipc/GIPCInbox.h"
#include "platform/win32/base/PWin32Api.h"
#include "tests/ipc/IPCTestSupport.h"
#include "tests/ipc/StartPeer.h"

namespace {

struct CrossProcessTest : testing::Test {
    using Peer = std::unique_ptr<ChildProcess>;

    CrossProcessTest() { GShMemID::Initialize(); }
    ~CrossProcessTest() override { GShMemID::Finalize(); }
    static long ID(const Peer& peer) { return static_cast<long>(peer->GetID()); }
};

TEST_F(CrossProcessTest, AHolderThatDiesHasReleasedTheMutex) {
    GIPMutex mutex(GShMemID("TestDying"), GIPPrefix::cSharedMemoryLock);
    EXPECT_EQ(StartPeer("die-holding TestDying")->WaitForExitCode(), 7);
    mutex.Lock();
    mutex.Unlock();
    EXPECT_EQ(StartPeer("die-holding TestDying")->WaitForExitCode(), 7);
    EXPECT_TRUE(mutex.TryToLock(0));
    mutex.Unlock();
}

/// A queue of this process in the global name space, and what has come into it.
struct Collector {
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
            EXPECT_EQ(BytesOf(message->GetData()), std::to_string(number) + ":" + Filler(number % 977, '.'));
            mNumbers[message->GetSenderProcessID()].push_back(number);
        }
    }

    std::map<long, std::vector<long>> mNumbers;
    GIPCMessageQueueMgr mRegistry;
    GIPCInbox mInbox;
};

TEST_F(CrossProcessTest, ManyWritersLoseNothingAndKeepTheirOrder) {
    constexpr long cCount = 1500;
    Collector collector;
    std::vector<Peer> writers;
    for (int i = 0; i < 4; ++i) writers.push_back(StartPeer(collector.MakeArguments(cCount)));
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
        const Peer writer = StartPeer(collector.MakeArguments(1000000));
        while (collector.mNumbers[ID(writer)].size() <= 50 * round && writer->IsRunning()) collector.Drain();
        ASSERT_TRUE(writer->IsRunning());
        writer->Kill();
        EXPECT_EQ(ThrownBy([&] { collector.Drain(); }), 0);
    }
}

}  // namespace
