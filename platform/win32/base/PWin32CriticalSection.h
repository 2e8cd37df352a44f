#pragma once

#include "platform/base/PExport.h"

/// PWin32CriticalSection: a CRITICAL_SECTION that is made and deleted with its object.
///
/// Recursive: the thread that holds it may lock it again and unlocks it as often. A waiting thread
/// spins shortly before it sleeps. Any thread may call; a thread unlocks only what it has locked.
class QUILLON_EXPORT PWin32CriticalSection {
public:
    PWin32CriticalSection() noexcept;
    ~PWin32CriticalSection();
    PWin32CriticalSection(const PWin32CriticalSection&) = delete;
    PWin32CriticalSection& operator=(const PWin32CriticalSection&) = delete;

    /// Waits without limit.
    void Lock() noexcept;
    /// False when another thread holds it; never waits.
    [[nodiscard]] bool TryToLock() noexcept;
    void Unlock() noexcept;

    // The names that std::lock_guard and std::unique_lock ask for.
    void lock() noexcept { Lock(); }
    [[nodiscard]] bool try_lock() noexcept { return TryToLock(); }
    void unlock() noexcept { Unlock(); }

private:
    // The size of a CRITICAL_SECTION in a 64-bit process, checked where the real type is known.
    static constexpr unsigned cSize = 40;
    alignas(8) unsigned char mSection[cSize];
};
