#include "framework/system/PSystem.h"

#include <cstdio>
#include <regex>

#include "framework/core/text/GBufferSupport.h"
#include "framework/system/GOSVersion.h"
#include "framework/system/PRegistryData.h"
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

TEST(PRegistryData, SplitsMultiStringsOfBothWidths) {
    ForEachRow<2>(
        {"a\0b\0\0\0c\0\0\0\0\0 -> [ab][c]"sv, "a\0\0\0\0\0b\0\0\0\0\0 -> [a][][b]"sv, "\0\0\0\0 -> "sv,
         // 8-bit, also for want of zeros, or by an odd count whatever its end.
         "ab\0c\0\0 -> [ab][c]"sv, "a\0\0b\0\0 -> [a][][b]"sv, "ab\0c\0 -> [ab][c]"sv, "abc -> [abc]"sv,
         "abc\0c\0\0 -> [abc][c]"sv, "a\0\0\0\0 -> [a][][]"sv, " -> "sv, "\0 -> "sv, "\0\0 -> "sv},
        [](auto bytes, auto expected) {
            PRegistryData data(3, BufferOf("what it was"));
            data.SetStringTable(BufferOf(bytes));
            EXPECT_EQ(std::to_string(data.GetType()) + BytesOf(data.GetBuffer()), "7");
            std::string found;
            for (const GString& text : data.GetStringTable())
                found.append("[").append(TextOf(text)).append("]");
            EXPECT_EQ(found, expected);
        });
}

TEST(PRegistryData, KeepsEachTypeInItsForm) {
    EXPECT_EQ(TextOf(PRegistryData(1, BufferOf("a\0b\0\0\0"s)).GetString()), "ab");
    EXPECT_EQ(TextOf(PRegistryData(2, BufferOf("%\0a\0%\0"s)).GetString()), "%a%");
    EXPECT_EQ(TextOf(PRegistryData(1, BufferOf("abc"s)).GetString()), "abc");
    EXPECT_EQ(PRegistryData(1, BufferOf("abc"s)).GetBuffer().GetLength(), 0);
    EXPECT_EQ(PRegistryData(7, BufferOf("ab\0c\0"s)).GetStringTable().GetCount(), 2);
    EXPECT_EQ(PRegistryData(4, BufferOf("\xFE\xFF\xFF\xFF"s)).GetInt32(), -2);
    EXPECT_EQ(PRegistryData(4, BufferOf("\1\0\0\x80"s)).GetInt32(), -2147483647);
    const PRegistryData damaged(4, BufferOf("\1\0\0"s));
    EXPECT_EQ(damaged.GetInt32(), 0);
    EXPECT_EQ(damaged.GetBuffer().GetLength(), 3);
    for (const std::uint32_t type : {3u, 0u, 11u, 0xFFFF0000u}) {
        EXPECT_EQ(PRegistryData(type, BufferOf("a\0b"s)).GetBuffer().GetLength(), 3);
        EXPECT_EQ(PRegistryData(type, BufferOf("a"s)).GetType(), type);
    }
}

}  // namespace
