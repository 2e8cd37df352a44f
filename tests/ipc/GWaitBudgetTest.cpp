#include "framework/ipc/GWaitBudget.h"

#include "tests/ipc/IPCTestSupport.h"

namespace {

unsigned long long sNow = 0;

unsigned long long Now() {
    return sNow;
}

/// Free, or taken by somebody who gives it up after `mBusyFor` milliseconds.
class FakeMutex {
public:
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
    GWaitBudget budget(5000, &Now);
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
