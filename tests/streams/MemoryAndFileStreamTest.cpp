#include "framework/files/GFileOpenMode.h"
#include "framework/files/GFileSystem.h"
#include "framework/streams/GFileInStream.h"
#include "framework/streams/GFileOutStream.h"
#include "framework/streams/GStreamSupport.h"
#include "framework/system/PSystem.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

/// The same bytes in memory and in a file.
struct Sources {
    explicit Sources(const std::string& bytes) : mBytes(BufferOf(bytes)) { mFolder.Put("f", bytes); }

    /// Calls `check` with a new stream of either kind.
    template <class Check>
    void ForBoth(const Check& check) const {
        GMemoryInStream memory(mBytes);
        check(memory);
        GFileInStream file(mFolder.Portable("f"));
        check(file);
    }

    const GBuffer mBytes;
    const TestFolder mFolder;
};

TEST(InStreams, DeliverTheSameInPiecesOfEverySizeAndNothingForNothing) {
    for (const std::size_t length : {0u, 1u, 2u, 37u, 5000u}) {
        const std::string bytes = Pattern(length);
        const Sources sources(bytes);
        for (const long size : {1L, 2L, 3L, 36L, 37L, 38L, 4095L, 4096L, 4097L, 5000L, 5001L, 100000L})
            sources.ForBoth([&](auto& stream) { EXPECT_EQ(ReadAll(stream, size), bytes) << size; });
        sources.ForBoth([](auto& stream) {
            for (const long nothing : {0L, -1L, -2147483647L}) EXPECT_EQ(ReadAll(stream, nothing), "");
            EXPECT_EQ(stream.GetPosition(), 0);
        });
    }
}

TEST(InStreams, SkipWithinTheData) {
    const std::string digits = "0123456789";
    const Sources sources(digits);
    GBuffer out;
    // From position 4.
    const std::pair<long long, int> rows[] = {{3, 3},   {6, 6},   {7, 6},   {1LL << 62, 6},    {0, 0},
                                              {-1, -1}, {-4, -4}, {-5, -4}, {-(1LL << 40), -4}};
    for (const auto& [count, moved] : rows)
        sources.ForBoth([&, by = count, to = 4 + moved](auto& stream) {
            EXPECT_EQ(stream.Skip(4), 4);
            const std::unique_ptr<GInStream> clone(stream.CreateClone());
            EXPECT_EQ(stream.Skip(by), to - 4) << by;
            EXPECT_EQ(stream.GetPosition(), to) << by;
            EXPECT_EQ(ReadAll(stream, 100), digits.substr(static_cast<std::size_t>(to)));
            EXPECT_EQ(stream.Read(out, 1), -1) << "the end";
            EXPECT_EQ(ReadAll(*clone, 3), "456789") << "a clone's position is its own";
            clone->Reset();
            EXPECT_EQ(ReadAll(*clone, 100), digits);
            EXPECT_EQ(GStreamSupport::GetStreamLength(stream), 10u);
        });
}

TEST(GMemoryInStream, GivesBackAndRollsBackOnceToThePointAlsoForwards) {
    const GBuffer data("0123456789");
    GMemoryInStream stream(&data);
    EXPECT_EQ(stream.RollBack(), -1);
    stream.Skip(6);
    for (const auto& [count, moved] : {std::pair(0, 0), {-3, 0}, {2, 2}, {20, 4}})
        EXPECT_EQ(stream.Unread(count), moved) << count;
    stream.Skip(2);
    stream.SetRollBackPoint();
    stream.Skip(5);
    EXPECT_EQ(stream.RollBack(), 5);
    EXPECT_EQ(stream.GetPosition(), 2);
    EXPECT_EQ(stream.RollBack(), -1);
    EXPECT_EQ(stream.GetPosition(), 2);
    stream.SetRollBackPoint();
    stream.Unread(2);
    EXPECT_EQ(stream.RollBack(), 0);
    EXPECT_EQ(stream.GetPosition(), 2);
    stream.SetRollBackPoint();
    stream.Reset();
    EXPECT_EQ(stream.GetPosition(), 0);
    EXPECT_EQ(stream.RollBack(), -1);
    stream.SetRollBackPoint();
    stream.Skip(3);
    EXPECT_EQ(stream.RollBack(), 3) << "to the start";
}

TEST(GMemoryInStream, EndsWhereABufferThatShrankEnds) {
    GBuffer data("0123456789");
    GMemoryInStream stream(data);
    stream.Skip(8);
    data.SetLength(4);
    EXPECT_EQ(ReadAll(stream, 100), "");
    EXPECT_EQ(stream.Skip(1), -4);
    EXPECT_EQ(stream.GetPosition(), 4);
}

TEST(GInStream, SkipsByReading) {
    for (const auto& [count, moved] : {std::pair(5, 5), {10, 10}, {11, 10}, {0, 0}, {-5, 0}}) {
        PieceStream stream("0123456789", 3);
        EXPECT_EQ(stream.Skip(count), moved) << count;
        EXPECT_EQ(stream.mPosition, moved) << count;
    }
    PieceStream stream(Pattern(0x100000 + 10), 0x200000);
    EXPECT_EQ(stream.Skip(0x100000 + 5), 0x100000 + 5);
    EXPECT_EQ(stream.mLargestRequest, 0x100000) << "a mebibyte at a time";
}

TEST(GMemoryOutStream, OnlyAppendsAndCountsWhatItWasGiven) {
    GBuffer target("head:");
    GMemoryOutStream stream(&target);
    EXPECT_EQ(stream.Write(GBuffer("one")), 3);
    EXPECT_EQ(stream.Write(GBuffer()), 0);
    EXPECT_EQ(stream.Skip(5), 0);
    stream.Flush();
    stream.Reset();
    EXPECT_EQ(stream.Write(target), 8) << "its own target";
    EXPECT_EQ(BytesOf(target), "head:onehead:one");
}

using GFileStreamTest = FolderTest;

TEST_F(GFileStreamTest, StreamsOverOneFileKeepTheirOwnPositions) {
    EXPECT_THROW(GFileInStream(mFolder.Portable("f")), GException);
    EXPECT_FALSE(mFolder.Has("f"));
    mFolder.Put("f", "0123456789");
    GFileInStream first(mFolder.Portable("f"));
    GFileInStream second(first.GetFile());
    first.Skip(4);
    EXPECT_EQ(ReadAll(second, 3), "0123456789");
    EXPECT_EQ(ReadAll(first, 3), "456789");
}

TEST_F(GFileStreamTest, HandsEveryBlockToTheSystemAtOnceWhereverItStands) {
    GFileOutStream stream(mFolder.Portable("a/b/f"), true);
    GFileInStream reader(mFolder.Portable("a/b/f"));
    EXPECT_EQ(ReadAll(reader, 100), "");
    EXPECT_EQ(stream.Write(BufferOf("0123")), 4);
    EXPECT_EQ(ReadAll(reader, 100), "0123") << "a reader sees what was added";
    EXPECT_EQ(stream.Write(BufferOf("")), 0);
    EXPECT_EQ(stream.Skip(-2), -2);
    EXPECT_EQ(stream.Write(BufferOf("a")), 1);
    EXPECT_EQ(stream.Skip(2), 2);
    stream.Write(BufferOf("b"));
    EXPECT_EQ(mFolder.Take("a/b/f"), "01a3\0b"s);
    EXPECT_EQ(stream.GetLength(), 6);
    EXPECT_EQ(stream.Skip(-100), -6);
    stream.Write(BufferOf("c"));
    stream.Reset();
    stream.Write(BufferOf("d"));
    stream.Flush();
    EXPECT_EQ(mFolder.Take("a/b/f"), "d1a3\0b"s);
    mFolder.Put("f", "abcd");
    GFileOutStream(mFolder.Portable("f"), false).Write(BufferOf("xy"));
    EXPECT_EQ(mFolder.Take("f"), "xycd") << "not to start empty";
}

TEST_F(GFileStreamTest, TellsAFullDiskByItsCountAndThrowsForAnythingElse) {
    const bool isWindows = PSystem::GetPlatformCode() == PSystem::cPlatformWindows;
    GFileOutStream full(GPathName(isWindows ? "Z:/dev/full" : "/dev/full"), true);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(full.Write(BufferOf("abc")), 0);
    EXPECT_EQ(full.GetPosition(), 0);
    mFolder.Put("f", "abc");
    const GSharedObject<GFile> readOnly(new GFile(mFolder.Portable("f"), GFileOpenMode::cRead));
    GFileOutStream stream(readOnly);
    EXPECT_THROW(stream.Write(BufferOf("x")), GException);
    EXPECT_EQ(stream.GetPosition(), 0);
    EXPECT_EQ(mFolder.Take("f"), "abc");
}

}  // namespace
