#include "tools/quillonctl/LibraryFile.h"

#include "tests/WindowsTesting.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

struct LibraryFileTest : testing::Test {
    TestFolder mFolder;
};

TEST_F(LibraryFileTest, ComparesContentOverBlockEdges) {
    const std::string block(65536, 'x');
    const std::string contents[] = {"", "a", "abc", "abcd", "abd", block, block + "a", block + "b"};
    for (const std::string& mine : contents)
        for (const std::string& yours : contents)
            EXPECT_EQ(LibraryFile::HaveSameContent(mFolder.Put("one", mine), mFolder.Put("other", yours)),
                      mine == yours)
                << mine.substr(0, 9) << " and " << yours.substr(0, 9);
}

TEST_F(LibraryFileTest, AMissingFileHasNoContent) {
    const std::wstring missing = mFolder.Standard("missing");
    EXPECT_FALSE(LibraryFile::HaveSameContent(missing, missing));
    EXPECT_FALSE(LibraryFile::Exists(missing));
    EXPECT_FALSE(LibraryFile::GetVersion(missing));
    EXPECT_FALSE(LibraryFile::Exists(mFolder.Standard("."))) << "a folder is no file";
    EXPECT_TRUE(LibraryFile::Remove(missing)) << "removing what is gone is fine";
    EXPECT_TRUE(LibraryFile::Remove(mFolder.Standard("no-folder/a.dll")));
}

TEST_F(LibraryFileTest, CopyingReplacesNothingAndMovingAsideTakesAFreeName) {
    const std::wstring path = mFolder.Put("a.dll", "mine");
    EXPECT_THROW(LibraryFile::Copy(path, mFolder.Put("a.dll.old1", "somebody's")), Failure);
    const std::wstring aside = LibraryFile::MoveAside(path);
    EXPECT_EQ(aside, mFolder.Standard("a.dll.old2"));
    EXPECT_FALSE(LibraryFile::Exists(path));
    mFolder.Put("a.dll", "in the way");
    LibraryFile::PutBack(aside, path);
    EXPECT_FALSE(mFolder.Has("a.dll.old3")) << "what was in the way";
    EXPECT_EQ(mFolder.Take("a.dll"), "mine");
    EXPECT_EQ(mFolder.Take("a.dll.old1"), "somebody's");
}

TEST_F(LibraryFileTest, RemovingAnOpenFileOrALoadedLibraryFreesItsNameOrLeavesItAsItIs) {
    const std::wstring path = mFolder.Put("a.dll", "x");
    const auto open = [&](DWORD share) {
        return PWin32ScopedHandle<PWin32FileHandle>(
            ::CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
    };
    {
        const auto reader = open(FILE_SHARE_READ);
        EXPECT_THROW(LibraryFile::Remove(path), Failure);
        EXPECT_EQ(mFolder.Take("a.dll"), "x");
    }
    const auto reader = open(FILE_SHARE_READ | FILE_SHARE_DELETE);
    ASSERT_TRUE(reader);
    LibraryFile::Remove(path);
    EXPECT_FALSE(LibraryFile::Exists(path));
}

// As the spooler has it loaded when an installation fails after its library was registered.
TEST_F(LibraryFileTest, ALoadedLibraryGivesItsNameBackAndGoesOnceItIsLetGo) {
    const std::wstring path = mFolder.Put("a.dll", "before");
    const std::wstring aside = LibraryFile::MoveAside(path);
    LibraryFile::Copy(LibraryFile::GetInstalledPath(L"version.dll"), path);
    EXPECT_THAT(ToUTF8(LibraryFile::GetVersion(path).value_or(L"")),
                testing::MatchesRegex("\\d+\\.\\d+\\.\\d+\\.\\d+"));
    PWin32ScopedHandle<PWin32ModuleHandle> module(::LoadLibraryW(path.c_str()));
    ASSERT_TRUE(module);
    const std::wstring spoilt = mFolder.Standard("a.dll.old2");
    {
        // Looks without opening anything, which would be in the way.
        const std::jthread spooler([&](const std::stop_token& stop) {
            while (!stop.stop_requested() && ::GetFileAttributesW(spoilt.c_str()) == INVALID_FILE_ATTRIBUTES)
                std::this_thread::yield();
            module.Reset(nullptr);
        });
        LibraryFile::PutBack(aside, path, 60000);
    }
    EXPECT_EQ(mFolder.Take("a.dll"), "before");
    EXPECT_FALSE(mFolder.Has("a.dll.old1") || mFolder.Has("a.dll.old2"));
    EXPECT_EQ(LibraryFile::GetInstalledPath(L"D:\\x\\y.dll"), L"D:\\x\\y.dll");
}

}  // namespace
