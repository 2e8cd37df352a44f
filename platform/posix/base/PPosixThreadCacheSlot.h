#pragma once

#include <pthread.h>

/// PPosixThreadCacheSlot: one pointer a thread, which is read fast, and a function that gets it when its
/// thread ends.
///
/// A thread finds null until it has set something.
class PPosixThreadCacheSlot {
public:
    /// Called on the ending thread, which then finds null.
    using AtThreadEnd = void (*)(void* value);

    /// Without a free slot in the process, nothing can be set.
    explicit PPosixThreadCacheSlot(AtThreadEnd atThreadEnd) noexcept;
    ~PPosixThreadCacheSlot() { End(); }
    PPosixThreadCacheSlot(const PPosixThreadCacheSlot&) = delete;
    PPosixThreadCacheSlot& operator=(const PPosixThreadCacheSlot&) = delete;

    /// The calling thread's pointer.
    [[nodiscard]] void* Get() const noexcept { return mIsThere ? pthread_getspecific(mKey) : nullptr; }
    /// Sets the calling thread's pointer. False, with nothing set, when the system has no room for it.
    bool Set(void* value) noexcept { return mIsThere && pthread_setspecific(mKey, value) == 0; }
    /// For the function: whether the calling thread has set this pointer.
    [[nodiscard]] bool IsOfThread(const void*) const noexcept { return true; }
    /// Gives the slot back. No thread finds anything afterwards, and of no thread's end anything is told.
    void End() noexcept;

private:
    pthread_key_t mKey = 0;
    bool mIsThere;
};
