#include "framework/files/GFileSystem.h"

#include "PPlatformFiles.h"
#include "framework/files/GFileSystemDefinitions.h"
#include "tests/files/TestFolder.h"

namespace {

// A platform whose folders have short names and which has one file; all else is this system's.
struct FakePlatform : PFileSystemImp {
    static inline GPathName sTemp = GPathName("T:/temp/");
    static inline std::string sFile;  // the one file that exists
    static inline int sTempQuestions = 0;
    static inline bool sRefuses = false;

    static GPathName GetUserApplicationDataFolder() { return GPathName("U:/data"); }
    static GPathName GetUserPreferenceFolder() { return GPathName("U:/prefs"); }
    static GPathName GetCommonAppDataFolder() { return GPathName("A:/data"); }
    static GPathName GetGlobalPreferenceFolder() { return GPathName("A:/prefs"); }
    static GPathName GetSystemFolder() { return GPathName("W:/system"); }
    static GPathName GetGlobalSystemFolder() { return GPathName("W:/"); }
    static GPathName GetGlobalTempFolder() {
        ++sTempQuestions;
        return sTemp;
    }
    static GPathName GetLibraryPath() { return GPathName("L:/q/Quillon.dll"); }
    static GPathName GetApplicationPath() { return GPathName("L:/app.exe"); }
    static bool FileExists(const GPathName& path) {
        if (sRefuses) throw GSimpleException(GExceptionID::cGeneral);
        return TextOf(path) == sFile;
    }
};

using FakeFileSystem = GFileSystemBase<FakePlatform>;

struct SpecialPaths : testing::Test {
    ~SpecialPaths() override {
        FakeFileSystem::RemoveAllSpecialPaths();
        FakePlatform::sTemp = GPathName("T:/temp/");
        FakePlatform::sFile.clear();
        FakePlatform::sRefuses = false;
    }
};

TEST_F(SpecialPaths, HaveTheirDefaults) {
    ForEachRow<2>(
        {"-8 -> U:/data", "-7 -> W:/system", "-6 -> L:/q/Quillon.dll", "-5 -> L:/app.exe", "-4 -> U:/prefs",
         "-3 -> A:/prefs", "-2 -> T:/temp/", "-1 -> W:/", "7 -> L:/q/Resources/CMap", "11 -> L:/q/Resources",
         "21 -> L:/q/Resources/FontMetrics", "22 -> L:/q/Resources/lng", "23 -> L:/q/Resources/ICC",
         "33 -> A:/data/Quillon Prefs Folder", "35 -> U:/data/Quillon Prefs Folder",
         "52 -> L:/q/Resources/xml", "53 -> U:/data/Quillon", "54 -> L:/q/Resources/Artwork",
         // What there is not.
         "0 -> ", "-9 -> ", "55 -> "},
        [](auto id, auto path) {
            EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(std::atol(id.data()))), path);
        });
}

TEST_F(SpecialPaths, AreOverriddenUntilRemoved) {
    for (const auto id : {22, 1000}) {
        FakeFileSystem::AddSpecialPath(id, GPathName("X:/new"));
        EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(id)), "X:/new");
    }
    FakeFileSystem::RemoveSpecialPath(22);
    FakeFileSystem::RemoveSpecialPath(23);
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(22)), "L:/q/Resources/lng");
    FakeFileSystem::AddSpecialPath(-2, GPathName("X:/mine"));
    FakeFileSystem::SetSpecialPathToDefault(-2);
    FakeFileSystem::SetSpecialPathToDefault(1000);
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(-2)), "T:/temp/");
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(1000)), "X:/new") << "it has no default";
    FakeFileSystem::AddSpecialPath(-8, GPathName("X:/home"));
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(53)), "X:/home/Quillon") << "is built on it";
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(35)), "U:/data/Quillon Prefs Folder");
    FakeFileSystem::RemoveAllSpecialPaths();
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(1000)), "");
}

TEST_F(SpecialPaths, ADefaultIsAskedForOnceUnlessThereWasNone) {
    FakePlatform::sTempQuestions = 0;
    FakePlatform::sTemp = GPathName();
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(-2)), "");
    FakePlatform::sTemp = GPathName("T:/late");
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(-2)), "T:/late");
    EXPECT_EQ(TextOf(FakeFileSystem::GetSpecialPath(-2)), "T:/late");
    EXPECT_EQ(FakePlatform::sTempQuestions, 2);
}

TEST_F(SpecialPaths, TheDebugFolderLiesInTheTemporaryFolderOrBesideAFile) {
    EXPECT_EQ(TextOf(FakeFileSystem::GetDebugFolder()), "T:/temp/QuillonDebug");
    FakeFileSystem::AddSpecialPath(-2, GPathName("T:/temp"));
    EXPECT_EQ(TextOf(FakeFileSystem::GetDebugFolder()), "T:/temp/QuillonDebug");
    FakePlatform::sFile = "T:/temp";
    EXPECT_EQ(TextOf(FakeFileSystem::GetDebugFolder()), "T:/QuillonDebug");
}

TEST_F(SpecialPaths, TryingToFindAFileNeverThrows) {
    FakePlatform::sFile = "X:/f";
    EXPECT_TRUE(FakeFileSystem::TryFileExists(GPathName("X:/f")));
    FakePlatform::sRefuses = true;
    EXPECT_FALSE(FakeFileSystem::TryFileExists(GPathName("X:/f")));
    EXPECT_THROW(FakeFileSystem::FileExists(GPathName("X:/f")), GException);
}

void CreateFile(const GPathName& path, bool mustBeNew) {
    GFileSystem::CreateFile(path, GTypeEnums::cNone, mustBeNew);
}

using GFileSystemTest = FolderTest;

TEST_F(GFileSystemTest, MakesFilesWithTheirFolders) {
    CreateFile(mFolder.Portable("anna/Proof/Q3.ps"), false);
    EXPECT_EQ(mFolder.Take("anna/Proof/Q3.ps"), "");
    mFolder.Put("anna/Proof/Q3.ps", "there");
    CreateFile(mFolder.Portable("anna/Proof/Q3.ps"), false);
    EXPECT_EQ(mFolder.Take("anna/Proof/Q3.ps"), "there");
    EXPECT_THROW(CreateFile(mFolder.Portable("anna/Proof/Q3.ps"), true), GException);
    CreateFile(mFolder.Portable("anna/Proof/Q4.ps"), true);
    EXPECT_EQ(mFolder.Take("anna/Proof/Q4.ps"), "");
    EXPECT_THROW(CreateFile(mFolder.Portable("anna/Proof"), false), GException) << "a folder is in the way";
    EXPECT_THROW(CreateFile(mFolder.Portable("anna/Proof/Q3.ps/sub/f"), false), GException);
    EXPECT_EQ(mFolder.Take("anna/Proof/Q3.ps"), "there");
}

TEST_F(GFileSystemTest, MakesFoldersWithTheirParents) {
    EXPECT_TRUE(GFileSystem::FolderExists(GFileSystem::GetGlobalTempFolder()));
    for (const char* const path : {"a", "a", "a/b/c", "a/b/c", "a/b/d/", "e//f", "\xC3\x9C\xE4\xB8\x80"}) {
        SCOPED_TRACE(path);
        GFileSystem::CreateFolder(mFolder.Portable(path));
        EXPECT_TRUE(std::filesystem::is_directory(mFolder.Standard(path)));
    }
}

TEST_F(GFileSystemTest, AFileInTheWayOfAFolderIsAClearFailure) {
    mFolder.Put("file", "x");
    const std::string native = TextOf(mFolder.Portable("file").GetNativePathString());
    for (const char* const path : {"file", "file/a", "file/a/b"}) {
        EXPECT_THAT(FailureOf([&] { GFileSystem::CreateFolder(mFolder.Portable(path)); }),
                    testing::StartsWith(native));
    }
    EXPECT_EQ(mFolder.Take("file"), "x");
}

TEST_F(GFileSystemTest, TellsFilesFromFoldersAndFromNothing) {
    mFolder.Put("file", "x");
    GFileSystem::CreateFolder(mFolder.Portable("folder"));
    for (const auto& [path, isFile, isFolder] : {std::tuple("file", true, false),
                                                 {"folder", false, true},
                                                 {"nothing", false, false},
                                                 {"file/below", false, false}}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(GFileSystem::FileExists(mFolder.Portable(path)), isFile);
        EXPECT_EQ(GFileSystem::TryFileExists(mFolder.Portable(path)), isFile);
        EXPECT_EQ(GFileSystem::FolderExists(mFolder.Portable(path)), isFolder);
    }
}

TEST_F(GFileSystemTest, RemovesFilesAndEmptyFolders) {
    mFolder.Put("file", "x");
    GFileSystem::CreateFolder(mFolder.Portable("empty"));
    CreateFile(mFolder.Portable("full/f"), false);
    GFileSystem::RemoveFile(mFolder.Portable("file"));
    GFileSystem::RemoveFolderOnly(mFolder.Portable("empty"));
    EXPECT_FALSE(mFolder.Has("file") || mFolder.Has("empty"));
    EXPECT_THROW(GFileSystem::RemoveFile(mFolder.Portable("file")), GException);
    EXPECT_THROW(GFileSystem::RemoveFolderOnly(mFolder.Portable("full")), GException);
    EXPECT_TRUE(mFolder.Has("full/f"));
}

TEST_F(GFileSystemTest, RenamesAndMovesFolders) {
    CreateFile(mFolder.Portable("sub/f"), true);
    GFileSystem::CreateFolder(mFolder.Portable("deep"));
    GFileSystem::RenameFolder(mFolder.Portable("sub"), "moved");
    GFileSystem::MoveFolderTo(mFolder.Portable("moved"), mFolder.Portable("deep"));
    EXPECT_FALSE(mFolder.Has("sub") || mFolder.Has("moved"));
    EXPECT_TRUE(mFolder.Has("deep/moved/f"));
}

TEST_F(GFileSystemTest, DatesAreUTC) {
    mFolder.Put("f", "x");
    // 5 July 2014, 23:59:58 UTC
    const std::chrono::sys_seconds moment{std::chrono::seconds(1404604798)};
    std::filesystem::last_write_time(mFolder.Standard("f"), std::chrono::file_clock::from_sys(moment));
    const GDateTime modified = GFileSystem::GetModificationDateTime(mFolder.Portable("f"));
    EXPECT_EQ(modified.CompareWith(GDateTime(5, 7, 2014, 23, 59, 58, 1, 0, 0)), 0);
    EXPECT_EQ(modified.GetRelationToUTC(), 1);
    EXPECT_EQ(modified.GetOffsetHours(), 0);
    mFolder.Put("new", "x");
    EXPECT_GT(GFileSystem::GetCreationDateTime(mFolder.Portable("new")).GetYear(), 2020);
}

}  // namespace
