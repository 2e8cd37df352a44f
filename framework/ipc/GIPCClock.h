#pragma once

#include "framework/core/GExport.h"

/// GIPCClock: the time by which messaging waits. Tests put their own in its place.
///
/// Callable from any thread, except Replace.
class QUILLON_EXPORT GIPCClock {
public:
    /// Milliseconds of a clock that never runs backwards.
    using NowFunction = unsigned long long (*)();
    using SleepFunction = void (*)(long milliseconds);

    static unsigned long long GetNow();
    static void Sleep(long milliseconds);

    /// Null brings the system's own back.
    static void Replace(NowFunction now, SleepFunction sleep) noexcept;
};
