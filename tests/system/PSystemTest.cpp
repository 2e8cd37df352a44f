#include "framework/system/PSystem.h"

#include <cstdio>
#include <regex>

#include "framework/core/text/GBufferSupport.h"
#include "framework/system/GOSVersion.h"
#include "tests/files/TestFolder.h"

namespace {

TEST(PSystem, FormatsHardwareAddresses) {
    // An adapter, dial-up, nearly dial-up, and what has not six bytes.
    ForEachRow<2>({"\x00\x1A\x2B\x3C\xFF\x5E -> 00:1a:2b:3c:ff:5eN"sv, "DEST\0\x01 -> 44:45:53:54:00:01M"sv,
                   "DEST\x01\x01 -> 44:45:53:54:01:01N"sv, "DEST\0 -> "sv, "DEST\0\0\0\0 -> "sv, " -> "sv},
                  [](auto address, auto text) {
                      EXPECT_EQ(TextOf(PSystem::FormatEtherAddress(BufferOf(address))), text);
                  });
}

TEST(PSystem, ListsTheAdaptersAsBytesAndAsTexts) {
    GTable<GBuffer> addresses;
    GTable<GString> texts;
    texts.Append(GString("left over"));
    EXPECT_TRUE(PSystem::GetEtherAddress(addresses));
    EXPECT_TRUE(PSystem::GetEtherAddress(texts));
    EXPECT_LE(texts.GetCount(), addresses.GetCount());
    const std::regex form("([0-9a-f]{2}:){5}[0-9a-f]{2}[MN]");
    for (const GString& text : texts) EXPECT_TRUE(std::regex_match(TextOf(text), form)) << TextOf(text);
}

// Platform (2 is NT), version, whether it is a server, and which of the exact tests hold.
TEST(GOSVersion, GivesTheCode) {
    ForEachRow<2>(
        {"1 4.10 -> 0", "1 6.1 server, 6.2, 6.3 -> 0", "2 4.0 -> 3000", "2 5.0 -> 3003",
         "2 5.0 server -> 3004", "2 5.1 -> 3005", "2 5.1 server -> 3006", "2 5.2 -> 3007",
         "2 5.2 server -> 3008",
         // From 6.2 on a system tells the truth only to who asks for a version.
         "2 5.3 -> 3000", "2 6.0 -> 3009", "2 6.0 server -> 3010", "2 6.1 -> 3011", "2 6.1 server -> 3012",
         "2 6.1, 6.2, 6.3 -> 3011", "2 6.2, 6.2 -> 3013", "2 6.2 server, 6.2 -> 3014", "2 6.2, 6.3 -> 3015",
         "2 6.2 server, 6.3 -> 3016", "2 6.2 -> 3000", "2 6.2 server -> 3000", "2 6.3, 6.3 -> 3000",
         "2 10.0 -> 3000", "2 10.0 server -> 3000"},
        [](auto system, auto code) {
            long platform = 0, major = 0, minor = 0;
            std::sscanf(system.data(), "%ld %ld.%ld", &platform, &major, &minor);
            const auto has = [&](std::string_view what) { return system.find(what) != system.npos; };
            const GOSVersion version{platform, major, minor, has("server"), has(", 6.2"), has(", 6.3")};
            EXPECT_EQ(std::to_string(version.GetOSCode()), code);
        });
}

TEST(PSystem, KeepsTheCodeAndTheLineEndsThatWereSet) {
    const long own = PSystem::GetOSCode();
    for (const long code : {3008L, 0L}) {
        PSystem::SetOSCode(code);
        EXPECT_EQ(PSystem::GetOSCode(), code);
        EXPECT_EQ(PSystem::IsNTOrBetter(), code != 0);
        GBufferSupport::SetLineEnding(code != 0, code == 0);
        EXPECT_EQ(PSystem::GetLineEndingNeedsCR(), code != 0);
        EXPECT_EQ(PSystem::GetLineEndingNeedsLF(), code == 0);
    }
    PSystem::SetOSCode(PSystem::cUnknownOSCode);
    EXPECT_EQ(PSystem::GetOSCode(), own);
    GBufferSupport::SetLineEnding(true, true);
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

TEST(PSystem, AsksForNoTimeAndTracesNothingForANullPointer) {
    PSystem::Trace(static_cast<const char*>(nullptr));
    PSystem::Trace(static_cast<const wchar_t*>(nullptr));
    for (const long none : {0L, -1L, -2147483647L}) PSystem::MilliSleep(none);
    for (const double none : {0.0, -1e300, std::numeric_limits<double>::quiet_NaN()}) PSystem::Sleep(none);
    EXPECT_GE(PSystem::GetNumberOfProcessors(), 1);
}

}  // namespace
