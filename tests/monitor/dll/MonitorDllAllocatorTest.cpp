// A program with a framework of its own and the DLL with another, which hand each other blocks.

#include <set>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/memory/GAllocator.h"
#include "tests/monitor/dll/MonitorLibrary.h"

namespace {

// The DLL's allocator and buffers, run by the DLL's own code. The names are those that the compiler
// makes of the members.
struct LibraryFramework : MonitorLibrary {
    GAllocator& GetAllocator() const { return *Find<GAllocator*>("_ZN10GAllocator9sInstanceE"); }
    void* Allocate(std::size_t size) const {
        return Find<void* (*)(void*, std::size_t)>("_ZN10GAllocator8AllocateEy")(&GetAllocator(), size);
    }
    void Free(void* block, std::size_t size) const {
        Find<void (*)(void*, void*, std::size_t)>("_ZN10GAllocator4FreeEPvy")(&GetAllocator(), block, size);
    }
    void Append(GBuffer& buffer, const char* bytes, long length) const {
        Find<void (*)(GBuffer&, const char*, long)>("_ZN7GBuffer15AppendByteArrayEPKhl")(buffer, bytes,
                                                                                         length);
    }
};

DWORD StateOf(const void* memory) {
    MEMORY_BASIC_INFORMATION information = {};
    ::VirtualQuery(memory, &information, sizeof information);
    return information.State;
}

TEST(MonitorDllAllocator, BlocksGoBackToTheModuleThatTookThem) {
    const LibraryFramework framework;
    GAllocator& theirs = framework.GetAllocator();
    GAllocator& ours = GAllocator::GetInstance();
    ASSERT_NE(&theirs, &ours);
    const long usedByThem = theirs.GetUsedBlockCount(), usedByUs = ours.GetUsedBlockCount();
    for (const std::size_t size : {8, 40, 128, 136, 1024, 5000}) {
        for (int i = 0; i < 200; ++i) {
            void* const fromThem = framework.Allocate(size);
            std::memset(fromThem, 0xA5, size);
            ours.Free(fromThem, size);
            framework.Free(ours.Allocate(size), size);
        }
    }
    {
        GBuffer buffer;
        for (int i = 0; i < 700; ++i) {
            framework.Append(buffer, "x", 1);
            buffer.AppendByteArray(reinterpret_cast<const unsigned char*>("y"), 1);
        }
        EXPECT_EQ(buffer.GetLength(), 1400);
    }
    EXPECT_EQ(theirs.GetUsedBlockCount(), usedByThem);
    EXPECT_EQ(ours.GetUsedBlockCount(), usedByUs);
    EXPECT_TRUE(::HeapValidate(::GetProcessHeap(), 0, nullptr));
}

TEST(MonitorDllAllocator, TheEndOfAJobReturnsAPeak) {
    constexpr long cKept = GAllocator::cMaxSmallSize / GAllocator::cGranularity;  // one of each size
    LibraryFramework framework;
    GAllocator& theirs = framework.GetAllocator();
    ASSERT_TRUE(framework.Print(L"before.txt", "x"));
    const long before = theirs.GetChunkCount();
    std::vector<void*> blocks;
    for (int i = 0; i < 100000; ++i) blocks.push_back(framework.Allocate(120));
    for (void* const block : blocks) framework.Free(block, 120);
    EXPECT_GT(theirs.GetChunkCount(), before + 300);
    ASSERT_TRUE(framework.Print(L"after.txt", "x"));
    EXPECT_LE(theirs.GetChunkCount(), before + cKept);
}

TEST(MonitorDllAllocator, UnloadingReturnsTheChunksButForBlocksThatAreInUse) {
    std::set<void*> chunks;
    unsigned char* kept = nullptr;
    {
        const LibraryFramework framework;
        for (const std::size_t size : {16, 64, 128}) {
            std::vector<void*> blocks;
            for (int i = 0; i < 1000; ++i) blocks.push_back(framework.Allocate(size));
            for (void* const block : blocks) {
                chunks.insert(GAllocatorChunk::Of(block));
                framework.Free(block, size);
            }
        }
        kept = static_cast<unsigned char*>(framework.Allocate(120));
        std::memset(kept, 0x5A, 120);
        EXPECT_EQ(StateOf(*chunks.begin()), static_cast<DWORD>(MEM_COMMIT));
    }
    chunks.erase(GAllocatorChunk::Of(kept));
    EXPECT_GE(chunks.size(), 7u);
    for (const void* const chunk : chunks) EXPECT_EQ(StateOf(chunk), static_cast<DWORD>(MEM_FREE));
    EXPECT_EQ(std::set<unsigned char>(kept, kept + 120), std::set<unsigned char>{0x5A});
    const long used = GAllocator::GetInstance().GetUsedBlockCount();
    GAllocator::GetInstance().Free(kept, 120);  // its allocator is gone: nothing is done
    EXPECT_EQ(GAllocator::GetInstance().GetUsedBlockCount(), used);
    EXPECT_TRUE(::VirtualFree(GAllocatorChunk::Of(kept), 0, MEM_RELEASE));
}

}  // namespace
