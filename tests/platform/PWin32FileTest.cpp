// What only Windows does: sharing between openers, long paths, attributes, shell folders.

#include "framework/files/GFile.h"
#include "framework/files/GFileOpenMode.h"
#include "framework/files/GFileSystem.h"
#include "framework/streams/GFileInStream.h"
#include "framework/streams/GFileOutStream.h"
#include "platform/win32/files/PWin32FileSystemIteratorImp.h"
#include "tests/WindowsTesting.h"
#include "tests/platform/SystemErrorOf.h"
#include "tests/streams/StreamTestSupport.h"

namespace {

constexpr long cRead = GFileOpenMode::cRead, cWrite = GFileOpenMode::cWrite;
constexpr long cReaders = GFileOpenMode::cAllowReaders, cWriters = GFileOpenMode::cAllowWriters;

struct PWin32FileTest : testing::Test {
    PWin32FileTest() { mFolder.Put("f", "abc"); }
    const TestFolder mFolder;
    const GPathName mPath = mFolder.Portable("f");
};

TEST_F(PWin32FileTest, TheSharingBitsSayWhoElseMayOpen) {
    const std::tuple<const char*, long, bool, bool> rows[] = {
        {"a reader", cRead, true, false},
        {"a reader with the readers' bit alone", cRead | cReaders, true, false},
        {"a reader with the writers' bit", cRead | cWriters, false, true},
        {"a reader with both", cRead | cReaders | cWriters, true, true},
        {"a writer", cWrite, true, false},
        {"a writer with both", cWrite | cReaders | cWriters, true, true}};
    for (const auto& [what, mode, othersRead, othersWrite] : rows) {
        SCOPED_TRACE(what);
        const GFile file(mPath, mode);
        // The other opener itself shares everything, so that only the first one's word counts.
        const auto opens = [&](DWORD access) {
            const auto other = OpenSharing(mFolder.Standard("f"), access, FILE_SHARE_READ | FILE_SHARE_WRITE);
            const DWORD error = ::GetLastError();
            EXPECT_TRUE(other || error == ERROR_SHARING_VIOLATION) << error;
            return static_cast<bool>(other);
        };
        EXPECT_EQ(opens(GENERIC_READ), othersRead);
        EXPECT_EQ(opens(GENERIC_WRITE), othersWrite);
    }
}

TEST(PWin32FileImp, FindsNamesThatCouldBeComposed) {
    const TestFolder folder;
    folder.Put("Bu\xCC\x88ro", "x");
    PWin32FileSystemIteratorImp iterator;
    iterator.BeginIterate(folder.Portable());
    GPathName path;
    bool isFolder = true;
    EXPECT_TRUE(iterator.GetFirstObject(path, isFolder));
    EXPECT_TRUE(GFileSystem::FileExists(path));
    GFileSystem::RemoveFile(path);
}

TEST_F(PWin32FileTest, WhatGoesToTheTrashIsOfTheKindThatWasMeant) {
    const GPathName sub = mFolder.Portable("sub"), missing = mFolder.Portable("missing");
    GFileSystem::CreateFolder(sub);
    mFolder.Put("sub/g", "x");
    EXPECT_THROW(GFileSystem::MoveFileToTrash(sub), GException);
    EXPECT_THROW(GFileSystem::MoveFolderToTrash(mPath), GException);
    EXPECT_THROW(GFileSystem::MoveFileToTrash(missing), GException);
    EXPECT_THROW(GFileSystem::MoveToTrash(missing), GException);
    EXPECT_TRUE(mFolder.Has("f") && mFolder.Has("sub/g"));
    GFileSystem::MoveFileToTrash(mPath);
    GFileSystem::MoveFolderToTrash(sub);
    EXPECT_FALSE(mFolder.Has("f") || mFolder.Has("sub"));
}

TEST_F(PWin32FileTest, KeepsTheAttributesOfAFileThatItEmpties) {
    GFileSystem::SetHidden(mPath, true);
    EXPECT_TRUE(GFileSystem::IsHidden(mPath));
    GFileOutStream(mPath, true).Write(BufferOf("x"));
    EXPECT_TRUE(GFileSystem::IsHidden(mPath));
    GFileSystem::SetHidden(mPath, false);
    EXPECT_FALSE(GFileSystem::IsHidden(mPath));
    EXPECT_EQ(mFolder.Take("f"), "x");
}

TEST_F(PWin32FileTest, ReportsTheSystemsCodes) {
    for (const auto& [path, error] : {std::pair("g", ERROR_FILE_NOT_FOUND),
                                      {"g/h", ERROR_PATH_NOT_FOUND},
                                      {"a|b", ERROR_INVALID_NAME},
                                      {"", ERROR_ACCESS_DENIED}})
        EXPECT_EQ(SystemErrorOf([&, name = path] { GFile(mFolder.Portable(name), cRead); }), error) << path;
    EXPECT_EQ(SystemErrorOf([&] { GFileSystem::CreateFolder(mFolder.Portable("f/g")); }),
              ERROR_ALREADY_EXISTS);
    EXPECT_EQ(SystemErrorOf([&] { GFileSystem::RemoveFile(mFolder.Portable("g")); }), ERROR_FILE_NOT_FOUND);
    // Creating finds a file that is in use.
    const GFileOutStream job(mPath, true);
    GFileSystem::CreateFile(mPath, GTypeEnums::cNone, false);
    EXPECT_EQ(SystemErrorOf([&] { GFileSystem::CreateFile(mPath, GTypeEnums::cNone, true); }),
              ERROR_FILE_EXISTS);
}

TEST(PWin32FileSystemImp, PathsBeyondTheSystemsLimitWork) {
    const TestFolder folder;
    const std::string name(200, 'n');
    const std::string deep = name + "/" + name + "/" + name;  // over 600 units
    const GPathName path = folder.Portable(deep + "/job.ps");
    GFileSystem::CreateFile(path, GTypeEnums::cNone, false);
    EXPECT_TRUE(GFileSystem::FileExists(path));
    GFileOutStream(path, true).Write(BufferOf("long"));
    GFileInStream reader(path);
    EXPECT_EQ(ReadAll(reader, 100), "long");
    EXPECT_TRUE(GFileSystem::FileInUse(path));
    const GPathName copy = GFileSystem::CopyAndRenameFile(path, folder.Portable(deep), "copy.ps");
    EXPECT_TRUE(GFileSystem::FileExists(copy));
    GFileSystem::RemoveFile(copy);
    EXPECT_FALSE(GFileSystem::FileExists(copy));
    EXPECT_TRUE(GFileSystem::FolderExists(folder.Portable(deep)));
}

TEST_F(PWin32FileTest, AFileIsInUseWhileAnybodyHasItOpen) {
    EXPECT_TRUE(GFileSystem::FileInUse(mFolder.Portable("missing")));
    for (const long mode : {cRead, cWrite, cRead | cReaders | cWriters}) {
        EXPECT_FALSE(GFileSystem::FileInUse(mPath)) << mode;
        const GFile file(mPath, mode);
        EXPECT_TRUE(GFileSystem::FileInUse(mPath)) << mode;
    }
}

TEST(PWin32FileSystemImp, KnowsTheVolumesByTheirRootsAndAMissingDriveIsAClearFailure) {
    for (const char* const path : {"C:", "C:/", "C:/windows/missing", "relative"})
        EXPECT_EQ(GFileSystem::GetVolumeType(GPathName(path)), 1) << path;
    for (const char* const path : {"Q:/missing", "//no-such-server/share/x"})
        EXPECT_EQ(GFileSystem::GetVolumeType(GPathName(path)), 4) << path;
    const long error = SystemErrorOf([] { GFileSystem::CreateFolder(GPathName("Q:/a/b")); });
    EXPECT_TRUE(error == ERROR_PATH_NOT_FOUND || error == ERROR_FILE_NOT_FOUND) << error;
    EXPECT_EQ(SystemErrorOf([] { GFileSystem::CreateFolder(GPathName("Q:/")); }), ERROR_PATH_NOT_FOUND);
    EXPECT_FALSE(GFileSystem::FileExists(GPathName("Q:/a")));
    EXPECT_FALSE(GFileSystem::FolderExists(GPathName("Q:/")));
    GFileSystem::CreateFolder(GPathName("C:/"));
    GFileSystem::CreateFolder(GPathName("C:"));
}

TEST(PWin32FileSystemImp, TheShellsFoldersAreTheEnvironments) {
    const std::tuple<GPathName (*)(), const wchar_t*, const char*> rows[] = {
        {GFileSystem::GetUserApplicationDataFolder, L"APPDATA", ""},
        {GFileSystem::GetUserPreferenceFolder, L"APPDATA", ""},
        {GFileSystem::GetCommonAppDataFolder, L"ALLUSERSPROFILE", ""},
        {GFileSystem::GetGlobalPreferenceFolder, L"ALLUSERSPROFILE", ""},
        {GFileSystem::GetUserHomeFolder, L"USERPROFILE", ""},
        {GFileSystem::GetGlobalSystemFolder, L"windir", ""},
        {GFileSystem::GetSystemFolder, L"windir", "/system32"},
        {GFileSystem::GetApplicationsFolder, L"ProgramFiles", ""},
        {GFileSystem::GetApplicationsFolder32, L"ProgramFiles(x86)", ""}};
    for (const auto& [get, variable, below] : rows)
        EXPECT_EQ(TextOf(get()), TextOf(GPathName::FromNative(FromWide(::_wgetenv(variable)))) + below);
    const GPathName temp = GFileSystem::GetSpecialPath(GSpecialPath::cGlobalTemp);
    EXPECT_TRUE(GFileSystem::FolderExists(temp)) << TextOf(temp);
    EXPECT_EQ(TextOf(GFileSystem::GetDebugFolder()), TextOf(temp) + "QuillonDebug");
    for (const GPathName& folder : {GFileSystem::GetDesktopFolder(), GFileSystem::GetUserDocumentsFolder()}) {
        EXPECT_TRUE(folder.StartsWith(GFileSystem::GetUserHomeFolder())) << TextOf(folder);
        EXPECT_TRUE(GFileSystem::FolderExists(folder));
    }
}

}  // namespace
