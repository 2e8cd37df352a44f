#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "PPlatformTypes.h"
#include "framework/core/GExport.h"
#include "framework/core/memory/GFixedSizeAllocator.h"

/// GAllocator: the pooled block allocator behind GBuffer, GTable, GDict and GFastAllocatable.
///
/// Requests are rounded up to a multiple of 8 bytes, and blocks are aligned to 8 bytes.
/// - up to 128 bytes: size classes of 8 bytes, carved from chunks of 32768 bytes;
/// - up to 1024 bytes: a free list a size class, which is refilled by what is given back;
/// - above: the heap of the process.
///
/// Threads: any thread may call anything. One critical section guards chunks and free lists. In front of it
/// each thread has a small cache of free blocks, at most 8 KiB and 128 blocks of a size. It takes from there
/// and gives back there without a lock or a call of the system; when it ends, its blocks go back.
///
/// Modules: each module that links the framework (the DLL; a program that links it statically) has an
/// allocator of its own. A small block that is given to another module's allocator is passed on to
/// the one that carved it, which its chunk names; larger blocks belong to the heap of the process,
/// which all modules share.
///
/// Lifetime: the one instance is constructed before and destroyed after every other static object
/// of its module, so that blocks may be held by any of them. Its end returns all pooled memory to the
/// system, so that loading and unloading the module leaves nothing behind; a chunk with blocks still
/// in use is left to them.
class QUILLON_EXPORT GAllocator {
public:
    static constexpr std::size_t cGranularity = 8;     ///< bytes: blocks are aligned to it, sizes rounded up
    static constexpr std::size_t cMaxSmallSize = 128;  ///< the largest block from a chunk
    static constexpr std::size_t cMaxPooledSize = 1024;  ///< the largest block kept in a free list

    /// The allocator of the calling module.
    static GAllocator& GetInstance() noexcept { return sInstance; }

    GAllocator() noexcept;
    virtual ~GAllocator();
    GAllocator(const GAllocator&) = delete;
    GAllocator& operator=(const GAllocator&) = delete;

    /// A block of at least `size` bytes, to be given back with the same size. Throws as
    /// ThrowOutOfMemory() does when there is no memory even after NewHandler().
    [[nodiscard]] void* Allocate(std::size_t size);
    /// A block of at least `newSize` bytes in the place of one of `oldSize`, whose bytes it has as far as
    /// both reach. A large block grows where it stands when the heap can. Throws as Allocate(), and
    /// the block is then as it was.
    [[nodiscard]] void* Reallocate(void* block, std::size_t oldSize, std::size_t newSize);
    /// Takes back a block; `size` is what Allocate() was asked for. Null is ignored.
    void Free(void* block, std::size_t size) noexcept;

    /// The number of 8-byte steps that a request takes: 1 for 0 to 8 bytes, 2 for 9 to 16, ...
    static constexpr std::size_t GetIndex(std::size_t size) noexcept {
        return size == 0 ? 1 : (size - 1) / cGranularity + 1;
    }

    /// Returns all memory that no block uses to the system.
    void ReleaseFreeLists() noexcept;
    /// For the application's idle time: the same, except that a free chunk of each size class stays,
    /// and a spent emergency block is taken again.
    void DoIdleTime() noexcept;

    /// Called when the system has no memory: returns pooled memory, and when there was none, the
    /// emergency block. True when something was returned, and another try is worth while.
    bool NewHandler() noexcept;
    /// True: takes the emergency block, unless it is held. False: returns it to the system.
    void SetMoreMemoryFree(bool reserve) noexcept;
    /// Whether the emergency block is held. An application that finds it gone should save and warn.
    bool GetMoreMemoryFree() noexcept;

    /// Chunks that are held now.
    long GetChunkCount() noexcept;
    /// Small blocks that are in use now. Empties the caches to see it, but for those in use just then.
    long GetUsedBlockCount() noexcept;

    /// Throws the exception for exhausted memory, a GMemoryException.
    [[noreturn]] static void ThrowOutOfMemory();

private:
    // Size classes count from 0 for 8 bytes; the first of them come from chunks.
    static constexpr std::size_t cSmallClassCount = cMaxSmallSize / cGranularity;
    static constexpr std::size_t cClassCount = cMaxPooledSize / cGranularity;
    static constexpr std::size_t cEmergencySize = 65536;

    // Free blocks of one size, chained through their first word.
    class BlockList {
    public:
        bool IsEmpty() const noexcept { return mFirst == nullptr; }
        std::int32_t GetCount() const noexcept { return mCount; }
        void Put(void* block, std::size_t sizeClass) noexcept;
        void* Take(std::size_t sizeClass) noexcept;

    private:
        void* mFirst = nullptr;
        std::int32_t mCount = 0;
    };
    // What a thread keeps. Its own thread says that it is in it by writing one word and looks at another one.
    // Whoever wants to empty it writes the other one first, has all threads pass a barrier, and then looks
    // whether its thread is in it. So the thread itself, which comes by all the time, needs no barrier.
    struct Cache {
        explicit Cache(GAllocator& owner) noexcept : allocator(owner) {}

        std::atomic<bool> busy{false};
        std::atomic<bool> closed{false};
        BlockList lists[cClassCount];
        GAllocator& allocator;
        Cache* next = nullptr;  // of all threads; guarded as the pools are
        Cache* previous = nullptr;
    };

    static std::size_t ClassOf(std::size_t size) noexcept { return GetIndex(size) - 1; }
    static std::size_t SizeOf(std::size_t sizeClass) noexcept { return (sizeClass + 1) * cGranularity; }
    static std::int32_t CacheLimit(std::size_t sizeClass) noexcept;
    Cache* GetCacheOfThread() const noexcept { return static_cast<Cache*>(mCacheSlot.Get()); }
    static bool Enter(Cache& cache) noexcept;
    static void Leave(Cache& cache) noexcept { cache.busy.store(false, std::memory_order_release); }

    void* TryToAllocate(std::size_t size) noexcept;
    void FreeCached(void* block, std::size_t sizeClass) noexcept;
    // The rare ways are kept out of line. Inlined, they would make the common ways save registers, which
    // would take longer than all the rest.
    template <class Try>
    [[gnu::noinline]] void* TryAfterNewHandler(Try tryOnce);
    [[gnu::noinline]] void Refill(BlockList& list, std::size_t sizeClass) noexcept;
    [[gnu::noinline]] void Drain(BlockList& list, std::size_t sizeClass, std::int32_t keep) noexcept;
    [[gnu::noinline]] void* AllocateAtFirst(std::size_t sizeClass) noexcept;
    [[gnu::noinline]] void* TakeFromPool(std::size_t sizeClass) noexcept;
    [[gnu::noinline]] void GiveToPool(void* block, std::size_t sizeClass) noexcept;
    void* AllocateCached(Cache& cache, std::size_t sizeClass) noexcept;
    static void AtThreadEnd(void* value) noexcept;
    void DrainAll(Cache& cache) noexcept;
    void DrainCaches() noexcept;
    void EndCache(Cache& cache) noexcept;
    bool ReleasePools(long keptChunks) noexcept;
    virtual void FreeForOtherModule(void* block, std::size_t size) noexcept;

    static GAllocator sInstance;

    PCriticalSection mSection;
    PThreadCacheSlot mCacheSlot{&GAllocator::AtThreadEnd};
    Cache* mCaches = nullptr;
    GFixedSizeAllocator mFixedSizes[cSmallClassCount];
    BlockList mHeapBlocks[cClassCount];  // of the classes above the small ones
    void* mEmergency = nullptr;
    bool mEmergencySpent = false;  // to be taken again in idle time
};
