#include "tools/quillonctl/InstallRecord.h"

#include <gmock/gmock.h>

#include "platform/win32/base/PWin32Api.h"
#include "tools/machine/RegistryKey.h"
#include "tools/machine/SpoolerHost.h"

namespace {

using Kind = InstallRecord::Kind;

const std::wstring cTestKey = L"SOFTWARE\\QuillonToolsTest";

// The record and the test key belong to the whole test machine; no other test touches them.
class RegistryTest : public testing::Test {
protected:
    RegistryTest() { Clean(); }
    ~RegistryTest() override { Clean(); }
    static void Clean() {
        ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, cTestKey.c_str());
        ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Quillon");
    }
};

TEST_F(RegistryTest, ValuesOfEveryLengthComeBack) {
    RegistryKey key = RegistryKey::Create(cTestKey);
    for (const std::size_t length : {0u, 1u, 254u, 255u, 256u, 257u, 5000u}) {
        SCOPED_TRACE(length);
        const std::wstring text(length, L'\u00E4');
        key.SetValue(L"v", text);
        EXPECT_EQ(key.GetValue(L"v"), text);
    }
}

TEST_F(RegistryTest, ReplacesVariablesAndPassesOverOtherKinds) {
    RegistryKey key = RegistryKey::Create(cTestKey);
    const DWORD number = 7;
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, cTestKey.c_str(), L"number", REG_DWORD, &number, sizeof number);
    const std::wstring text = L"%SystemRoot%\\x";
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, cTestKey.c_str(), L"path", REG_EXPAND_SZ, text.c_str(),
                      static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    EXPECT_FALSE(key.GetValue(L"number"));
    EXPECT_FALSE(key.GetValue(L"nothing"));
    EXPECT_EQ(key.GetValue(L"path"), L"C:\\windows\\x");
    EXPECT_THAT(key.GetValues(), testing::ElementsAre(testing::Pair(L"path", L"C:\\windows\\x")));
}

TEST_F(RegistryTest, ATemporaryFolderIsTMPBeforeTEMP) {
    RegistryKey key = RegistryKey::Create(cTestKey);
    EXPECT_FALSE(SpoolerHost::FindTempFolder(key));
    key.SetValue(L"TEMP", L"D:\\second");
    EXPECT_EQ(SpoolerHost::FindTempFolder(key), L"D:\\second");
    key.SetValue(L"TMP", L"D:\\first");
    EXPECT_EQ(SpoolerHost::FindTempFolder(key), L"D:\\first");
    key.SetValue(L"TMP", L"");
    EXPECT_EQ(SpoolerHost::FindTempFolder(key), L"D:\\second");
}

TEST_F(RegistryTest, RemovesAKeyOnlyWhenItIsEmpty) {
    RegistryKey::Create(cTestKey + L"\\below");
    RegistryKey::Create(cTestKey + L"\\below").SetValue(L"v", L"x");
    EXPECT_FALSE(RegistryKey::RemoveIfEmpty(cTestKey));
    EXPECT_FALSE(RegistryKey::RemoveIfEmpty(cTestKey + L"\\below"));
    RegistryKey::Create(cTestKey + L"\\below").RemoveValue(L"v");
    EXPECT_TRUE(RegistryKey::RemoveIfEmpty(cTestKey + L"\\below"));
    EXPECT_TRUE(RegistryKey::RemoveIfEmpty(cTestKey));
    EXPECT_FALSE(RegistryKey::RemoveIfEmpty(cTestKey));
}

TEST_F(RegistryTest, TheRecordRemembersAndLeavesNoKeyBehind) {
    EXPECT_TRUE(InstallRecord::IsEmpty());
    InstallRecord::Remove(Kind::Printer, L"never added");
    InstallRecord::Add(Kind::Printer, L"A");
    InstallRecord::Add(Kind::Printer, L"B\u00FCro 1");
    InstallRecord::Add(Kind::Driver, L"Some PS", L"C:\\some.ppd");
    const auto drivers = InstallRecord::GetEntries(Kind::Driver);
    ASSERT_EQ(drivers.size(), 1u);
    EXPECT_EQ(drivers[0].name, L"Some PS");
    EXPECT_EQ(drivers[0].detail, L"C:\\some.ppd");
    InstallRecord::Remove(Kind::Printer, L"A");
    EXPECT_FALSE(InstallRecord::Contains(Kind::Printer, L"A"));
    EXPECT_TRUE(InstallRecord::Contains(Kind::Printer, L"b\u00FCro 1")) << "in whatever case";
    EXPECT_FALSE(InstallRecord::Contains(Kind::Driver, L"B\u00FCro 1"));
    InstallRecord::Remove(Kind::Printer, L"B\u00FCro 1");
    EXPECT_FALSE(InstallRecord::IsEmpty());
    InstallRecord::Remove(Kind::Driver, L"Some PS");
    EXPECT_TRUE(InstallRecord::IsEmpty());
    EXPECT_FALSE(RegistryKey::Exists(L"SOFTWARE\\Quillon"));
    RegistryKey::Create(L"SOFTWARE\\Quillon\\Other");
    InstallRecord::Add(Kind::Library, L"C:\\x.dll");
    InstallRecord::Remove(Kind::Library, L"C:\\x.dll");
    EXPECT_TRUE(RegistryKey::Exists(L"SOFTWARE\\Quillon\\Other")) << "the key of another";
    EXPECT_FALSE(RegistryKey::Exists(L"SOFTWARE\\Quillon\\Port Monitor"));
}

}  // namespace
