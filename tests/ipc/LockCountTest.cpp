// How often messaging goes to the shared mutexes. Every wait and every release is a call of the system,
// and the dearest part of sending and receiving.

#include "framework/ipc/GIPCMessageQueue.h"
#include "platform/posix/ipc/PMemoryIPMutexImp.h"
#include "tests/ipc/IPCTestSupport.h"

namespace {

template <class Call>
std::pair<long, long> CountLocks(Call call) {
    const long waits = PMemoryIPMutexImp::GetWaitCount();
    const long releases = PMemoryIPMutexImp::GetReleaseCount();
    call();
    return {PMemoryIPMutexImp::GetWaitCount() - waits, PMemoryIPMutexImp::GetReleaseCount() - releases};
}

TEST(LockCount, PostingAndDrainingTakeTheMutexOnce) {
    const IPCWorld world;
    GWaitBudget budget(1000);
    bool created = false;
    GIPCMessageQueue unlimited(1, 4711, 1, created);
    GIPCMessageQueue limited(1, 4711, 2, created, &budget);
    const std::pair<long, long> once(1, 1);
    for (GIPCMessageQueue* queue : {&unlimited, &limited}) {
        GTable<GSmartPtr<GIPCMessage>> messages;
        EXPECT_EQ(CountLocks([&] { queue->TryToAddRawMessage(145, BufferOf("Hi!")); }), once);
        EXPECT_EQ(CountLocks([&] { queue->TryToAddRawMessageOnce(145, BufferOf("Hi!")); }), once);
        EXPECT_EQ(CountLocks([&] { queue->TryToAddRawMessageOnce(145, BufferOf("Ho!")); }), once);
        EXPECT_EQ(CountLocks([&] { queue->ReadPendingMessages(messages); }), once);
        EXPECT_EQ(CountLocks([&] { queue->ReadPendingMessages(messages); }), once);
        EXPECT_EQ(messages.GetCount(), 2);
    }
    EXPECT_EQ(CountLocks([] { GIPCMessageQueue(1, 4711, 1); }), once);
}

}  // namespace
