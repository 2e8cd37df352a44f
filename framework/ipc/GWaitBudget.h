#pragma once

#include "framework/core/GExport.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

/// GWaitBudget: how long a piece of work may wait for shared mutexes, in all.
///
/// Any process of the machine can take a shared mutex and keep it. A program that must not hang on
/// that hands one budget down to everything that locks; each wait takes its duration off what is left.
/// Once nothing is left a mutex is still taken when it happens to be free, but never waited for, so one
/// stubborn mutex does not cost the others. Where a function takes a pointer to a budget, null stands
/// for waiting without limit, and the budget must outlive the object that was given it.
///
/// One thread at a time, like the objects that use it.
class QUILLON_EXPORT GWaitBudget {
public:
    /// Milliseconds of a clock that never runs backwards.
    using Clock = unsigned long long (*)();

    /// `clock` null is the system's.
    explicit GWaitBudget(long milliseconds, Clock clock = nullptr) noexcept;

    /// Grants so many milliseconds from now on, whatever was left; 0 allows no wait at all.
    void Refill(long milliseconds) noexcept;
    long GetRemaining() const noexcept { return mRemaining; }  ///< milliseconds that may still be waited

    /// Locks `mutex` within `budget`, or without limit when that is null. Throws
    /// GExceptionID::cCouldNotLockMutex when the mutex could not be had in time.
    template <class Mutex>
    static void Lock(GWaitBudget* budget, Mutex& mutex) {
        if (budget == nullptr) {
            mutex.Lock();
        } else if (!budget->TryToLock(mutex)) {
            throw GSimpleException(GExceptionID::cCouldNotLockMutex);
        }
    }

private:
    template <class Mutex>
    bool TryToLock(Mutex& mutex) {
        // Most locks are free. Those are taken without a look at the clock.
        if (mutex.TryToLock(0.0)) return true;
        if (mRemaining <= 0) return false;
        const unsigned long long start = mClock();
        const bool locked = mutex.TryToLock(static_cast<double>(mRemaining) / 1000.0);
        Charge(start, locked);
        return locked;
    }
    void Charge(unsigned long long start, bool locked) noexcept;

    long mRemaining;
    Clock mClock;
};
