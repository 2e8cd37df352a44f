#include "tools/quillonctl/InstallRecord.h"

#include "tests/WindowsTesting.h"
#include "tools/console/Console.h"
#include "tools/machine/MachineKey.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/PageRecord.h"

namespace {

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

}  // namespace
