#include "framework/files/GFileOpenMode.h"
#include "framework/files/GFileSystem.h"
#include "framework/streams/GFileInStream.h"
#include "framework/streams/GFileOutStream.h"
#include "framework/streams/GStreamSupport.h"
#include "framework/system/PSystem.h"
#include "tests/files/TestFolder.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

TEST(GFileInStream, DeliversTheSameInPiecesOfEverySizeAndNothingForNothing) {
    const TestFolder folder;
    EXPECT_THROW(GFileInStream(folder.Portable("f")), GException);
    EXPECT_FALSE(folder.Has("f"));
    for (const std::size_t length : {0u, 1u, 2u, 37u, 5000u}) {
        const std::string bytes = Pattern(length);
        folder.Put("f", bytes);
        for (const long size : {1L, 2L, 3L, 36L, 37L, 38L, 4095L, 4096L, 4097L, 5000L, 5001L, 100000L}) {
            GFileInStream stream(folder.Portable("f"));
            EXPECT_EQ(ReadAll(stream, size), bytes) << length << " in pieces of " << size;
        }
        GFileInStream stream(folder.Portable("f"));
        for (const long nothing : {0L, -5L}) EXPECT_EQ(ReadAll(stream, nothing), "");
        EXPECT_EQ(stream.GetPosition(), 0);
    }
}

TEST(GFileInStream, SkipsWithinTheFile) {
    const TestFolder folder;
    folder.Put("f", "0123456789");
    const std::tuple<const char*, long long, long long, const char*> rows[] = {
        {"forward", 3, 3, "789"},
        {"past the end", 7, 6, ""},
        {"far past", 1LL << 62, 6, ""},
        {"back", -1, -1, "3456789"},
        {"back past the start", -5, -4, "0123456789"}};
    for (const auto& [what, count, moved, rest] : rows) {
        SCOPED_TRACE(what);
        GFileInStream stream(folder.Portable("f"));
        EXPECT_EQ(stream.Skip(4), 4);
        EXPECT_EQ(stream.Skip(count), moved);
        EXPECT_EQ(ReadAll(stream, 100), rest);
    }
}

TEST(GFileInStream, StreamsOverOneFileKeepTheirOwnPositions) {
    const TestFolder folder;
    folder.Put("f", "0123456789");
    GFileInStream first(folder.Portable("f"));
    GFileInStream second(first.GetFile());
    first.Skip(4);
    const std::unique_ptr<GInStream> clone(first.CreateClone());
    EXPECT_EQ(ReadAll(*clone, 3), "456789");
    EXPECT_EQ(ReadAll(second, 3), "0123456789");
    EXPECT_EQ(ReadAll(first, 3), "456789");
    clone->Reset();
    EXPECT_EQ(ReadAll(*clone, 100), "0123456789");
    EXPECT_EQ(GStreamSupport::GetStreamLength(first), 10u);
}

TEST(GFileOutStream, HandsEveryBlockToTheSystemAtOnce) {
    const TestFolder folder;
    GFileOutStream stream(folder.Portable("a/b/f"), true);
    GFileInStream reader(folder.Portable("a/b/f"));
    GBuffer out;
    EXPECT_EQ(reader.Read(out, 100), -1);
    EXPECT_EQ(stream.Write(BufferOf("abc")), 3);
    EXPECT_EQ(reader.Read(out, 100), 3) << "a reader sees what was added";
    EXPECT_EQ(folder.Take("a/b/f"), "abc");
    EXPECT_EQ(stream.Write(BufferOf("")), 0);
    EXPECT_EQ(stream.Write(BufferOf("d")), 1);
    EXPECT_EQ(folder.Take("a/b/f"), "abcd");
    EXPECT_EQ(stream.GetLength(), 4);
    folder.Put("f", "abcd");
    GFileOutStream(folder.Portable("f"), false).Write(BufferOf("xy"));
    EXPECT_EQ(folder.Take("f"), "xycd") << "not to start empty";
}

TEST(GFileOutStream, MovesFreely) {
    const TestFolder folder;
    GFileOutStream stream(folder.Portable("f"), true);
    stream.Write(BufferOf("0123"));
    EXPECT_EQ(stream.Skip(-2), -2);
    stream.Write(BufferOf("a"));
    EXPECT_EQ(stream.Skip(2), 2);
    stream.Write(BufferOf("b"));
    EXPECT_EQ(folder.Take("f"), std::string("01a3\0b", 6));
    EXPECT_EQ(stream.Skip(-100), -6);
    stream.Write(BufferOf("c"));
    stream.Reset();
    stream.Write(BufferOf("d"));
    stream.Flush();
    EXPECT_EQ(folder.Take("f"), std::string("d1a3\0b", 6));
}

TEST(GFileOutStream, TellsAFullDiskByItsCount) {
    const char* const device =
        PSystem::GetPlatformCode() == PSystem::cPlatformWindows ? "Z:/dev/full" : "/dev/full";
    GFileOutStream stream(GPathName(device), true);
    EXPECT_EQ(stream.Write(BufferOf("abc")), 0);
    EXPECT_EQ(stream.GetPosition(), 0);
    EXPECT_EQ(stream.Write(BufferOf("abc")), 0);
}

TEST(GFileOutStream, ThrowsForWhatIsNoFullDisk) {
    const TestFolder folder;
    folder.Put("f", "abc");
    const GSharedObject<GFile> readOnly(new GFile(folder.Portable("f"), GFileOpenMode::cRead));
    GFileOutStream stream(readOnly);
    EXPECT_THROW(stream.Write(BufferOf("x")), GException);
    EXPECT_EQ(stream.GetPosition(), 0);
    EXPECT_EQ(folder.Take("f"), "abc");
}

}  // namespace
