#include "framework/system/PSystem.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <tuple>

#include "framework/core/text/GBufferSupport.h"
#include "tests/files/TestFolder.h"

namespace {

TEST(PSystem, FormatsHardwareAddresses) {
    const std::tuple<const char*, GBuffer, const char*> rows[] = {
        {"an adapter", GBuffer(reinterpret_cast<const unsigned char*>("\x00\x1A\x2B\x3C\xFF\x5E"), 6),
         "00:1a:2b:3c:ff:5eN"},
        {"dial-up", GBuffer(reinterpret_cast<const unsigned char*>("DEST\0\x01"), 6), "44:45:53:54:00:01M"},
        {"nearly dial-up", GBuffer(reinterpret_cast<const unsigned char*>("DEST\x01\x01"), 6),
         "44:45:53:54:01:01N"},
        {"five bytes", GBuffer(reinterpret_cast<const unsigned char*>("DEST\0"), 5), ""},
        {"eight bytes", GBuffer(reinterpret_cast<const unsigned char*>("DEST\0\0\0\0"), 8), ""},
        {"nothing", GBuffer(), ""},
    };
    for (const auto& [what, address, text] : rows)
        EXPECT_EQ(TextOf(PSystem::FormatEtherAddress(address)), text) << what;
}

TEST(PSystem, ListsTheAdaptersAsBytesAndAsTexts) {
    GTable<GBuffer> addresses;
    GTable<GString> texts;
    texts.Append(GString("left over"));
    EXPECT_TRUE(PSystem::GetEtherAddress(addresses));
    EXPECT_TRUE(PSystem::GetEtherAddress(texts));
    EXPECT_LE(texts.GetCount(), addresses.GetCount());
    for (const GString& text : texts) {
        EXPECT_TRUE(std::regex_match(TextOf(text), std::regex("([0-9a-f]{2}:){5}[0-9a-f]{2}[MN]")))
            << TextOf(text);
    }
}

TEST(PSystem, KeepsTheCodeThatWasSet) {
    const long own = PSystem::GetOSCode();
    PSystem::SetOSCode(3008);
    EXPECT_EQ(PSystem::GetOSCode(), 3008);
    EXPECT_TRUE(PSystem::IsNTOrBetter());
    PSystem::SetOSCode(0);
    EXPECT_EQ(PSystem::GetOSCode(), 0);
    EXPECT_FALSE(PSystem::IsNTOrBetter());
    PSystem::SetOSCode(PSystem::cUnknownOSCode);
    EXPECT_EQ(PSystem::GetOSCode(), own);
}

TEST(PSystem, NamesMachineAndUser) {
    GString name;
    for (const auto get : {&PSystem::GetNetworkName, &PSystem::GetLogonName}) {
        EXPECT_TRUE(get(name));
        ASSERT_GT(name.GetLength(), 0);
        EXPECT_NE(name[name.GetLength() - 1], 0);
    }
}

TEST(PSystem, NamesItsModules) {
    const GPathName application = PSystem::GetApplicationPath();
    EXPECT_EQ(TextOf(application.GetLeafWithoutExtension()), "system_tests");
    EXPECT_EQ(TextOf(PSystem::GetDllPath()), TextOf(application));
    int module = 0;
    PSystem::SetHInstance(&module);
    EXPECT_EQ(PSystem::GetHInstance(), &module);
    PSystem::SetHInstance(nullptr);
}

TEST(PSystem, LineEndsAreThoseOfTheBuffers) {
    for (const bool cr : {false, true}) {
        GBufferSupport::SetLineEnding(cr, !cr);
        EXPECT_EQ(PSystem::GetLineEndingNeedsCR(), cr);
        EXPECT_EQ(PSystem::GetLineEndingNeedsLF(), !cr);
    }
    GBufferSupport::SetLineEnding(true, true);
}

TEST(PSystem, AsksForNoTimeAndTracesNothingForANullPointer) {
    PSystem::Trace(static_cast<const char*>(nullptr));
    PSystem::Trace(static_cast<const wchar_t*>(nullptr));
    PSystem::MilliSleep(0);
    PSystem::MilliSleep(-1);
    PSystem::MilliSleep(-2147483647);
    PSystem::Sleep(0);
    PSystem::Sleep(-1e300);
    PSystem::Sleep(std::strtod("nan", nullptr));
    EXPECT_GE(PSystem::GetNumberOfProcessors(), 1);
}

}  // namespace
