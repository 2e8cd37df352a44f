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

constexpr long cRead = GFileOpenMode::cRead;
constexpr long cWrite = GFileOpenMode::cWrite;
constexpr long cReaders = GFileOpenMode::cAllowReaders;
constexpr long cWriters = GFileOpenMode::cAllowWriters;

TEST(PWin32FileImp, TheSharingBitsSayWhoElseMayOpen) {
    const std::tuple<const char*, long, bool, bool> rows[] = {
        {"a reader", cRead, true, false},
        {"a reader with the readers' bit alone", cRead | cReaders, true, false},
        {"a reader with the writers' bit", cRead | cWriters, false, true},
        {"a reader with both", cRead | cReaders | cWriters, true, true},
        {"a writer", cWrite, true, false},
        {"a writer with both", cWrite | cReaders | cWriters, true, true}};
    const TestFolder folder;
    folder.Put("f", "abc");
    const std::wstring name = folder.Standard("f").wstring();
    for (const auto& [what, mode, othersRead, othersWrite] : rows) {
        SCOPED_TRACE(what);
        const GFile file(folder.Portable("f"), mode);
        // The other opener itself shares everything, so that only the first one's word counts.
        const auto opens = [&](DWORD access) {
            const PWin32ScopedHandle<PWin32FileHandle> other(
                ::CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, 0, nullptr));
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

TEST(PWin32FileSystemImp, WhatGoesToTheTrashIsOfTheKindThatWasMeant) {
    const TestFolder folder;
    folder.Put("f", "x");
    GFileSystem::CreateFolder(folder.Portable("sub"));
    folder.Put("sub/g", "x");
    EXPECT_THROW(GFileSystem::MoveFileToTrash(folder.Portable("sub")), GException);
    EXPECT_THROW(GFileSystem::MoveFolderToTrash(folder.Portable("f")), GException);
    EXPECT_THROW(GFileSystem::MoveFileToTrash(folder.Portable("missing")), GException);
    EXPECT_THROW(GFileSystem::MoveToTrash(folder.Portable("missing")), GException);
    EXPECT_TRUE(folder.Has("f") && folder.Has("sub/g"));
    GFileSystem::MoveFileToTrash(folder.Portable("f"));
    EXPECT_FALSE(folder.Has("f"));
    GFileSystem::MoveFolderToTrash(folder.Portable("sub"));
    EXPECT_FALSE(folder.Has("sub"));
}

TEST(PWin32FileImp, KeepsTheAttributesOfAFileThatItEmpties) {
    const TestFolder folder;
    folder.Put("f", "abc");
    const GPathName path = folder.Portable("f");
    GFileSystem::SetHidden(path, true);
    EXPECT_TRUE(GFileSystem::IsHidden(path));
    GFileOutStream(path, true).Write(BufferOf("x"));
    EXPECT_TRUE(GFileSystem::IsHidden(path));
    GFileSystem::SetHidden(path, false);
    EXPECT_FALSE(GFileSystem::IsHidden(path));
    EXPECT_EQ(folder.Take("f"), "x");
}

TEST(PWin32FileImp, ReportsTheSystemsCodes) {
    const TestFolder folder;
    folder.Put("f", "abc");
    for (const auto& [path, error] : {std::pair("g", ERROR_FILE_NOT_FOUND),
                                      {"g/h", ERROR_PATH_NOT_FOUND},
                                      {"a|b", ERROR_INVALID_NAME},
                                      {"", ERROR_ACCESS_DENIED}})
        EXPECT_EQ(SystemErrorOf([&, name = path] { GFile(folder.Portable(name), cRead); }), error) << path;
    EXPECT_EQ(SystemErrorOf([&] { GFileSystem::CreateFolder(folder.Portable("f/g")); }),
              ERROR_ALREADY_EXISTS);
    EXPECT_EQ(SystemErrorOf([&] { GFileSystem::RemoveFile(folder.Portable("g")); }), ERROR_FILE_NOT_FOUND);
    // Creating finds a file that is in use.
    const GFileOutStream job(folder.Portable("f"), true);
    GFileSystem::CreateFile(folder.Portable("f"), GTypeEnums::cNone, false);
    EXPECT_EQ(SystemErrorOf([&] { GFileSystem::CreateFile(folder.Portable("f"), GTypeEnums::cNone, true); }),
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

TEST(PWin32FileSystemImp, AFileIsInUseWhileAnybodyHasItOpen) {
    const TestFolder folder;
    folder.Put("f", "abc");
    const GPathName path = folder.Portable("f");
    EXPECT_FALSE(GFileSystem::FileInUse(path));
    EXPECT_TRUE(GFileSystem::FileInUse(folder.Portable("missing")));
    for (const long mode : {cRead, cWrite, cRead | cReaders | cWriters}) {
        GFile file(path, mode);
        EXPECT_TRUE(GFileSystem::FileInUse(path)) << mode;
        file.Close();
        EXPECT_FALSE(GFileSystem::FileInUse(path)) << mode;
    }
}

TEST(PWin32FileSystemImp, KnowsTheVolumesByTheirRoots) {
    for (const char* const path : {"C:", "C:/", "C:/windows/missing", "relative"})
        EXPECT_EQ(GFileSystem::GetVolumeType(GPathName(path)), 1) << path;
    for (const char* const path : {"Q:/missing", "//no-such-server/share/x"})
        EXPECT_EQ(GFileSystem::GetVolumeType(GPathName(path)), 4) << path;
}

TEST(PWin32FileSystemImp, AMissingDriveIsAClearFailure) {
    const long error = SystemErrorOf([] { GFileSystem::CreateFolder(GPathName("Q:/a/b")); });
    EXPECT_TRUE(error == ERROR_PATH_NOT_FOUND || error == ERROR_FILE_NOT_FOUND) << error;
    EXPECT_EQ(SystemErrorOf([] { GFileSystem::CreateFolder(GPathName("Q:/")); }), ERROR_PATH_NOT_FOUND);
    EXPECT_FALSE(GFileSystem::FileExists(GPathName("Q:/a")));
    EXPECT_FALSE(GFileSystem::FolderExists(GPathName("Q:/")));
    GFileSystem::CreateFolder(GPathName("C:/"));
    GFileSystem::CreateFolder(GPathName("C:"));
}

std::string Environment(const wchar_t* name) {
    wchar_t value[MAX_PATH] = {};
    const DWORD length = ::GetEnvironmentVariableW(name, value, MAX_PATH);
    return TextOf(GPathName::FromNative(FromWide(value, static_cast<long>(length))));
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
    for (const auto& [get, variable, below] : rows) EXPECT_EQ(TextOf(get()), Environment(variable) + below);
    const GPathName temp = GFileSystem::GetSpecialPath(GSpecialPath::cGlobalTemp);
    EXPECT_TRUE(GFileSystem::FolderExists(temp)) << TextOf(temp);
    EXPECT_EQ(TextOf(GFileSystem::GetDebugFolder()), TextOf(temp) + "QuillonDebug");
    for (const GPathName& folder : {GFileSystem::GetDesktopFolder(), GFileSystem::GetUserDocumentsFolder()}) {
        EXPECT_TRUE(folder.StartsWith(GFileSystem::GetUserHomeFolder())) << TextOf(folder);
        EXPECT_TRUE(GFileSystem::FolderExists(folder));
    }
}

}  // namespace
