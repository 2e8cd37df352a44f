#pragma once

#include <cstddef>
#include <cstdint>

class GAllocator;

/// GAllocatorChunk: 32768 bytes from which blocks of one size are carved.
///
/// A chunk is aligned to its size, so that the chunk of a block is found by masking the block's
/// address. This header stands at its start; the blocks fill the rest. Free blocks hold the address
/// of the next free one; blocks behind mFresh have never been handed out.
class GAllocatorChunk {
public:
    static constexpr std::size_t cSize = 32768;
    static constexpr std::size_t cHeaderSize = 64;

    static GAllocatorChunk* Of(const void* block) noexcept {
        const std::size_t offset = reinterpret_cast<std::uintptr_t>(block) % cSize;
        return reinterpret_cast<GAllocatorChunk*>(static_cast<char*>(const_cast<void*>(block)) - offset);
    }

    /// The allocator that carves this chunk, whichever module it lives in; null when that allocator
    /// has ended and left the chunk to the blocks that were still in use.
    GAllocator* GetOwner() const noexcept { return mOwner; }
    long GetFreeCount() const noexcept { return mFreeCount; }

private:
    friend class GFixedSizeAllocator;

    GAllocator* mOwner = nullptr;
    GAllocatorChunk* mNext = nullptr;  // all chunks of the size class
    GAllocatorChunk* mPrevious = nullptr;
    GAllocatorChunk* mNextUsable = nullptr;  // chunks of the class with a free block
    GAllocatorChunk* mPreviousUsable = nullptr;
    void* mFree = nullptr;  // chain of blocks that were given back
    unsigned char* mFresh = nullptr;
    std::int32_t mFreeCount = 0;   // both kinds of free blocks
    std::int32_t mBlockCount = 0;  // all blocks of the chunk
};

/// GFixedSizeAllocator: the blocks of one size class. Locked by the allocator that owns it.
class GFixedSizeAllocator {
public:
    /// Tells owner and block size; called once before anything else.
    void Initialize(GAllocator* owner, std::size_t blockSize) noexcept;

    /// Null when a chunk is needed and the system has none.
    void* Allocate() noexcept;
    /// Gives back a block of one of this class's own chunks.
    void Free(void* block) noexcept;
    /// Returns chunks without a block in use to the system, all but `keep` of them. The number returned.
    long ReleaseFreeChunks(long keep) noexcept;
    /// Cuts the chunks that still have blocks in use loose from their owner.
    void AbandonChunks() noexcept;
    long GetChunkCount() const noexcept { return mChunkCount; }
    /// Blocks that are handed out.
    long GetUsedCount() const noexcept { return mUsedCount; }

private:
    bool AddChunk() noexcept;
    void* TakeBlock(GAllocatorChunk& chunk) noexcept;
    void LinkUsable(GAllocatorChunk& chunk) noexcept;
    void UnlinkUsable(GAllocatorChunk& chunk) noexcept;
    void ReleaseChunk(GAllocatorChunk& chunk) noexcept;

    GAllocator* mOwner = nullptr;
    GAllocatorChunk* mChunks = nullptr;
    GAllocatorChunk* mUsable = nullptr;
    std::size_t mBlockSize = 0;
    std::int32_t mChunkCount = 0;
    std::int32_t mEmptyCount = 0;  // chunks without a block in use
    std::int32_t mUsedCount = 0;
};
