#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/GMemoryOutStream.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

TEST(GMemoryInStream, DeliversTheSameInPiecesOfEverySizeAndNothingForNothing) {
    for (const std::size_t length : {0u, 1u, 2u, 17u, 64u}) {
        const std::string bytes = Pattern(length);
        const GBuffer data = BufferOf(bytes);
        for (long size = 1; size <= static_cast<long>(length) + 1; ++size) {
            GMemoryInStream stream(&data);
            EXPECT_EQ(ReadAll(stream, size), bytes) << "pieces of " << size;
        }
        GMemoryInStream stream(data);
        for (const long nothing : {0L, -1L, -2147483647L}) EXPECT_EQ(ReadAll(stream, nothing), "");
        EXPECT_EQ(stream.GetPosition(), 0);
    }
}

TEST(GMemoryInStream, SkipsWithinTheDataAndGivesBack) {
    const GBuffer data("0123456789");
    // From position 4.
    const std::tuple<long long, long long, long> rows[] = {
        {3, 3, 7},   {6, 6, 10},  {7, 6, 10},  {1LL << 40, 6, 10},   {0, 0, 4},
        {-1, -1, 3}, {-4, -4, 0}, {-5, -4, 0}, {-(1LL << 40), -4, 0}};
    for (const auto& [count, moved, position] : rows) {
        SCOPED_TRACE(count);
        GMemoryInStream stream(data);
        EXPECT_EQ(stream.Skip(4), 4);
        const std::unique_ptr<GInStream> clone(stream.CreateClone());
        EXPECT_EQ(stream.Skip(count), moved);
        EXPECT_EQ(stream.GetPosition(), position);
        EXPECT_EQ(ReadAll(*clone, 100), "456789") << "a clone's position is its own";
    }
    GMemoryInStream stream(data);
    stream.Skip(6);
    for (const auto& [count, moved] : {std::pair(0, 0), {-3, 0}, {2, 2}, {20, 4}})
        EXPECT_EQ(stream.Unread(count), moved) << count;
}

TEST(GMemoryInStream, RollsBackOnceToThePointAlsoForwards) {
    const GBuffer data("0123456789");
    GMemoryInStream stream(data);
    GBuffer out;
    EXPECT_EQ(stream.RollBack(), -1);
    stream.Skip(2);
    stream.SetRollBackPoint();
    stream.Read(out, 5);
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
}

TEST(GMemoryInStream, EndsWhereABufferThatShrankEnds) {
    GBuffer data("0123456789");
    GMemoryInStream stream(data);
    stream.Skip(8);
    data.SetLength(4);
    GBuffer out;
    EXPECT_EQ(stream.Read(out, 100), -1);
    EXPECT_EQ(stream.Skip(1), -4);
    EXPECT_EQ(stream.GetPosition(), 4);
}

TEST(GInStream, SkipsByReading) {
    const std::tuple<const char*, long long, long long> rows[] = {
        {"part", 5, 5}, {"all", 10, 10}, {"more than there is", 11, 10}, {"nothing", 0, 0}, {"less", -5, 0}};
    for (const auto& [what, count, moved] : rows) {
        SCOPED_TRACE(what);
        PieceStream stream("0123456789", 3);
        EXPECT_EQ(stream.Skip(count), moved);
        EXPECT_EQ(stream.GetPosition(), moved);
    }
    PieceStream stream(Pattern(0x100000 + 10), 0x200000);
    EXPECT_EQ(stream.Skip(0x100000 + 5), 0x100000 + 5);
    EXPECT_EQ(stream.GetLargestRequest(), 0x100000) << "a mebibyte at a time";
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

}  // namespace
