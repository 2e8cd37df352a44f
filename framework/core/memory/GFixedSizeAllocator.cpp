#include "framework/core/memory/GFixedSizeAllocator.h"

#include <new>

#include "framework/core/memory/GPoolPoison.h"
#include "platform/base/PMemory.h"

void GFixedSizeAllocator::Initialize(GAllocator* owner, std::size_t blockSize) noexcept {
    mOwner = owner;
    mBlockSize = blockSize;
}

void* GFixedSizeAllocator::Allocate() noexcept {
    if (mUsable == nullptr && !AddChunk()) return nullptr;
    return TakeBlock(*mUsable);
}

void GFixedSizeAllocator::Free(void* block) noexcept {
    GAllocatorChunk& chunk = *GAllocatorChunk::Of(block);
    GPoolPoison::SetNext(block, chunk.mFree);
    chunk.mFree = block;
    --mUsedCount;
    if (++chunk.mFreeCount == 1) LinkUsable(chunk);
    if (chunk.mFreeCount == chunk.mBlockCount) ++mEmptyCount;
}

long GFixedSizeAllocator::ReleaseFreeChunks(long keep) noexcept {
    long released = 0;
    for (GAllocatorChunk* chunk = mChunks; chunk != nullptr && mEmptyCount > keep;) {
        GAllocatorChunk* const next = chunk->mNext;
        if (chunk->mFreeCount == chunk->mBlockCount) {
            ReleaseChunk(*chunk);
            ++released;
        }
        chunk = next;
    }
    return released;
}

void GFixedSizeAllocator::AbandonChunks() noexcept {
    for (GAllocatorChunk* chunk = mChunks; chunk != nullptr; chunk = chunk->mNext) chunk->mOwner = nullptr;
    mChunks = nullptr;
    mUsable = nullptr;
    mChunkCount = 0;
    mEmptyCount = 0;
    mUsedCount = 0;
}

bool GFixedSizeAllocator::AddChunk() noexcept {
    void* const memory = PMemory::AllocateAligned(GAllocatorChunk::cSize);
    if (memory == nullptr) return false;
    GAllocatorChunk& chunk = *::new (memory) GAllocatorChunk;
    chunk.mOwner = mOwner;
    chunk.mFresh = static_cast<unsigned char*>(memory) + GAllocatorChunk::cHeaderSize;
    const std::size_t room = GAllocatorChunk::cSize - GAllocatorChunk::cHeaderSize;
    chunk.mBlockCount = chunk.mFreeCount = static_cast<std::int32_t>(room / mBlockSize);
    GPoolPoison::Forbid(chunk.mFresh, room);
    chunk.mNext = mChunks;
    if (mChunks != nullptr) mChunks->mPrevious = &chunk;
    mChunks = &chunk;
    ++mChunkCount;
    ++mEmptyCount;
    LinkUsable(chunk);
    return true;
}

void* GFixedSizeAllocator::TakeBlock(GAllocatorChunk& chunk) noexcept {
    if (chunk.mFreeCount == chunk.mBlockCount) --mEmptyCount;
    // Fresh memory first: blocks that come back lie beside others of the thread that gave them, and two
    // threads that write to the same cache line hold each other up.
    const unsigned char* const end = reinterpret_cast<unsigned char*>(&chunk) + GAllocatorChunk::cSize;
    void* block = chunk.mFresh;
    if (end - chunk.mFresh >= static_cast<std::ptrdiff_t>(mBlockSize)) {
        chunk.mFresh += mBlockSize;
        GPoolPoison::Permit(block, mBlockSize);
    } else {
        block = chunk.mFree;
        chunk.mFree = GPoolPoison::GetNext(block, mBlockSize);
    }
    ++mUsedCount;
    if (--chunk.mFreeCount == 0) UnlinkUsable(chunk);
    return block;
}

void GFixedSizeAllocator::LinkUsable(GAllocatorChunk& chunk) noexcept {
    chunk.mPreviousUsable = nullptr;
    chunk.mNextUsable = mUsable;
    if (mUsable != nullptr) mUsable->mPreviousUsable = &chunk;
    mUsable = &chunk;
}

void GFixedSizeAllocator::UnlinkUsable(GAllocatorChunk& chunk) noexcept {
    if (chunk.mPreviousUsable != nullptr) chunk.mPreviousUsable->mNextUsable = chunk.mNextUsable;
    if (chunk.mNextUsable != nullptr) chunk.mNextUsable->mPreviousUsable = chunk.mPreviousUsable;
    if (mUsable == &chunk) mUsable = chunk.mNextUsable;
}

void GFixedSizeAllocator::ReleaseChunk(GAllocatorChunk& chunk) noexcept {
    UnlinkUsable(chunk);
    if (chunk.mPrevious != nullptr) chunk.mPrevious->mNext = chunk.mNext;
    if (chunk.mNext != nullptr) chunk.mNext->mPrevious = chunk.mPrevious;
    if (mChunks == &chunk) mChunks = chunk.mNext;
    --mChunkCount;
    --mEmptyCount;
    GPoolPoison::Permit(&chunk, GAllocatorChunk::cSize);
    PMemory::FreeAligned(&chunk);
}
