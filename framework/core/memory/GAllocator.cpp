#include "framework/core/memory/GAllocator.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <mutex>
#include <new>

#include "framework/core/memory/GPoolPoison.h"
#include "platform/base/PMemory.h"

// Before the first and after the last of the module's other static objects, whatever source they are
// in: any of them may hold blocks.
GAllocator GAllocator::sInstance __attribute__((init_priority(101)));

GAllocator::GAllocator() noexcept {
    for (std::size_t i = 0; i < cSmallClassCount; ++i) mFixedSizes[i].Initialize(this, SizeOf(i));
}

GAllocator::~GAllocator() {
    mCacheSlot.End();
    while (mCaches != nullptr) EndCache(*mCaches);
    ReleasePools(0);
    SetMoreMemoryFree(false);
    for (GFixedSizeAllocator& sizeClass : mFixedSizes) sizeClass.AbandonChunks();
}

void* GAllocator::Allocate(std::size_t size) {
    void* const block = TryToAllocate(size);
    return block != nullptr ? block : TryAfterNewHandler([=, this] { return TryToAllocate(size); });
}

void* GAllocator::TryToAllocate(std::size_t size) noexcept {
    if (size > cMaxPooledSize) return PMemory::AllocateFromHeap(size);
    const std::size_t sizeClass = ClassOf(size);
    Cache* const cache = GetCacheOfThread();
    return cache != nullptr ? AllocateCached(*cache, sizeClass) : AllocateAtFirst(sizeClass);
}

inline void* GAllocator::AllocateCached(Cache& cache, std::size_t sizeClass) noexcept {
    if (!Enter(cache)) return TakeFromPool(sizeClass);
    BlockList& list = cache.lists[sizeClass];
    if (list.IsEmpty()) Refill(list, sizeClass);
    void* const block = list.IsEmpty() ? nullptr : list.Take(sizeClass);
    Leave(cache);
    return block;
}

void* GAllocator::Reallocate(void* block, std::size_t oldSize, std::size_t newSize) {
    if (oldSize > cMaxPooledSize && newSize > cMaxPooledSize) {
        void* const grown = PMemory::ReallocateInHeap(block, newSize);
        if (grown != nullptr) return grown;
        return TryAfterNewHandler([=] { return PMemory::ReallocateInHeap(block, newSize); });
    }
    void* const moved = Allocate(newSize);
    std::memcpy(moved, block, std::min(oldSize, newSize));
    Free(block, oldSize);
    return moved;
}

template <class Try>
void* GAllocator::TryAfterNewHandler(Try tryOnce) {
    while (NewHandler()) {
        void* const block = tryOnce();
        if (block != nullptr) return block;
    }
    ThrowOutOfMemory();
}

void GAllocator::Free(void* block, std::size_t size) noexcept {
    if (block == nullptr) return;
    if (size > cMaxPooledSize) {
        PMemory::FreeToHeap(block);
        return;
    }
    if (size <= cMaxSmallSize) {
        GAllocator* const owner = GAllocatorChunk::Of(block)->GetOwner();
        if (owner != this) {
            if (owner != nullptr) owner->FreeForOtherModule(block, size);
            return;
        }
    }
    FreeCached(block, ClassOf(size));
}

void GAllocator::FreeCached(void* block, std::size_t sizeClass) noexcept {
    // A thread that only gives back gets no cache: it may be at its very end.
    Cache* const cache = GetCacheOfThread();
    if (cache == nullptr || !Enter(*cache)) return GiveToPool(block, sizeClass);
    BlockList& list = cache->lists[sizeClass];
    list.Put(block, sizeClass);
    if (list.GetCount() > CacheLimit(sizeClass)) Drain(list, sizeClass, list.GetCount() / 2);
    Leave(*cache);
}

// Virtual, so that the owner's own module does it.
void GAllocator::FreeForOtherModule(void* block, std::size_t size) noexcept {
    GiveToPool(block, ClassOf(size));
}

// --- Caches ------------------------------------------------------------------------------------

void GAllocator::BlockList::Put(void* block, std::size_t sizeClass) noexcept {
    GPoolPoison::Forbid(block, SizeOf(sizeClass));
    GPoolPoison::SetNext(block, mFirst);
    mFirst = block;
    ++mCount;
}

void* GAllocator::BlockList::Take(std::size_t sizeClass) noexcept {
    void* const block = mFirst;
    mFirst = GPoolPoison::GetNext(block, SizeOf(sizeClass));
    --mCount;
    return block;
}

// False when another thread empties it just now. The order of the two words is the compiler's affair here;
// DrainCaches sees to the processors.
inline bool GAllocator::Enter(Cache& cache) noexcept {
    cache.busy.store(true, std::memory_order_relaxed);
    std::atomic_signal_fence(std::memory_order_seq_cst);
    if (!cache.closed.load(std::memory_order_acquire)) return true;
    Leave(cache);
    return false;
}

// Of a thread that has no cache yet. Without memory for one it goes without.
void* GAllocator::AllocateAtFirst(std::size_t sizeClass) noexcept {
    void* const place = PMemory::AllocateFromHeap(sizeof(Cache));
    if (place == nullptr) return TakeFromPool(sizeClass);
    Cache& cache = *::new (place) Cache(*this);
    if (!mCacheSlot.Set(&cache)) {
        PMemory::FreeToHeap(place);
        return TakeFromPool(sizeClass);
    }
    {
        const std::lock_guard<PCriticalSection> lock(mSection);
        cache.next = mCaches;
        if (mCaches != nullptr) mCaches->previous = &cache;
        mCaches = &cache;
    }
    return AllocateCached(cache, sizeClass);
}

void GAllocator::AtThreadEnd(void* value) noexcept {
    Cache& cache = *static_cast<Cache*>(value);
    GAllocator& allocator = cache.allocator;
    if (!allocator.mCacheSlot.IsOfThread(value)) return;
    allocator.mCacheSlot.Set(nullptr);
    allocator.EndCache(cache);
}

// Its thread has ended, or all have.
void GAllocator::EndCache(Cache& cache) noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    DrainAll(cache);
    (cache.previous != nullptr ? cache.previous->next : mCaches) = cache.next;
    if (cache.next != nullptr) cache.next->previous = cache.previous;
    PMemory::FreeToHeap(&cache);
}

// Enough that what a thread takes and gives back in turn seldom needs the lock.
std::int32_t GAllocator::CacheLimit(std::size_t sizeClass) noexcept {
    static constexpr auto cLimits = [] {
        constexpr std::size_t cBytes = 8192;
        constexpr std::size_t cMost = 128;
        std::array<unsigned char, cClassCount> limits{};
        for (std::size_t i = 0; i < cClassCount; ++i) {
            limits[i] = static_cast<unsigned char>(std::min(cBytes / ((i + 1) * cGranularity), cMost));
        }
        return limits;
    }();
    return cLimits[sizeClass];
}

// Fetches half of what the cache may hold, or what there is; of a larger size, one block. The cache is
// the caller's just now.
void GAllocator::Refill(BlockList& list, std::size_t sizeClass) noexcept {
    const std::int32_t wanted = sizeClass < cSmallClassCount ? CacheLimit(sizeClass) / 2 : 1;
    const std::lock_guard<PCriticalSection> lock(mSection);
    while (list.GetCount() < wanted) {
        void* const block = TakeFromPool(sizeClass);
        if (block == nullptr) return;
        list.Put(block, sizeClass);
    }
}

void GAllocator::Drain(BlockList& list, std::size_t sizeClass, std::int32_t keep) noexcept {
    if (list.GetCount() <= keep) return;
    const std::lock_guard<PCriticalSection> lock(mSection);
    while (list.GetCount() > keep) GiveToPool(list.Take(sizeClass), sizeClass);
}

void GAllocator::DrainAll(Cache& cache) noexcept {
    for (std::size_t i = 0; i < cClassCount; ++i) Drain(cache.lists[i], i, 0);
}

// Leaves out the caches that are in use just now, and where the system has no barrier for all threads, those
// of the others.
void GAllocator::DrainCaches() noexcept {
    const std::lock_guard<PCriticalSection> lock(mSection);
    for (Cache* cache = mCaches; cache != nullptr; cache = cache->next) cache->closed.store(true);
    const bool seen = PMemory::FenceAllThreads();
    const Cache* const own = GetCacheOfThread();
    for (Cache* cache = mCaches; cache != nullptr; cache = cache->next) {
        if (cache == own || (seen && !cache->busy.load(std::memory_order_acquire))) DrainAll(*cache);
        cache->closed.store(false, std::memory_order_release);
    }
}

// --- Pools -------------------------------------------------------------------------------------

void* GAllocator::TakeFromPool(std::size_t sizeClass) noexcept {
    {
        const std::lock_guard<PCriticalSection> lock(mSection);
        if (sizeClass < cSmallClassCount) return mFixedSizes[sizeClass].Allocate();
        BlockList& list = mHeapBlocks[sizeClass];
        if (!list.IsEmpty()) return list.Take(sizeClass);
    }
    return PMemory::AllocateFromHeap(SizeOf(sizeClass));
}

void GAllocator::GiveToPool(void* block, std::size_t sizeClass) noexcept {
    constexpr std::size_t cMaxListBytes = 32768;
    {
        const std::lock_guard<PCriticalSection> lock(mSection);
        if (sizeClass < cSmallClassCount) {
            GPoolPoison::Forbid(block, SizeOf(sizeClass));
            mFixedSizes[sizeClass].Free(block);
            return;
        }
        BlockList& list = mHeapBlocks[sizeClass];
        if (static_cast<std::size_t>(list.GetCount()) * SizeOf(sizeClass) < cMaxListBytes) {
            list.Put(block, sizeClass);
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
    for (std::size_t i = cSmallClassCount; i < cClassCount; ++i) {
        for (; !mHeapBlocks[i].IsEmpty(); released = true) PMemory::FreeToHeap(mHeapBlocks[i].Take(i));
    }
    return released;
}

void GAllocator::ReleaseFreeLists() noexcept {
    ReleasePools(0);
}

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
