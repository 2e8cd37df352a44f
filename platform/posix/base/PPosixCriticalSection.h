#pragma once

#include <pthread.h>

/// PPosixCriticalSection: a recursive mutex that is made and destroyed with its object.
///
/// The thread that holds it may lock it again and unlocks it as often. Any thread may call; a thread
/// unlocks only what it has locked.
class PPosixCriticalSection {
public:
    PPosixCriticalSection() noexcept;
    ~PPosixCriticalSection();
    PPosixCriticalSection(const PPosixCriticalSection&) = delete;
    PPosixCriticalSection& operator=(const PPosixCriticalSection&) = delete;

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
    pthread_mutex_t mMutex;
};
