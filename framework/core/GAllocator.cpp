#include "framework/core/GAllocator.h"

#include <algorithm>
#include <mutex>

#include "framework/core/GException.h"
#include "framework/core/GPoolPoison.h"
#include "platform/PMemory.h"

// Before the first and after the last of the module's other static objects, whatever source they are
// in: any of them may hold blocks.
GAllocator GAllocator::sInstance __attribute__((init_priority(101)));

GAllocator::GAllocator() noexcept {
    for (std::size_t i = 0; i < cSmallClassCount; ++i) mFixedSizes[i].Initialize(this, (i + 1) * cGranularity);
}

GAllocator::~GAllocator() {
    ReleasePools(0);
    SetMoreMemoryFree(false);
    for (GFixedSizeAllocator& sizeClass : mFixedSizes) sizeClass.AbandonChunks();
}

void* GAllocator::Allocate(std::size_t size) {
    void* const block = TryToAllocate(size);
    return block != nullptr ? block : AllocateAfterNewHandler(size);
}

void GAllocator::Free(void* block, std::size_t size) noexcept {
    if (block == nullptr) return;
    if (size <= cMaxSmallSize) {
        GAllocator* const owner = GAllocatorChunk::Of(block)->GetOwner();
        if (owner == this) {
            FreeSmall(block, GetIndex(size) - 1);
        } else if (owner != nullptr) {
            owner->FreeForOtherModule(block, size);
        }
    } else if (size <= cMaxPooledSize) {
        FreePooled(block, (size - cMaxSmallSize - 1) / cGranularity);
    } else {
        PMemory::FreeToHeap(block);
    }
}

void* GAllocator::TryToAllocate(std::size_t size) noexcept {
    if (size <= cMaxSmallSize) return AllocateSmall(GetIndex(size) - 1);
    if (size <= cMaxPooledSize) return AllocatePooled((size - cMaxSmallSize - 1) / cGranularity);
    return PMemory::AllocateFromHeap(size);
}

void* GAllocator::AllocateAfterNewHandler(std::size_t size) {
    while (NewHandler()) {
        void* const block = TryToAllocate(size);
        if (block != nullptr) return block;
    }
    ThrowOutOfMemory();
}

// Virtual, so that the owner's own module does it.
void GAllocator::FreeForOtherModule(void* block, std::size_t size) noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    FreeSmallLocked(block, GetIndex(size) - 1);
}

void GAllocator::ThrowOutOfMemory() { throw GMemoryException(); }

// --- Small blocks ------------------------------------------------------------------------------

GAllocator::Cache& GAllocator::CacheOfThread(GAllocator& allocator) noexcept {
    // Threads' stacks lie far apart. Two threads that come to share a cache by this only get in each
    // other's way a little; what is in it is guarded by its flag.
    const auto stack = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const std::uint32_t mixed = static_cast<std::uint32_t>(stack >> 18) * 0x9E3779B1U;
    static_assert(cCacheCount == 16);
    return allocator.mCaches[mixed >> 28];
}

// 2 KiB of a size, within reason.
constexpr std::int32_t GAllocator::CacheLimit(std::size_t smallClass) noexcept {
    constexpr std::size_t cBytes = 2048;
    return static_cast<std::int32_t>(std::min<std::size_t>(cBytes / ((smallClass + 1) * cGranularity), 128));
}

void* GAllocator::AllocateSmall(std::size_t smallClass) noexcept {
    Cache& cache = CacheOfThread(*this);
    if (cache.busy.exchange(true, std::memory_order_acquire)) return AllocateSmallLocked(smallClass);
    BlockList& list = cache.lists[smallClass];
    if (list.first == nullptr) Refill(list, smallClass);
    void* const block = list.first;
    if (block != nullptr) {
        list.first = GPoolPoison::GetNext(block, (smallClass + 1) * cGranularity);
        --list.count;
    }
    cache.busy.store(false, std::memory_order_release);
    return block;
}

void GAllocator::FreeSmall(void* block, std::size_t smallClass) noexcept {
    Cache& cache = CacheOfThread(*this);
    if (cache.busy.exchange(true, std::memory_order_acquire)) {
        const std::lock_guard<PCriticalSection> lock(mSection);
        FreeSmallLocked(block, smallClass);
        return;
    }
    BlockList& list = cache.lists[smallClass];
    GPoolPoison::Forbid(block, (smallClass + 1) * cGranularity);
    GPoolPoison::SetNext(block, list.first);
    list.first = block;
    if (++list.count > CacheLimit(smallClass)) Drain(list, smallClass, list.count / 2);
    cache.busy.store(false, std::memory_order_release);
}

void* GAllocator::AllocateSmallLocked(std::size_t smallClass) noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    return mFixedSizes[smallClass].Allocate();
}

void GAllocator::FreeSmallLocked(void* block, std::size_t smallClass) noexcept {
    GPoolPoison::Forbid(block, (smallClass + 1) * cGranularity);
    mFixedSizes[smallClass].Free(block);
}

// Fetches half of what a cache may hold, or what there is. The cache is the caller's just now.
void GAllocator::Refill(BlockList& list, std::size_t smallClass) noexcept {
    const std::size_t blockSize = (smallClass + 1) * cGranularity;
    const std::lock_guard<PCriticalSection> lock(mSection);
    for (std::int32_t wanted = CacheLimit(smallClass) / 2; wanted > 0; --wanted) {
        void* const block = mFixedSizes[smallClass].Allocate();
        if (block == nullptr) return;
        GPoolPoison::Forbid(block, blockSize);
        GPoolPoison::SetNext(block, list.first);
        list.first = block;
        ++list.count;
    }
}

void GAllocator::Drain(BlockList& list, std::size_t smallClass, std::int32_t keep) noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    while (list.count > keep) {
        void* const block = list.first;
        list.first = GPoolPoison::GetNext(block, (smallClass + 1) * cGranularity);
        --list.count;
        FreeSmallLocked(block, smallClass);
    }
}

// Leaves out the caches that are in use just now.
void GAllocator::DrainCaches() noexcept {
    for (Cache& cache : mCaches) {
        if (cache.busy.exchange(true, std::memory_order_acquire)) continue;
        for (std::size_t i = 0; i < cSmallClassCount; ++i) Drain(cache.lists[i], i, 0);
        cache.busy.store(false, std::memory_order_release);
    }
}

// --- Larger blocks -----------------------------------------------------------------------------

void* GAllocator::AllocatePooled(std::size_t pooledClass) noexcept {
    const std::size_t blockSize = cMaxSmallSize + (pooledClass + 1) * cGranularity;
    {
        const std::lock_guard<PCriticalSection> lock(mSection);
        BlockList& list = mPooled[pooledClass];
        if (list.first != nullptr) {
            void* const block = list.first;
            list.first = GPoolPoison::GetNext(block, blockSize);
            --list.count;
            return block;
        }
    }
    return PMemory::AllocateFromHeap(blockSize);
}

void GAllocator::FreePooled(void* block, std::size_t pooledClass) noexcept {
    const std::size_t blockSize = cMaxSmallSize + (pooledClass + 1) * cGranularity;
    constexpr std::size_t cMaxListBytes = 32768;
    {
        const std::lock_guard<PCriticalSection> lock(mSection);
        BlockList& list = mPooled[pooledClass];
        if (static_cast<std::size_t>(list.count) * blockSize < cMaxListBytes) {
            GPoolPoison::Forbid(block, blockSize);
            GPoolPoison::SetNext(block, list.first);
            list.first = block;
            ++list.count;
            return;
        }
    }
    PMemory::FreeToHeap(block);
}

// --- Giving back -------------------------------------------------------------------------------

// Whether anything went back to the system.
bool GAllocator::ReleasePools(long keptChunks) noexcept {
    DrainCaches();
    const std::lock_guard<PCriticalSection> lock(mSection);
    bool released = false;
    for (GFixedSizeAllocator& sizeClass : mFixedSizes) {
        if (sizeClass.ReleaseFreeChunks(keptChunks) > 0) released = true;
    }
    for (std::size_t i = 0; i < cPooledClassCount; ++i) {
        BlockList& list = mPooled[i];
        while (list.first != nullptr) {
            void* const block = list.first;
            list.first = GPoolPoison::GetNext(block, cMaxSmallSize + (i + 1) * cGranularity);
            --list.count;
            PMemory::FreeToHeap(block);
            released = true;
        }
    }
    return released;
}

void GAllocator::ReleaseFreeLists() noexcept { ReleasePools(0); }

void GAllocator::DoIdleTime() noexcept {
    ReleasePools(1);
    const std::lock_guard<PCriticalSection> lock(mSection);
    if (mEmergencySpent) SetMoreMemoryFree(true);
}

bool GAllocator::NewHandler() noexcept {
    if (ReleasePools(0)) return true;
    const std::lock_guard<PCriticalSection> lock(mSection);
    if (mEmergency == nullptr) return false;
    SetMoreMemoryFree(false);
    mEmergencySpent = true;
    return true;
}

void GAllocator::SetMoreMemoryFree(bool reserve) noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    mEmergencySpent = false;
    if (reserve) {
        if (mEmergency == nullptr) mEmergency = PMemory::AllocateFromHeap(cEmergencySize);
        mEmergencySpent = mEmergency == nullptr;
    } else {
        PMemory::FreeToHeap(mEmergency);
        mEmergency = nullptr;
    }
}

bool GAllocator::GetMoreMemoryFree() noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    return mEmergency != nullptr;
}

long GAllocator::GetChunkCount() noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    long count = 0;
    for (const GFixedSizeAllocator& sizeClass : mFixedSizes) count += sizeClass.GetChunkCount();
    return count;
}

long GAllocator::GetUsedBlockCount() noexcept {
    DrainCaches();
    const std::lock_guard<PCriticalSection> lock(mSection);
    long count = 0;
    for (const GFixedSizeAllocator& sizeClass : mFixedSizes) count += sizeClass.GetUsedCount();
    return count;
}
