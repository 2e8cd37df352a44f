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

unsigned long long sNow = 0;

/// Free, or taken by somebody who gives it up after `mBusyFor` milliseconds.
struct FakeMutex {
    void Lock() { mWaits.push_back(-1); }
    bool TryToLock(double seconds) {
        const long milliseconds = static_cast<long>(seconds * 1000 + 0.5);
        mWaits.push_back(milliseconds);
        const bool locked = mBusyFor <= milliseconds;
        const long waited = locked ? mBusyFor : milliseconds;
        sNow += static_cast<unsigned long long>(waited);
        mBusyFor -= waited;
        return locked;
    }

    long mBusyFor = 0;
    std::vector<long> mWaits;
};

long Lock(GWaitBudget* budget, FakeMutex& mutex) {
    return ThrownBy([&] { GWaitBudget::Lock(budget, mutex); });
}

TEST(GWaitBudget, AllWaitsTogetherStayWithinIt) {
    GWaitBudget budget(5000, [] { return sNow; });
    const std::tuple<const char*, long, long, std::vector<long>, long> rows[] = {
        {"a free mutex costs nothing and one wait", 0, 0, {0}, 5000},
        {"the first wait is taken off", 3000, 0, {0, 5000}, 2000},
        {"the second gets the rest, to the last millisecond", 2000, 0, {0, 2000}, 0},
        {"a free mutex is still taken", 0, 0, {0}, 0},
        {"a busy one is not waited for any more", 1, 40202, {0}, 0}};
    for (const auto& [what, busyFor, thrown, waits, remaining] : rows) {
        SCOPED_TRACE(what);
        FakeMutex mutex;
        mutex.mBusyFor = busyFor;
        EXPECT_EQ(Lock(&budget, mutex), thrown);
        EXPECT_EQ(mutex.mWaits, waits);
        EXPECT_EQ(budget.GetRemaining(), remaining);
    }
    FakeMutex mutex;
    mutex.mBusyFor = 701;
    budget.Refill(700);
    EXPECT_EQ(Lock(&budget, mutex), 40202);
    EXPECT_EQ(Lock(nullptr, mutex), 0);
    EXPECT_EQ(mutex.mWaits, (std::vector<long>{0, 700, -1})) << "no budget: no limit";
    EXPECT_EQ(budget.GetRemaining(), 0) << "a wait that times out uses it up";
    budget.Refill(-1);
    EXPECT_EQ(budget.GetRemaining(), 0);
}

}  // namespace
