#include "framework/ipc/GWaitBudget.h"

#include <algorithm>

#include "framework/ipc/GIPCClock.h"

GWaitBudget::GWaitBudget(long milliseconds, Clock clock) noexcept
    : mRemaining(std::max(milliseconds, 0L)), mClock(clock != nullptr ? clock : &GIPCClock::GetNow) {}

void GWaitBudget::Refill(long milliseconds) noexcept {
    mRemaining = std::max(milliseconds, 0L);
}

void GWaitBudget::Charge(unsigned long long start, bool locked) noexcept {
    const unsigned long long waited = mClock() - start;
    // A wait that timed out has used up everything, however coarsely the clock counts.
    if (!locked || waited >= static_cast<unsigned long long>(mRemaining)) {
        mRemaining = 0;
    } else {
        mRemaining -= static_cast<long>(waited);
    }
}
