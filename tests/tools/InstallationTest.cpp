// What installing and removing stand on: the library's file, the spooler's names, the record, the way back.
#include "tests/WindowsTesting.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/MachineKey.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/Drivers.h"
#include "tools/quillonctl/InstallRecord.h"
#include "tools/quillonctl/LibraryFile.h"
#include "tools/quillonctl/PageRecord.h"
#include "tools/quillonctl/Printers.h"
#include "tools/quillonctl/Rollback.h"

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
    {
        const auto reader = OpenSharing(path, GENERIC_READ, FILE_SHARE_READ);
        EXPECT_THROW(LibraryFile::Remove(path), Failure);
        EXPECT_EQ(mFolder.Take("a.dll"), "x");
    }
    const auto reader = OpenSharing(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE);
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

using Texts = std::vector<std::wstring>;

TEST(Printers, SplitsTheListOfAPooledPrintersPorts) {
    EXPECT_EQ(SplitPortList(L""), Texts());
    EXPECT_EQ(SplitPortList(L" LPT1: , C:\\a b.txt ,QuillonPDFPort:"),
              (Texts{L"LPT1:", L"C:\\a b.txt", L"QuillonPDFPort:"}));
    EXPECT_EQ(SplitPortList(L",LPT1:,, ,"), Texts{L"LPT1:"});
}

TEST(Printers, KnowsOurPortInWhateverCaseAndPlace) {
    const auto isOurs = [](const Texts& ports) { return PrinterInfo{L"P", ports, L"D"}.IsOnOurPort(); };
    for (const Texts& ports : {Texts{L"QUILLONPDFPORT:"}, Texts{L"LPT1:", L"QuillonPDFPort:"}})
        EXPECT_TRUE(isOurs(ports)) << testing::PrintToString(ports);
    EXPECT_FALSE(isOurs({L"QuillonPDFPort", L"QuillonPDFPort:2", L"LPT1:"}));
    EXPECT_FALSE(isOurs({}));
}

TEST(Drivers, TellsThoseOfWindowsFromOthersThatMakePostScript) {
    const DriverInfo classDriver{L"Microsoft PS Class Driver", L"C:\\d\\mxdwdrv.dll", L""};
    const DriverInfo imagesetter{L"MS Publisher Imagesetter", L"C:\\d\\PSCRIPT5.DLL", L""};
    const DriverInfo maker{L"Laser 9 PS", L"C:\\d\\3\\PScript5.dll", L""};
    const DriverInfo wine{L"Test PS", L"C:/d/wineps.drv", L""};
    const DriverInfo fax{L"Fax", L"C:\\d\\fxsdrv.dll", L""};
    const DriverInfo lookalike{L"PS for all", L"C:\\pscript5.dll\\unidrv.dll", L""};
    const std::tuple<const char*, std::vector<DriverInfo>, DriverInfo, DriverInfo> rows[] = {
        {"no driver", {}, {}, {}},
        {"none that makes PostScript", {fax, lookalike}, {}, {}},
        {"a maker's", {fax, maker}, {}, maker},
        {"the first of two", {fax, wine, maker}, {}, wine},
        {"the imagesetter first", {classDriver, maker, imagesetter}, imagesetter, classDriver},
        {"the class driver, known by its name", {maker, classDriver}, classDriver, maker},
    };
    for (const auto& [what, drivers, ofWindows, any] : rows) {
        const auto nameOf = [](const DriverInfo* driver) { return driver == nullptr ? L"" : driver->name; };
        EXPECT_EQ(nameOf(FindDriverOfWindows(drivers)), ofWindows.name) << what;
        EXPECT_EQ(nameOf(FindPostScriptDriver(drivers)), any.name) << what;
    }
}

using Kind = InstallRecord::Kind;

const GString cTestKey("SOFTWARE\\QuillonToolsTest");

// The record and the test key belong to the whole test machine; no other test touches them.
struct RegistryTest : testing::Test {
    RegistryTest() { Clean(); }
    ~RegistryTest() override { Clean(); }
    static void Clean() {
        ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, AsWide(cTestKey));
        ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Quillon");
    }
};

TEST_F(RegistryTest, ATemporaryFolderIsTMPBeforeTEMP) {
    PRegistryKey key = MachineKey::Make(cTestKey);
    EXPECT_FALSE(SpoolerHost::FindTempFolder(key));
    key.SetInt32("TMP", 7);
    key.SetString("TEMP", "%SystemRoot%\\second", 2);
    EXPECT_EQ(SpoolerHost::FindTempFolder(key), L"C:\\windows\\second");
    key.SetString("TMP", "%SystemRoot%", 1);
    EXPECT_EQ(SpoolerHost::FindTempFolder(key), L"%SystemRoot%") << "a text of another type is as it stands";
    key.SetString("TMP", "", 1);
    EXPECT_EQ(SpoolerHost::FindTempFolder(key), L"C:\\windows\\second");
}

TEST_F(RegistryTest, RemovesAKeyOnlyWhenItIsEmpty) {
    const GString below = cTestKey + GString("\\below");
    PRegistryKey key = MachineKey::Make(below);
    key.SetString("v", "x", 1);
    EXPECT_FALSE(MachineKey::RemoveIfEmpty(cTestKey) || MachineKey::RemoveIfEmpty(below));
    EXPECT_TRUE(key.RemoveValue("v"));
    EXPECT_FALSE(key.RemoveValue("v"));
    EXPECT_TRUE(MachineKey::IsMissing(key));
    EXPECT_FALSE(key.RemoveKey("")) << "not itself";
    EXPECT_TRUE(MachineKey::RemoveIfEmpty(below) && MachineKey::RemoveIfEmpty(cTestKey));
    EXPECT_FALSE(MachineKey::RemoveIfEmpty(cTestKey));
}

TEST_F(RegistryTest, TheRecordRemembersAndLeavesNoKeyBehind) {
    EXPECT_TRUE(InstallRecord::IsEmpty());
    InstallRecord::Remove(Kind::cPrinter, L"never added");
    InstallRecord::Add(Kind::cPrinter, L"A");
    InstallRecord::Add(Kind::cPrinter, L"Bu\u0308ro 1");
    InstallRecord::Add(Kind::cDriver, L"Some PS", L"C:\\some.ppd");
    const InstallRecord::Entry driver = InstallRecord::GetEntries(Kind::cDriver).at(0);
    EXPECT_EQ(driver.name + L" " + driver.detail, L"Some PS C:\\some.ppd");
    InstallRecord::Remove(Kind::cPrinter, L"A");
    EXPECT_FALSE(InstallRecord::Contains(Kind::cPrinter, L"A"));
    EXPECT_EQ(InstallRecord::GetEntries(Kind::cPrinter).at(0).name, L"Bu\u0308ro 1") << "not composed";
    EXPECT_TRUE(InstallRecord::Contains(Kind::cPrinter, L"bu\u0308ro 1")) << "in whatever case";
    EXPECT_FALSE(InstallRecord::Contains(Kind::cDriver, L"Bu\u0308ro 1"));
    InstallRecord::Remove(Kind::cPrinter, L"Bu\u0308ro 1");
    EXPECT_TRUE(InstallRecord::GetEntries(Kind::cPrinter).empty());
    EXPECT_FALSE(InstallRecord::IsEmpty());
    InstallRecord::Remove(Kind::cDriver, L"Some PS");
    EXPECT_TRUE(InstallRecord::IsEmpty());
    EXPECT_FALSE(MachineKey::Open("SOFTWARE\\Quillon").Exists());
    PageRecord::Add(L"A", L"1.0.0.0");
    ASSERT_EQ(PageRecord::GetOf(L"1.0.0.0").size(), 1u);
    EXPECT_THAT(ToUTF8(PageRecord::GetOf(L"1.0.0.0")[0].when),
                testing::MatchesRegex("20..-..-.. ..:..:.. UTC"));
    EXPECT_TRUE(PageRecord::GetOf(L"1.0.0.1").empty()) << "another version of the library";
    PageRecord::Clear();
    EXPECT_FALSE(MachineKey::Open("SOFTWARE\\Quillon").Exists());
    MachineKey::Make("SOFTWARE\\Quillon\\Other");
    InstallRecord::Add(Kind::cLibrary, L"C:\\x.dll");
    InstallRecord::Remove(Kind::cLibrary, L"C:\\x.dll");
    EXPECT_TRUE(MachineKey::Open("SOFTWARE\\Quillon\\Other").Exists()) << "the key of another";
    EXPECT_FALSE(MachineKey::Open("SOFTWARE\\Quillon\\Port Monitor").Exists());
}

struct RollbackTest : testing::Test {
    Rollback::Action Note(const wchar_t* text) {
        return [this, text] { mLog.push_back(text); };
    }
    Texts mLog;
    const Rollback::Reporter mReport = [this](const std::wstring& text) { mLog.push_back(text); };
};

TEST_F(RollbackTest, AFailureTakesTheStepsBackNewestFirstAndNamesWhatCannotBe) {
    try {
        Rollback rollback(mReport);
        rollback.AddUndo(L"the first", Note(L"undo 1"));
        rollback.AddUndo(L"the second", [] { throw Failure(L"In use."); });
        rollback.AddCompletion(Note(L"completion"));
        throw Failure(L"a later step");
    } catch (const Failure& failure) {
        mLog.push_back(failure.GetText());
    }
    EXPECT_EQ(mLog,
              (Texts{L"Taking back the second.", L"Warning: the second could not be taken back. In use.",
                     L"Taking back the first.", L"undo 1", L"a later step"}));
}

TEST_F(RollbackTest, CommittingKeepsTheStepsAndCompletesThemInOrder) {
    {
        Rollback rollback(mReport);
        rollback.AddUndo(L"it", Note(L"undo"));
        rollback.AddCompletion(Note(L"completion 1"));
        rollback.AddCompletion([] { throw Failure(L"No space."); });
        rollback.AddCompletion(Note(L"completion 3"));
        rollback.Commit();
    }
    EXPECT_EQ(mLog, (Texts{L"completion 1", L"Warning: No space.", L"completion 3"}));
}

}  // namespace
