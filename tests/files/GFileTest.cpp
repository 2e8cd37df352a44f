#include "framework/files/GFile.h"

#include "framework/files/GFileOpenMode.h"
#include "tests/files/TestFolder.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

constexpr long cRead = GFileOpenMode::cRead;
constexpr long cWrite = GFileOpenMode::cWrite;
constexpr long cCreate = GFileOpenMode::cCreate;
constexpr long cStartEmpty = GFileOpenMode::cStartEmpty;

TEST(GFile, ModesDecideWhatBecomesOfAFile) {
    const std::tuple<const char*, long, bool, const char*> rows[] = {
        {"must exist, exists", cWrite, true, "XYcd"},
        {"must exist, is missing", cWrite, false, "no file"},
        {"create, exists", cWrite | cCreate, true, "XYcd"},
        {"create, is missing", cWrite | cCreate, false, "XY"},
        {"start empty, exists", cWrite | cStartEmpty, true, "XY"},
        {"start empty, is missing", cWrite | cStartEmpty, false, "XY"},
        {"the trace log's, is missing", 78, false, "XY"},
        {"the trace log's, exists", 78, true, "XY"},
    };
    for (const auto& [what, mode, exists, contentAfter] : rows) {
        SCOPED_TRACE(what);
        const TestFolder folder;
        if (exists) folder.Put("f", "abcd");
        const std::string failure =
            FailureOf([&] { GFile(folder.Portable("f"), mode).Write(BufferOf("XY")); });
        EXPECT_EQ(failure != "none", contentAfter == "no file"s) << failure;
        EXPECT_EQ(folder.Take("f"), contentAfter);
    }
    const TestFolder folder;
    EXPECT_THROW(GFile(folder.Portable("a/b/f"), cWrite | cStartEmpty), GException);
    EXPECT_FALSE(folder.Has("a")) << "only create makes folders";
    GFile(folder.Portable("a/b/\u00DC\u4E00\u20AC.ps"), cWrite | cCreate);
    EXPECT_EQ(folder.Take("a/b/\u00DC\u4E00\u20AC.ps"), "");
}

TEST(GFile, ReadsAndWritesAtItsOwnPosition) {
    const TestFolder folder;
    GFile file(folder.Portable("f"), cRead | cWrite | cCreate);
    EXPECT_EQ(file.Write(BufferOf("0123456789")), 10);
    EXPECT_EQ(file.GetPosition(), 10);
    file.Seek(4);
    GBuffer out;
    EXPECT_EQ(file.Read(out, 3), 3);
    EXPECT_EQ(BytesOf(out), "456");
    EXPECT_EQ(file.ReadAt(8, out, 100), 2);
    EXPECT_EQ(BytesOf(out), "89");
    EXPECT_EQ(file.WriteAt(0, BufferOf("ab")), 2);
    EXPECT_EQ(file.GetPosition(), 7);
    EXPECT_EQ(file.Read(out, 100), 3);
    EXPECT_EQ(file.Read(out, 100), -1);
    EXPECT_TRUE(out.IsEmpty());
    EXPECT_EQ(folder.Take("f"), "ab23456789");
    // It reads into no borrowed memory, and takes no more room than the file.
    unsigned char lent[20] = "untouched";
    out.TakeByteArray(lent, 9, sizeof lent);
    EXPECT_EQ(file.ReadAt(0, out, 0x7FFFFFFF), 10);
    EXPECT_LE(out.GetArraySize(), 10000);
    EXPECT_STREQ(reinterpret_cast<const char*>(lent), "untouched");
}

TEST(GFile, IsCutAndExtended) {
    const TestFolder folder;
    folder.Put("f", "0123456789");
    GFile file(folder.Portable("f"), cWrite);
    file.SetLength(4);
    EXPECT_EQ(folder.Take("f"), "0123");
    file.SetLength(6);
    file.Seek(7);
    file.Write(BufferOf("x"));
    EXPECT_EQ(file.GetLength(), 8);
    EXPECT_EQ(folder.Take("f"), std::string("0123\0\0\0x", 8)) << "gaps hold zeros";
    file.Flush();
}

TEST(GFile, RefusesWhatAClosedFileCannotDoAndPositionsBeforeTheStart) {
    const TestFolder folder;
    folder.Put("f", "abc");
    GFile file(folder.Portable("f"));
    GBuffer out("as it was");
    const auto expectRefused = [&](long id, std::initializer_list<std::function<void()>> calls) {
        for (const auto& call : calls) EXPECT_EQ(ThrownBy(call), id);
        EXPECT_EQ(BytesOf(out), "as it was");
    };
    const auto read = [&] { file.Read(out, 1); };
    expectRefused(40005, {read, [&] { file.Write(out); }, [&] { file.GetLength(); },
                          [&] { file.SetLength(0); }, [&] { file.Flush(); }});
    file.Open(cRead | cWrite);
    file.Seek(2);
    for (const long long position : {-1LL, -(1LL << 62)}) {
        expectRefused(40007, {[&] { file.Seek(position); }, [&] { file.ReadAt(position, out, 1); },
                              [&] { file.WriteAt(position, out); }});
    }
    EXPECT_EQ(file.GetPosition(), 2);
    file.Close();
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    expectRefused(40005, {read});
    file.Open(cRead);
    EXPECT_EQ(file.Read(out, 4), 3);
}

TEST(GFile, FailuresNameThePath) {
    const TestFolder folder;
    const std::pair<const char*, long> rows[] = {{"missing", cRead}, {"", cRead}, {"", cWrite | cCreate}};
    for (const auto& [name, mode] : rows) {
        const GPathName path = folder.Portable(name);  // a folder is no file
        EXPECT_THAT(FailureOf([&, how = mode] { GFile(path, how); }),
                    testing::StartsWith(TextOf(path.GetNativePathString()) + ": "));
    }
}

}  // namespace
