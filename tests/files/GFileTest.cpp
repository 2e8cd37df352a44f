#include "framework/files/GFile.h"

#include "framework/files/GFileOpenMode.h"
#include "framework/files/GTrustedFolder.h"
#include "tests/files/TestFolder.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

struct GFileTest : FolderTest, GFileOpenMode {};

TEST_F(GFileTest, ModesDecideWhatBecomesOfAFile) {
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
    EXPECT_THROW(GFile(mFolder.Portable("a/b/f"), cWrite | cStartEmpty), GException);
    EXPECT_FALSE(mFolder.Has("a")) << "only create makes folders";
    GFile(mFolder.Portable("a/b/\u00DC\u4E00\u20AC.ps"), cWrite | cCreate);
    EXPECT_EQ(mFolder.Take("a/b/\u00DC\u4E00\u20AC.ps"), "");
}

TEST_F(GFileTest, ReadsAndWritesAtItsOwnPosition) {
    GFile file(mFolder.Portable("f"), cRead | cWrite | cCreate);
    EXPECT_EQ(file.Write(BufferOf("0123456789")), 10);
    EXPECT_EQ(file.GetPosition(), 10);
    file.Seek(4);
    GBuffer out;
    EXPECT_EQ(file.Read(out, 3), 3);
    EXPECT_EQ(BytesOf(out), "456");
    EXPECT_EQ(file.ReadAt(8, out, 100), 2);
    EXPECT_EQ(BytesOf(out), "89");
    EXPECT_EQ(file.ReadAt(9, out, 1), 1);
    EXPECT_EQ(file.WriteAt(0, BufferOf("ab")), 2);
    EXPECT_EQ(file.GetPosition(), 7);
    EXPECT_EQ(file.Read(out, 100), 3);
    EXPECT_EQ(file.Read(out, 100), -1);
    EXPECT_TRUE(out.IsEmpty());
    EXPECT_EQ(mFolder.Take("f"), "ab23456789");
    // It reads into no borrowed memory, and takes no more room than the file.
    unsigned char lent[20] = "untouched";
    out.TakeByteArray(lent, 9, sizeof lent);
    EXPECT_EQ(file.ReadAt(0, out, 0x7FFFFFFF), 10);
    EXPECT_LE(out.GetArraySize(), 10000);
    EXPECT_STREQ(reinterpret_cast<const char*>(lent), "untouched");
}

TEST_F(GFileTest, IsCutAndExtended) {
    mFolder.Put("f", "0123456789");
    GFile file(mFolder.Portable("f"), cWrite);
    file.SetLength(4);
    EXPECT_EQ(mFolder.Take("f"), "0123");
    file.SetLength(6);
    file.Seek(7);
    file.Write(BufferOf("x"));
    EXPECT_EQ(file.GetLength(), 8);
    EXPECT_EQ(mFolder.Take("f"), std::string("0123\0\0\0x", 8)) << "gaps hold zeros";
    file.Flush();
}

TEST_F(GFileTest, RefusesWhatAClosedFileCannotDoAndPositionsBeforeTheStart) {
    mFolder.Put("f", "abc");
    GFile file(mFolder.Portable("f"));
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

TEST_F(GFileTest, FailuresNameThePath) {
    const std::pair<const char*, long> rows[] = {{"missing", cRead}, {"", cRead}, {"", cWrite | cCreate}};
    for (const auto& [name, mode] : rows) {
        const GPathName path = mFolder.Portable(name);  // a folder is no file
        EXPECT_THAT(FailureOf([&, how = mode] { GFile(path, how); }),
                    testing::StartsWith(TextOf(path.GetNativePathString()) + ": "));
    }
}

using GTrustedFolderTest = FolderTest;

TEST_F(GTrustedFolderTest, MakesReadsAndEmptiesItsFiles) {
    const GPathName path = mFolder.Portable("above/f");
    EXPECT_THROW(GTrustedFolder(path, false), GException);
    EXPECT_FALSE(mFolder.Has("above"));
    const GTrustedFolder trusted(path, true);
    EXPECT_THROW(trusted.OpenToRead("a"), GException);
    EXPECT_EQ(trusted.OpenEmpty("a")->Write("longer"), 6);
    {
        const auto file = trusted.OpenEmpty("a");
        EXPECT_EQ(file->Write("text"), 4);
        EXPECT_EQ(file->GetPathName(), mFolder.Portable("above/f/a"));
        EXPECT_EQ(mFolder.Take("above/f/a"), "text") << "others may read";
    }
    GBuffer content;
    EXPECT_EQ(GTrustedFolder(path, true).OpenToRead("a")->Read(content, 100), 4);
    EXPECT_EQ(GTrustedFolder(mFolder.Portable("above/f/"), false).OpenToRead("a")->GetLength(), 4);
}

TEST_F(GTrustedFolderTest, RefusesWhatAnotherMayHavePrepared) {
    const GTrustedFolder trusted(mFolder.Portable("f"), true);
    mFolder.Put("other", "of somebody else");
    std::filesystem::create_hard_link(mFolder.Standard("other"), mFolder.Standard("f/twice"));
    std::filesystem::create_directories(mFolder.Standard("f/folder"));
    std::filesystem::create_directories(mFolder.Standard("g"));
    std::error_code refused;
    std::filesystem::create_directory_symlink(mFolder.Standard("g"), mFolder.Standard("link"), refused);
    EXPECT_THAT(FailureOf([&] { trusted.OpenToRead("twice"); }), testing::EndsWith(": It is linked twice"));
    EXPECT_THAT(FailureOf([&] { trusted.OpenEmpty("twice"); }), testing::EndsWith(": It is linked twice"));
    EXPECT_EQ(mFolder.Take("other"), "of somebody else");
    EXPECT_NE(FailureOf([&] { trusted.OpenEmpty("folder"); }), "none");
    EXPECT_NE(FailureOf([&] { GTrustedFolder(mFolder.Portable("other"), true); }), "none");
    EXPECT_NE(FailureOf([&] { GTrustedFolder(mFolder.Portable("link"), false); }), "none");
    const std::filesystem::path moved = mFolder.Standard("moved");
    std::filesystem::rename(mFolder.Standard("f"), moved, refused);
    EXPECT_TRUE(!refused || mFolder.Has("f")) << "where it stays as long as it is open";
}

}  // namespace
