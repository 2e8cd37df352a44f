#include "framework/ipc/GShMemID.h"

#include <gmock/gmock.h>

#include <tuple>

#include "framework/core/encodings/GUnicodeEncoding.h"
#include "tests/ipc/IPCWorld.h"

namespace {

struct GShMemIDTest : public testing::Test {
    GShMemIDTest() { GShMemID::Initialize(); }
    ~GShMemIDTest() override { GShMemID::Finalize(); }
};

TEST_F(GShMemIDTest, TakesLettersDigitsAndUnderscoresOnly) {
    const std::tuple<const char*, std::string, bool> rows[] = {
        {"nothing", "", true},
        {"all that is allowed", "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", true},
        {"an underscore alone", "_", true},
        {"a digit first", "1a", true},
        {"before '0'", "a/", false},
        {"behind '9'", "a:", false},
        {"before 'A'", "a@", false},
        {"behind 'Z'", "a[", false},
        {"before 'a'", "a`", false},
        {"behind 'z'", "a{", false},
        {"a hyphen", "a-b", false},
        {"a blank at the end", "ab ", false},
        {"a backslash", "Global\\x", false},
        {"a byte outside ASCII", "a\xE4", false},
        {"a zero in the middle", std::string("a\0b", 3), false},
    };
    for (const auto& [what, text, valid] : rows)
        EXPECT_EQ(ThrownBy([&] { EXPECT_EQ(Text(GShMemID(Bytes(text)).GetBuffer()), text); }),
                  valid ? 0 : 40162)
            << what;
}

TEST_F(GShMemIDTest, TakesAndJoinsStringsOfAnyEncodingAsFarAsTheyAreASCII) {
    const unsigned short plain[] = {'A', 'b', '_'};
    const unsigned short accented[] = {'A', 0xE9};
    const unsigned short substitute[] = {'A', 0xE9, '@'};
    EXPECT_EQ(Text(GShMemID(GString::FromUTF16(plain, 3)).GetBuffer()), "Ab_");
    EXPECT_EQ(ThrownBy([&] { GShMemID(GString::FromUTF16(accented, 2)); }), 40162);
    EXPECT_EQ(ThrownBy([&] { GShMemID(GString::FromUTF16(substitute, 3)); }), 40162);
    EXPECT_TRUE(GShMemID(GString()).IsEmpty());
    GShMemID joined = GShMemID("P") + GShMemID("1234");
    joined += GShMemID();
    joined += GShMemID("MQ7");
    EXPECT_EQ(Text(joined.GetBuffer()), "P1234MQ7");
    EXPECT_TRUE(GShMemID(static_cast<const char*>(nullptr)).IsEmpty());
}

TEST_F(GShMemIDTest, KnowsSevenSpecialIDs) {
    const std::tuple<long, const char*> rows[] = {{0, ""},       {1, "P"},          {2, "G"},    {3, "M"},
                                                  {4, ""},       {-1, ""},          {101, "MQ"}, {102, "PS"},
                                                  {201, "GIPC"}, {202, "GIPCTest"}, {203, ""}};
    for (const auto& [number, text] : rows)
        EXPECT_EQ(Text(GShMemID::GetSpecialID(number).GetBuffer()), text) << number;
    GShMemID::Finalize();
    EXPECT_TRUE(GShMemID::GetSpecialID(201).IsEmpty());
}

}  // namespace
