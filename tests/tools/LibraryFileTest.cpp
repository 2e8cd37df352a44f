#include "tools/quillonctl/LibraryFile.h"

#include <gmock/gmock.h>

#include "platform/win32/PWin32Api.h"
#include "tests/tools/TemporaryFolder.h"
#include "tools/quillonctl/Failure.h"

namespace {

class LibraryFileTest : public testing::Test {
protected:
    TemporaryFolder mFolder{"library-file-test"};
};

TEST_F(LibraryFileTest, ComparesContentOverBlockEdges) {
    const struct {
        const char* what;
        std::string one, other;
        bool same;
    } rows[] = {
        {"both empty", "", "", true},
        {"the same", "abc", "abc", true},
        {"one longer", "abc", "abcd", false},
        {"one empty", "", "a", false},
        {"another byte", "abc", "abd", false},
        {"exactly a block", std::string(65536, 'x'), std::string(65536, 'x'), true},
        {"a byte behind a block", std::string(65536, 'x') + "a", std::string(65536, 'x') + "b", false},
        {"a block more", std::string(65536, 'x'), std::string(131072, 'x'), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const std::wstring one = mFolder.WriteFile(L"one", row.one);
        const std::wstring other = mFolder.WriteFile(L"other", row.other);
        EXPECT_EQ(LibraryFile::HaveSameContent(one, other), row.same);
        EXPECT_EQ(LibraryFile::HaveSameContent(other, one), row.same);
    }
}

TEST_F(LibraryFileTest, AMissingFileHasNoContent) {
    const std::wstring missing = mFolder.GetFile(L"missing");
    EXPECT_FALSE(LibraryFile::HaveSameContent(missing, missing));
    EXPECT_FALSE(LibraryFile::Exists(missing));
    EXPECT_FALSE(LibraryFile::GetVersion(missing));
    EXPECT_FALSE(LibraryFile::Exists(mFolder.GetFile(L"."))) << "a folder is no file";
    EXPECT_TRUE(LibraryFile::Remove(missing)) << "removing what is gone is fine";
    EXPECT_TRUE(LibraryFile::Remove(mFolder.GetFile(L"no-folder\\a.dll")));
}

TEST_F(LibraryFileTest, CopyingReplacesNothing) {
    const std::wstring source = mFolder.WriteFile(L"source", "new");
    const std::wstring target = mFolder.WriteFile(L"target", "old");
    EXPECT_THROW(LibraryFile::Copy(source, target), Failure);
    EXPECT_EQ(TemporaryFolder::ReadFile(target), "old");
}

TEST_F(LibraryFileTest, MovesAsideToAFreeNameAndBack) {
    const std::wstring path = mFolder.WriteFile(L"a.dll", "mine");
    mFolder.WriteFile(L"a.dll.old1", "somebody's");
    const std::wstring aside = LibraryFile::MoveAside(path);
    EXPECT_EQ(aside, mFolder.GetFile(L"a.dll.old2"));
    EXPECT_FALSE(LibraryFile::Exists(path));
    mFolder.WriteFile(L"a.dll", "in the way");
    LibraryFile::MoveBack(aside, path);
    EXPECT_EQ(TemporaryFolder::ReadFile(path), "mine");
    EXPECT_EQ(TemporaryFolder::ReadFile(mFolder.GetFile(L"a.dll.old1")), "somebody's");
}

TEST_F(LibraryFileTest, RemovingAnOpenFileFreesItsNameOrLeavesItAsItIs) {
    for (const DWORD share : {DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_DELETE}}) {
        const std::wstring path = mFolder.WriteFile(L"a.dll", "x");
        const HANDLE reader =
            ::CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
        ASSERT_NE(reader, INVALID_HANDLE_VALUE);
        if (share == FILE_SHARE_READ) {
            EXPECT_THROW(LibraryFile::Remove(path), Failure);
            EXPECT_EQ(TemporaryFolder::ReadFile(path), "x");
        } else {
            LibraryFile::Remove(path);
            EXPECT_FALSE(LibraryFile::Exists(path));
        }
        ::CloseHandle(reader);
    }
}

TEST_F(LibraryFileTest, RemovingALoadedLibraryFreesItsName) {
    const std::wstring path = mFolder.GetFile(L"a.dll");
    LibraryFile::Copy(LibraryFile::GetInstalledPath(L"version.dll"), path);
    const HMODULE module = ::LoadLibraryW(path.c_str());
    ASSERT_NE(module, nullptr);
    LibraryFile::Remove(path);
    EXPECT_FALSE(LibraryFile::Exists(path));
    ::FreeLibrary(module);
}

TEST(LibraryFile, ReadsTheVersionOfASystemLibrary) {
    const auto version = LibraryFile::GetVersion(LibraryFile::GetInstalledPath(L"kernel32.dll"));
    ASSERT_TRUE(version);
    EXPECT_THAT(std::string(version->begin(), version->end()),
                testing::MatchesRegex("\\d+\\.\\d+\\.\\d+\\.\\d+"));
}

TEST(LibraryFile, ALibraryRegisteredByItsPathIsFoundThere) {
    EXPECT_EQ(LibraryFile::GetInstalledPath(L"D:\\x\\y.dll"), L"D:\\x\\y.dll");
}

}  // namespace
