#pragma once

#include "framework/core/GExport.h"

/// GIPCClock: the time by which messaging waits. Tests put their own in its place.
///
/// Callable from any thread, except Replace.
class QUILLON_EXPORT GIPCClock {
public:
    /// Milliseconds of a clock that never runs backwards.
    using NowFunction = unsigned long long (*)();
    using SleepFunction = void (*)(long milliseconds);  ///< returns after that time, at once for 0 and below

    static unsigned long long GetNow();    ///< milliseconds of a clock that never runs backwards
    static void Sleep(long milliseconds);  ///< by the clock in use

    /// Null brings the system's own back.
    static void Replace(NowFunction now, SleepFunction sleep) noexcept;
};
