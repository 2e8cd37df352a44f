#include "framework/ipc/GIPMutex.h"

#include "tests/ipc/IPCTestSupport.h"

namespace {

TEST(GIPPrefix, HasFourPrefixesOfSixCharacters) {
    for (const long none : {-1L, 4L, 0x7FFFFFFFL}) EXPECT_EQ(GIPPrefix::GetPrefix(none), nullptr) << none;
    long id = 0;
    for (const char* const prefix : {"QulDef", "QulMtx", "QulShD", "QulShL"})
        EXPECT_STREQ(GIPPrefix::GetPrefix(id++), prefix);
}

/// Whether another thread, which has no hold on the mutex, can take it at once.
bool IsFree(const char* identifier) {
    bool taken = false;
    std::thread([&] {
        GIPMutex other{GShMemID(identifier)};
        taken = other.TryToLock(0);
        if (taken) other.Unlock();
    }).join();
    return taken;
}

TEST(GIPMutex, IsHeldFromTheFirstLockToTheLastUnlockUnderItsOwnNameOnly) {
    GIPMutex mutex{GShMemID("TestA")};
    EXPECT_TRUE(IsFree("TestA"));
    mutex.Lock();
    EXPECT_TRUE(mutex.TryToLock(0.5));
    mutex.Unlock();
    EXPECT_FALSE(IsFree("TestA"));
    EXPECT_TRUE(IsFree("TestB"));
    mutex.Unlock();
    EXPECT_TRUE(IsFree("TestA"));
    EXPECT_EQ(ThrownBy([&] { mutex.Unlock(); }), 2450);
    GIPMutex otherPrefix(GShMemID("TestA"), GIPPrefix::cSharedMemoryLock);
    otherPrefix.Lock();
    EXPECT_TRUE(IsFree("TestA"));
    otherPrefix.Unlock();
    EXPECT_EQ(ThrownBy([] { GIPMutex(GShMemID("TestA"), 4); }), 40162);
}

TEST(GIPMutex, ALockerHoldsItForItsLifetimeAndThrowsWhenItMayNotWait) {
    GIPMutex mutex{GShMemID("TestA")};
    EXPECT_EQ(ThrownBy([&] {
                  const GIPMutexLocker locker(mutex);
                  std::thread([] {
                      GIPMutex other{GShMemID("TestA")};
                      GWaitBudget budget(0);
                      EXPECT_EQ(ThrownBy([&] { const GIPMutexLocker late(other, &budget); }), 40202);
                  }).join();
                  EXPECT_FALSE(IsFree("TestA"));
                  throw GSimpleException(40160);
              }),
              40160);
    EXPECT_TRUE(IsFree("TestA"));
}

}  // namespace
