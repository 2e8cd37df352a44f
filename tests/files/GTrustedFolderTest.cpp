#include "framework/files/GTrustedFolder.h"

#include "framework/core/bytes/GBuffer.h"
#include "framework/files/GFile.h"
#include "tests/files/TestFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(GTrustedFolder, MakesReadsAndEmptiesItsFiles) {
    const TestFolder folder;
    const GPathName path = folder.Portable("above/f");
    EXPECT_THROW(GTrustedFolder(path, false), GException);
    EXPECT_FALSE(folder.Has("above"));
    const GTrustedFolder trusted(path, true);
    EXPECT_THROW(trusted.OpenToRead("a"), GException);
    EXPECT_EQ(trusted.OpenEmpty("a")->Write("longer"), 6);
    {
        const auto file = trusted.OpenEmpty("a");
        EXPECT_EQ(file->Write("text"), 4);
        EXPECT_EQ(file->GetPathName(), folder.Portable("above/f/a"));
        EXPECT_EQ(folder.Take("above/f/a"), "text") << "others may read";
    }
    GBuffer content;
    EXPECT_EQ(GTrustedFolder(path, true).OpenToRead("a")->Read(content, 100), 4);
    EXPECT_EQ(GTrustedFolder(folder.Portable("above/f/"), false).OpenToRead("a")->GetLength(), 4);
}

TEST(GTrustedFolder, RefusesWhatAnotherMayHavePrepared) {
    const TestFolder folder;
    const GTrustedFolder trusted(folder.Portable("f"), true);
    folder.Put("other", "of somebody else");
    fs::create_hard_link(folder.Standard("other"), folder.Standard("f/twice"));
    fs::create_directories(folder.Standard("f/folder"));
    fs::create_directories(folder.Standard("g"));
    std::error_code refused;
    fs::create_directory_symlink(folder.Standard("g"), folder.Standard("link"), refused);
    EXPECT_THAT(FailureOf([&] { trusted.OpenToRead("twice"); }), testing::EndsWith(": It is linked twice"));
    EXPECT_THAT(FailureOf([&] { trusted.OpenEmpty("twice"); }), testing::EndsWith(": It is linked twice"));
    EXPECT_EQ(folder.Take("other"), "of somebody else");
    EXPECT_NE(FailureOf([&] { trusted.OpenEmpty("folder"); }), "none");
    EXPECT_NE(FailureOf([&] { GTrustedFolder(folder.Portable("other"), true); }), "none");
    EXPECT_NE(FailureOf([&] { GTrustedFolder(folder.Portable("link"), false); }), "none");
    const fs::path moved = folder.Standard("moved");
    fs::rename(folder.Standard("f"), moved, refused);
    EXPECT_TRUE(!refused || folder.Has("f")) << "where it stays as long as it is open";
}

}  // namespace
