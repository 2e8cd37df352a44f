#pragma once

/// PWin32ThreadCacheSlot: one pointer a thread, which is read without a call, and a function that gets it
/// when its thread ends.
///
/// A thread finds null until it has set something. It lies in a slot of the thread's environment block. (The
/// compiler's own thread-local variables are read by a call here, and a `thread_local` object with a
/// destructor would pin the DLL in its process.)
class PWin32ThreadCacheSlot {
public:
    /// Called on the ending thread; ask IsOfThread first.
    using AtThreadEnd = void (*)(void* value);

    /// Without a free slot in the process, nothing can be set.
    explicit PWin32ThreadCacheSlot(AtThreadEnd atThreadEnd) noexcept;
    ~PWin32ThreadCacheSlot() { End(); }
    PWin32ThreadCacheSlot(const PWin32ThreadCacheSlot&) = delete;
    PWin32ThreadCacheSlot& operator=(const PWin32ThreadCacheSlot&) = delete;

    /// The calling thread's pointer. Leaves the last error as it is.
    [[nodiscard]] void* Get() const noexcept {
        return mOffset != 0 ? ReadEnvironment(mOffset) : GetFromExpansion();
    }
    /// Sets the calling thread's pointer. False, with nothing set, when the system has no room for it.
    bool Set(void* value) noexcept;
    /// For the function: whether the calling thread has set this pointer. A fiber that ends has it called
    /// wherever it was created or deleted; the thread may then still use what is behind the pointer.
    [[nodiscard]] bool IsOfThread(const void* value) const noexcept { return Get() == value; }
    /// Gives the slot back. No thread finds anything afterwards, and of no thread's end anything is told.
    void End() noexcept;

private:
    /// The word at a place in the environment block of the calling thread.
    static void* ReadEnvironment(unsigned long long offset) noexcept {
        void* word;
        __asm__ volatile("movq %%gs:(%1), %0" : "=r"(word) : "r"(offset));
        return word;
    }
    [[gnu::noinline]] void* GetFromExpansion() const noexcept;

    unsigned long long mOffset = 0;  // bytes in the environment block; 0 for a slot beyond its first ones
    unsigned long mIndex;
    unsigned long mEndIndex;  // of the fiber local slot that tells of the thread's end
};
