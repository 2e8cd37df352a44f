#pragma once

/// PWin32ThreadLocalSlot: one pointer a thread, in a slot of the system's thread local storage.
///
/// A thread finds null until it has set something. Nothing is done with the pointers when a thread
/// or the slot ends: who stores an address here owns what is behind it. (A `thread_local` object
/// with a destructor would pin the DLL in its process.)
class PWin32ThreadLocalSlot {
public:
    /// Throws std::bad_alloc when the process has used up its slots.
    PWin32ThreadLocalSlot();
    ~PWin32ThreadLocalSlot();
    PWin32ThreadLocalSlot(const PWin32ThreadLocalSlot&) = delete;
    PWin32ThreadLocalSlot& operator=(const PWin32ThreadLocalSlot&) = delete;

    /// The calling thread's pointer. Leaves the last error as it is.
    [[nodiscard]] void* Get() const noexcept;
    /// Sets the calling thread's pointer. Throws std::bad_alloc when the system has no memory for it.
    void Set(void* value);

private:
    unsigned long mIndex;
};
