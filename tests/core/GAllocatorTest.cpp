#include "framework/core/GAllocator.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "framework/core/GException.h"
#include "framework/core/GFastAllocatable.h"
#include "platform/PMemory.h"

// An address sanitizer would otherwise end the program where the system just says no.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

namespace {

struct Block {
    void* memory;
    std::size_t size;
    unsigned char mark;
};

Block NewBlock(GAllocator& allocator, std::size_t size, unsigned char mark) {
    const Block block{allocator.Allocate(size), size, mark};
    std::memset(block.memory, mark, size);
    return block;
}

bool IsIntact(const Block& block) {
    const auto* const bytes = static_cast<const unsigned char*>(block.memory);
    for (std::size_t i = 0; i < block.size; ++i) {
        if (bytes[i] != block.mark) return false;
    }
    return true;
}

// Random allocations and releases, each block's bytes checked before it goes.
void Churn(GAllocator& allocator, unsigned seed, std::size_t maxSize, int operations) {
    std::mt19937 random(seed);
    std::vector<Block> blocks;
    for (int i = 0; i < operations; ++i) {
        if (blocks.empty() || random() % 100 < 52) {
            blocks.push_back(
                NewBlock(allocator, random() % (maxSize + 1), static_cast<unsigned char>(random())));
            continue;
        }
        std::swap(blocks[random() % blocks.size()], blocks.back());
        ASSERT_TRUE(IsIntact(blocks.back()));
        allocator.Free(blocks.back().memory, blocks.back().size);
        blocks.pop_back();
    }
    for (const Block& block : blocks) {
        ASSERT_TRUE(IsIntact(block));
        allocator.Free(block.memory, block.size);
    }
}

}  // namespace

TEST(GAllocator, SizesAreRoundedUpToEight) {
    const struct {
        std::size_t size;
        std::size_t index;
    } rows[] = {{0, 1}, {1, 1}, {8, 1}, {9, 2}, {16, 2}, {17, 3}, {128, 16}, {129, 17}, {1024, 128}};
    for (const auto& row : rows) EXPECT_EQ(GAllocator::GetIndex(row.size), row.index) << row.size;
}

TEST(GAllocator, BlocksAreAlignedApartAndKeepTheirBytes) {
    for (const std::size_t maxSize : {16, 128, 1024, 5000}) {
        GAllocator allocator;
        Churn(allocator, static_cast<unsigned>(maxSize), maxSize, 20000);
        EXPECT_EQ(allocator.GetUsedBlockCount(), 0);
    }
    GAllocator allocator;
    for (const std::size_t size : {1, 8, 9, 24, 128, 129, 1000, 1024, 1025, 100000}) {
        void* const block = allocator.Allocate(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 8, 0u);
        allocator.Free(block, size);
    }
    allocator.Free(nullptr, 8);
}

TEST(GAllocator, SmallBlocksComeFromChunksOfTheirSize) {
    GAllocator allocator;
    EXPECT_EQ(allocator.GetChunkCount(), 0);
    std::vector<void*> blocks;
    std::set<GAllocatorChunk*> chunks;
    for (int i = 0; i < 1000; ++i) {
        blocks.push_back(allocator.Allocate(128));
        chunks.insert(GAllocatorChunk::Of(blocks.back()));
    }
    EXPECT_EQ(chunks.size(), 4u) << "32768 bytes less a header hold 255";
    EXPECT_EQ(allocator.GetChunkCount(), 4);
    EXPECT_EQ(allocator.GetUsedBlockCount(), 1000);
    EXPECT_EQ((*chunks.begin())->GetOwner(), &allocator);
    void* const other = allocator.Allocate(120);
    EXPECT_FALSE(chunks.contains(GAllocatorChunk::Of(other)));
    allocator.Free(other, 120);
    for (void* const block : blocks) allocator.Free(block, 128);
    EXPECT_EQ(allocator.GetUsedBlockCount(), 0);
}

TEST(GAllocator, PooledMemoryGoesBackOnDemand) {
    GAllocator allocator;
    std::vector<void*> blocks;
    for (int i = 0; i < 1000; ++i) blocks.push_back(allocator.Allocate(64));
    EXPECT_EQ(allocator.GetChunkCount(), 2);
    for (std::size_t i = 1; i < blocks.size(); ++i) allocator.Free(blocks[i], 64);
    allocator.ReleaseFreeLists();
    EXPECT_EQ(allocator.GetChunkCount(), 1) << "one block is still in use";
    allocator.Free(blocks[0], 64);
    allocator.DoIdleTime();
    EXPECT_EQ(allocator.GetChunkCount(), 1) << "idle time keeps one for the next";
    allocator.ReleaseFreeLists();
    EXPECT_EQ(allocator.GetChunkCount(), 0);
}

TEST(GAllocator, LargerBlocksAreUsedAgain) {
    GAllocator allocator;
    for (const std::size_t size : {129, 136, 1000, 1024}) {
        void* const block = allocator.Allocate(size);
        allocator.Free(block, size);
        void* const again = allocator.Allocate(size);
        EXPECT_EQ(again, block) << size;
        allocator.Free(again, size);
    }
    EXPECT_EQ(allocator.GetChunkCount(), 0);
}

TEST(GAllocator, ABlockOfAnotherModulesAllocatorGoesBackToIt) {
    GAllocator library;
    GAllocator program;
    std::vector<void*> blocks;
    for (int i = 0; i < 500; ++i) blocks.push_back(library.Allocate(40));
    for (void* const block : blocks) program.Free(block, 40);
    EXPECT_EQ(library.GetUsedBlockCount(), 0);
    EXPECT_EQ(program.GetChunkCount(), 0);
    void* const large = library.Allocate(500);
    program.Free(large, 500);
    void* const reused = program.Allocate(500);
    library.Free(reused, 500);
    library.ReleaseFreeLists();
    EXPECT_EQ(library.GetChunkCount(), 0);
}

TEST(GAllocator, BlocksInUseOutliveTheirAllocator) {
    auto library = std::make_unique<GAllocator>();
    GAllocator program;
    const Block block = NewBlock(*library, 40, 0x5A);
    library.reset();
    EXPECT_TRUE(IsIntact(block));
    EXPECT_EQ(GAllocatorChunk::Of(block.memory)->GetOwner(), nullptr);
    program.Free(block.memory, block.size);  // nobody's any more: does nothing
    EXPECT_EQ(program.GetChunkCount(), 0);
    PMemory::FreeAligned(GAllocatorChunk::Of(block.memory));
}

TEST(GAllocator, WithoutMemoryItGivesUpPoolsThenTheEmergencyBlock) {
    GAllocator allocator;
    EXPECT_FALSE(allocator.GetMoreMemoryFree());
    EXPECT_FALSE(allocator.NewHandler()) << "there is nothing to give";
    allocator.SetMoreMemoryFree(true);
    EXPECT_TRUE(allocator.GetMoreMemoryFree());
    allocator.Free(allocator.Allocate(40), 40);
    allocator.Free(allocator.Allocate(500), 500);
    EXPECT_TRUE(allocator.NewHandler()) << "the pools";
    EXPECT_EQ(allocator.GetChunkCount(), 0);
    EXPECT_TRUE(allocator.GetMoreMemoryFree());
    EXPECT_TRUE(allocator.NewHandler()) << "the emergency block";
    EXPECT_FALSE(allocator.GetMoreMemoryFree());
    EXPECT_FALSE(allocator.NewHandler());
    allocator.DoIdleTime();
    EXPECT_TRUE(allocator.GetMoreMemoryFree()) << "taken again";
    allocator.SetMoreMemoryFree(false);
    allocator.DoIdleTime();
    EXPECT_FALSE(allocator.GetMoreMemoryFree()) << "given up on purpose";
}

TEST(GAllocator, WhatTheSystemCannotGiveThrows) {
    GAllocator allocator;
    allocator.SetMoreMemoryFree(true);
    const std::size_t tooMuch = std::numeric_limits<std::size_t>::max() / 4;
    EXPECT_THROW((void)allocator.Allocate(tooMuch), GMemoryException);
    EXPECT_FALSE(allocator.GetMoreMemoryFree());
    EXPECT_THROW(GAllocator::ThrowOutOfMemory(), std::bad_alloc);
    void* const block = allocator.Allocate(40);
    allocator.Free(block, 40);
}

TEST(GAllocator, ManyThreadsAtOnce) {
    GAllocator allocator;
    std::vector<std::thread> threads;
    for (unsigned seed = 0; seed < 4; ++seed) {
        threads.emplace_back([&allocator, seed] { Churn(allocator, seed, 200, 20000); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(allocator.GetUsedBlockCount(), 0);
    allocator.ReleaseFreeLists();
    EXPECT_EQ(allocator.GetChunkCount(), 0);
}

TEST(GAllocator, OneThreadMayFreeWhatAnotherAllocated) {
    GAllocator allocator;
    std::mutex mutex;
    std::vector<Block> handedOver;
    std::atomic<bool> done{false};
    std::thread consumer([&] {
        for (bool last = false; !last;) {
            last = done;
            std::vector<Block> taken;
            {
                const std::lock_guard<std::mutex> lock(mutex);
                taken.swap(handedOver);
            }
            for (const Block& block : taken) {
                EXPECT_TRUE(IsIntact(block));
                allocator.Free(block.memory, block.size);
            }
        }
    });
    for (unsigned i = 0; i < 20000; ++i) {
        const Block block = NewBlock(allocator, 1 + i % 128, static_cast<unsigned char>(i));
        const std::lock_guard<std::mutex> lock(mutex);
        handedOver.push_back(block);
    }
    done = true;
    consumer.join();
    EXPECT_EQ(allocator.GetUsedBlockCount(), 0);
}

// --- Objects in its blocks ---------------------------------------------------------------------

namespace {

struct Base : GFastAllocatable {
    virtual ~Base() = default;
    char mBytes[20] = {};
};
struct Derived : Base {
    char mMore[60] = {};
};

}  // namespace

TEST(GFastAllocatable, ObjectsLiveInPooledBlocksOfTheirOwnSize) {
    GAllocator& allocator = GAllocator::GetInstance();
    const long before = allocator.GetUsedBlockCount();
    {
        std::vector<std::unique_ptr<Base>> objects;
        for (int i = 0; i < 100; ++i) objects.push_back(std::make_unique<Derived>());
        EXPECT_EQ(allocator.GetUsedBlockCount(), before + 100);
        EXPECT_EQ(GAllocatorChunk::Of(objects[0].get())->GetOwner(), &allocator);
    }
    EXPECT_EQ(allocator.GetUsedBlockCount(), before) << "through a pointer to the base";
    alignas(Base) unsigned char place[sizeof(Base)];
    Base* const placed = new (place) Base;
    EXPECT_EQ(static_cast<void*>(placed), place);
    placed->~Base();
}
