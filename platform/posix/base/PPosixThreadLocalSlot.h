#pragma once

#include <pthread.h>

/// PPosixThreadLocalSlot: one pointer a thread, in a slot of the system's thread local storage.
///
/// A thread finds null until it has set something. Nothing is done with the pointers when a thread
/// or the slot ends: who stores an address here owns what is behind it.
class PPosixThreadLocalSlot {
public:
    /// Throws std::bad_alloc when the process has used up its slots.
    PPosixThreadLocalSlot();
    ~PPosixThreadLocalSlot();
    PPosixThreadLocalSlot(const PPosixThreadLocalSlot&) = delete;
    PPosixThreadLocalSlot& operator=(const PPosixThreadLocalSlot&) = delete;

    /// The calling thread's pointer.
    [[nodiscard]] void* Get() const noexcept;
    /// Sets the calling thread's pointer. Throws std::bad_alloc when the system has no memory for it.
    void Set(void* value);

private:
    pthread_key_t mKey;
};
