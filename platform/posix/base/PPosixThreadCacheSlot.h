#pragma once

#include <pthread.h>

#include <cstdint>

/// PPosixThreadCacheSlot: one pointer a thread, which is read without a call, and a function that gets it
/// when its thread ends.
///
/// A thread finds null until it has set something.
class PPosixThreadCacheSlot {
public:
    /// Called on the ending thread; it sets null first.
    using AtThreadEnd = void (*)(void* value);

    /// Without a free slot in the process, nothing can be set.
    explicit PPosixThreadCacheSlot(AtThreadEnd atThreadEnd) noexcept;
    ~PPosixThreadCacheSlot() { End(); }
    PPosixThreadCacheSlot(const PPosixThreadCacheSlot&) = delete;
    PPosixThreadCacheSlot& operator=(const PPosixThreadCacheSlot&) = delete;

    /// The calling thread's pointer.
    [[nodiscard]] void* Get() const noexcept { return sLast.slot == mID ? sLast.value : GetFromKey(); }
    /// Sets the calling thread's pointer. False, with nothing set, when the system has no room for it.
    bool Set(void* value) noexcept;
    /// For the function: whether the calling thread has set this pointer.
    [[nodiscard]] bool IsOfThread(const void*) const noexcept { return true; }
    /// Gives the slot back. No thread finds anything afterwards, and of no thread's end anything is told.
    void End() noexcept;

private:
    /// What the thread has set or found last; null in the slot 0, which is none.
    struct Last {
        std::uint64_t slot;
        void* value;
    };

    [[gnu::noinline]] void* GetFromKey() const noexcept;

    static inline thread_local constinit Last sLast = {};

    std::uint64_t mID = 0;  // never used again; 0 when there is no slot
    pthread_key_t mKey = 0;
};
