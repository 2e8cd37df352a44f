#include "framework/core/memory/GAllocator.h"

#include <atomic>
#include <mutex>
#include <set>

#include "framework/core/errors/GException.h"
#include "framework/core/memory/GFastAllocatable.h"
#include "platform/base/PMemory.h"
#include "tests/Testing.h"

// An address sanitizer would otherwise end the program where the system just says no.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}

namespace {

struct Block {
    void* memory;
    std::size_t size;
    char mark;
};

Block NewBlock(GAllocator& allocator, std::size_t size, char mark) {
    const Block block{allocator.Allocate(size), size, mark};
    std::memset(block.memory, mark, size);
    return block;
}

bool IsIntact(const Block& block) {
    const std::string_view bytes(static_cast<const char*>(block.memory), block.size);
    return bytes.find_first_not_of(block.mark) == bytes.npos;
}

// Random allocations, releases and changes of size, each block's bytes checked before.
void Churn(GAllocator& allocator, unsigned seed, std::size_t maxSize, int operations) {
    std::mt19937 random(seed);
    std::vector<Block> blocks;
    for (; operations > 0 || !blocks.empty(); --operations) {
        const unsigned choice = operations > 0 ? random() % 100 : 99;
        if (blocks.empty() || choice < 50) {
            blocks.push_back(NewBlock(allocator, random() % (maxSize + 1), static_cast<char>(random())));
            continue;
        }
        std::swap(blocks[random() % blocks.size()], blocks.back());
        Block& block = blocks.back();
        ASSERT_TRUE(IsIntact(block));
        if (choice < 60) {
            const std::size_t newSize = random() % (2 * maxSize);
            block.memory = allocator.Reallocate(block.memory, block.size, newSize);
            block.size = std::min(block.size, newSize);
            ASSERT_TRUE(IsIntact(block));
            block.size = newSize;
            std::memset(block.memory, block.mark, newSize);
        } else {
            allocator.Free(block.memory, block.size);
            blocks.pop_back();
        }
    }
}

std::vector<void*> NewBlocks(GAllocator& allocator, std::size_t size, int count) {
    std::vector<void*> blocks;
    for (int i = 0; i < count; ++i) blocks.push_back(allocator.Allocate(size));
    return blocks;
}

}  // namespace

TEST(GAllocator, SizesAreRoundedUpToEight) {
    const std::pair<std::size_t, std::size_t> rows[] = {{0, 1}, {1, 1}, {8, 1}, {9, 2}, {16, 2}, {1024, 128}};
    for (const auto& [size, index] : rows) EXPECT_EQ(GAllocator::GetIndex(size), index) << size;
}

TEST(GAllocator, BlocksAreApartAlignedAndKeepTheirBytesWhateverTheirSize) {
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
        if (size <= 128 || size > 1024) continue;
        void* const again = allocator.Allocate(size);
        EXPECT_EQ(again, block) << "from the free list: " << size;
        allocator.Free(again, size);
    }
    // Not all are kept.
    for (void* const block : NewBlocks(allocator, 1000, 100)) allocator.Free(block, 1000);
    allocator.Free(nullptr, 8);
}

TEST(GAllocator, SmallBlocksComeFromChunksOfTheirSizeWhichGoBackOnDemand) {
    GAllocator allocator;
    const std::vector<void*> blocks = NewBlocks(allocator, 128, 992);
    std::set<GAllocatorChunk*> chunks;
    for (void* const block : blocks) chunks.insert(GAllocatorChunk::Of(block));
    EXPECT_EQ(chunks.size(), 4u) << "32768 bytes less a header hold 255";
    EXPECT_EQ(allocator.GetChunkCount(), 4);
    EXPECT_EQ(allocator.GetUsedBlockCount(), 992);
    EXPECT_EQ((*chunks.begin())->GetOwner(), &allocator);
    void* const other = allocator.Allocate(120);
    EXPECT_FALSE(chunks.contains(GAllocatorChunk::Of(other)));
    allocator.Free(other, 120);
    for (std::size_t i = 1; i < blocks.size(); ++i) allocator.Free(blocks[i], 128);
    allocator.ReleaseFreeLists();
    EXPECT_EQ(allocator.GetUsedBlockCount(), 1);
    EXPECT_EQ(allocator.GetChunkCount(), 1) << "one block is still in use";
    allocator.Free(blocks[0], 128);
    allocator.DoIdleTime();
    EXPECT_EQ(allocator.GetChunkCount(), 1) << "idle time keeps one for the next";
    allocator.ReleaseFreeLists();
    EXPECT_EQ(allocator.GetChunkCount(), 0);
}

TEST(GAllocator, ABlockOfAnotherModulesAllocatorGoesBackToIt) {
    GAllocator library, program;
    for (void* const block : NewBlocks(library, 40, 500)) program.Free(block, 40);
    void* const moved = program.Reallocate(library.Allocate(40), 40, 48);
    EXPECT_EQ(GAllocatorChunk::Of(moved)->GetOwner(), &program);
    program.Free(moved, 48);
    EXPECT_EQ(library.GetUsedBlockCount(), 0);
    EXPECT_EQ(program.GetUsedBlockCount(), 0);
    program.Free(library.Allocate(500), 500);
    library.Free(program.Allocate(500), 500);
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
    EXPECT_FALSE(allocator.GetMoreMemoryFree() || allocator.NewHandler()) << "there is nothing to give";
    allocator.SetMoreMemoryFree(true);
    EXPECT_TRUE(allocator.GetMoreMemoryFree());
    allocator.Free(allocator.Allocate(40), 40);
    allocator.Free(allocator.Allocate(500), 500);
    EXPECT_TRUE(allocator.NewHandler()) << "the pools";
    EXPECT_EQ(allocator.GetChunkCount(), 0);
    EXPECT_TRUE(allocator.GetMoreMemoryFree());
    EXPECT_TRUE(allocator.NewHandler()) << "the emergency block";
    EXPECT_FALSE(allocator.GetMoreMemoryFree() || allocator.NewHandler());
    allocator.DoIdleTime();
    EXPECT_TRUE(allocator.GetMoreMemoryFree()) << "taken again";
    allocator.SetMoreMemoryFree(false);
    allocator.DoIdleTime();
    EXPECT_FALSE(allocator.GetMoreMemoryFree()) << "given up on purpose";
}

TEST(GAllocator, WhatTheSystemCannotGiveThrows) {
    GAllocator allocator;
    const std::size_t tooMuch = std::numeric_limits<std::size_t>::max() / 4;
    for (const std::size_t size : {40, 500, 2000}) {
        allocator.SetMoreMemoryFree(true);
        EXPECT_THROW((void)allocator.Allocate(tooMuch), GMemoryException);
        EXPECT_FALSE(allocator.GetMoreMemoryFree());
        const Block block = NewBlock(allocator, size, 0x5A);
        EXPECT_THROW((void)allocator.Reallocate(block.memory, size, tooMuch), std::bad_alloc);
        EXPECT_TRUE(IsIntact(block));
        allocator.Free(block.memory, size);
    }
}

TEST(GAllocator, WhatAThreadKeepsGoesBackOnDemandAndAtItsEnd) {
    GAllocator allocator;
    // Polled: a wait for an atomic or a latch is now and then not woken with the product's compiler.
    std::atomic<int> step{0};
    const auto wait = [&](int wanted) {
        while (step < wanted) std::this_thread::yield();
    };
    std::thread idle([&] {
        allocator.Free(allocator.Allocate(40), 40);
        step = 1;
        wait(2);
        allocator.Free(allocator.Allocate(40), 40);
    });
    wait(1);
    EXPECT_EQ(allocator.GetChunkCount(), 1);
    allocator.ReleaseFreeLists();
    const long kept = PMemory::FenceAllThreads() ? 0 : 1;
    EXPECT_EQ(allocator.GetChunkCount(), kept) << "of a thread that lives";
    step = 2;
    idle.join();
    EXPECT_EQ(allocator.GetChunkCount(), 1);
    allocator.ReleaseFreeLists();
    EXPECT_EQ(allocator.GetChunkCount(), 0);
}

TEST(GAllocator, ThreadsAllocateAndFreeTheirOwnAndEachOthersBlocksWhileTheirCachesAreEmptied) {
    constexpr unsigned cThreads = 4;
    GAllocator allocator;
    std::vector<std::thread> threads;
    std::vector<Block> handedOver[cThreads];
    std::mutex mutex;
    std::atomic<unsigned> running{cThreads};
    for (unsigned i = 0; i < cThreads; ++i) {
        threads.emplace_back([&, i] {
            for (unsigned round = 0; round < 200; ++round) {
                Churn(allocator, 1000 * i + round, 200, 100);
                std::vector<Block> blocks;
                for (unsigned size = 1; size <= 128; size += 3)
                    blocks.push_back(NewBlock(allocator, size, static_cast<char>(round)));
                {
                    const std::lock_guard lock(mutex);
                    std::vector<Block>& next = handedOver[(i + 1) % cThreads];
                    next.insert(next.end(), blocks.begin(), blocks.end());
                    blocks = std::exchange(handedOver[i], {});
                }
                for (const Block& block : blocks) {
                    EXPECT_TRUE(IsIntact(block));
                    allocator.Free(block.memory, block.size);
                }
            }
            --running;
        });
    }
    while (running > 0) allocator.ReleaseFreeLists();
    for (std::thread& thread : threads) thread.join();
    for (const std::vector<Block>& blocks : handedOver)
        for (const Block& block : blocks) allocator.Free(block.memory, block.size);
    EXPECT_EQ(allocator.GetUsedBlockCount(), 0);
    allocator.ReleaseFreeLists();
    EXPECT_EQ(allocator.GetChunkCount(), 0);
}

TEST(GFastAllocatable, ObjectsLiveInPooledBlocksOfTheirOwnSize) {
    struct Base : GFastAllocatable {
        virtual ~Base() = default;
        char mBytes[20] = {};
    };
    struct Derived : Base {
        char mMore[60] = {};
    };
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
