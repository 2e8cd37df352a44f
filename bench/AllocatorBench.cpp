#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "bench/Comparison.h"
#include "framework/core/memory/GAllocator.h"

// The pooled allocator beside the C library's, which under Windows is the heap of the process.

namespace {

struct Pooled {
    static void* Allocate(std::size_t size) { return GAllocator::GetInstance().Allocate(size); }
    static void Free(void* block, std::size_t size) { GAllocator::GetInstance().Free(block, size); }
};
struct Plain {
    static void* Allocate(std::size_t size) { return std::malloc(size); }
    static void Free(void* block, std::size_t) { std::free(block); }
};

template <class Heap>
void Pairs(std::size_t size, int count) {
    for (int i = 0; i < count; ++i) {
        void* const block = Heap::Allocate(size);
        Comparison::Use(block);
        Heap::Free(block, size);
    }
}

// A thousand blocks of 8 to 500 bytes live; a random one makes room for the next.
template <class Heap>
void Churn(int count) {
    struct Block {
        void* memory;
        std::size_t size;
    };
    constexpr std::uint32_t cBlocks = 1000;
    std::vector<Block> blocks(cBlocks, Block{nullptr, 0});
    std::uint32_t state = 1;
    for (int i = 0; i < count; ++i) {
        state = state * 1664525 + 1013904223;
        Block& block = blocks[(state >> 8) % cBlocks];
        if (block.memory != nullptr) Heap::Free(block.memory, block.size);
        block.size = 8 + (state >> 20) % 493;
        block.memory = Heap::Allocate(block.size);
        *static_cast<std::uint32_t*>(block.memory) = state;
    }
    for (const Block& block : blocks) {
        if (block.memory != nullptr) Heap::Free(block.memory, block.size);
    }
}

template <class Work>
void OnFourThreads(Work work) {
    std::thread others[] = {std::thread(work), std::thread(work), std::thread(work)};
    work();
    for (std::thread& other : others) other.join();
}

}  // namespace

int main() {
    constexpr int cCount = 50000;
    constexpr Limits cLevel = {1.0, 1.3};
    for (const long size : {8, 24, 128, 500}) {
        const auto bytes = static_cast<std::size_t>(size);
        Comparison::Run({.what = "allocate and free", .size = size, .count = cCount},
                        [=] { Pairs<Pooled>(bytes, cCount); },
                        {{"malloc", cLevel, [=] { Pairs<Plain>(bytes, cCount); }}});
    }
    Comparison::Run({.what = "churn of 8 to 500 bytes", .count = cCount}, [] { Churn<Pooled>(cCount); },
                    {{"malloc", cLevel, [] { Churn<Plain>(cCount); }}});
    // With more threads than processors it is a matter of luck who waits for whom.
    constexpr Limits cThreads = {1.0, 2.0};
    constexpr int cMany = 10 * cCount;  // so that starting the thread does not count
    Comparison::Run({.what = "allocate and free, four threads", .size = 24, .count = cMany},
                    [] { OnFourThreads([] { Pairs<Pooled>(24, cMany); }); },
                    {{"malloc", cThreads, [] { OnFourThreads([] { Pairs<Plain>(24, cMany); }); }}});
    Comparison::Run({.what = "churn of 8 to 500, four threads", .count = cMany},
                    [] { OnFourThreads([] { Churn<Pooled>(cMany); }); },
                    {{"malloc", cThreads, [] { OnFourThreads([] { Churn<Plain>(cMany); }); }}});
}
