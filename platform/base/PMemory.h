#pragma once

#include <cstddef>

/// PMemory: where the framework's allocator gets its memory from, implemented once a platform.
///
/// On Windows the heap is that of the process, not of a run-time library, so that a block which one
/// module took may be given back by another. Any thread may call.
class PMemory {
public:
    /// A block of `size` bytes aligned to `size`, a power of two from a page to 64 KiB. Null when the
    /// system has none.
    static void* AllocateAligned(std::size_t size) noexcept;
    /// Gives back a block of AllocateAligned().
    static void FreeAligned(void* block) noexcept;

    /// A heap block, aligned to 16 bytes. Null when the system has none.
    static void* AllocateFromHeap(std::size_t size) noexcept;
    /// Changes a heap block's size, where it stands when the heap can, and keeps the bytes that both
    /// sizes hold. The block's new place; null, with the block as it was, when the system has none.
    static void* ReallocateInHeap(void* block, std::size_t size) noexcept;
    /// Gives back a block of AllocateFromHeap() or ReallocateInHeap().
    static void FreeToHeap(void* block) noexcept;

    /// Makes every running thread of the process pass a memory barrier: what the caller has written, each of
    /// them reads from then on, and what each has written, the caller reads. False when the system has no
    /// such call.
    static bool FenceAllThreads() noexcept;
};
