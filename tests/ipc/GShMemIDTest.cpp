#include "framework/ipc/GShMemID.h"

#include "framework/core/encodings/GUnicodeEncoding.h"
#include "tests/ipc/IPCTestSupport.h"

namespace {

struct GShMemIDTest : testing::Test {
    GShMemIDTest() { GShMemID::Initialize(); }
    ~GShMemIDTest() override { GShMemID::Finalize(); }
};

TEST_F(GShMemIDTest, TakesLettersDigitsAndUnderscoresOnly) {
    const std::string allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = {'a', static_cast<char>(byte), 'z'};
        const bool isValid = allowed.find(static_cast<char>(byte)) != std::string::npos;
        for (const std::string& placed : {text, text.substr(1), text.substr(0, 2)})
            EXPECT_EQ(ThrownBy([&] { EXPECT_EQ(BytesOf(GShMemID(BufferOf(placed)).GetBuffer()), placed); }),
                      isValid ? 0 : 40162)
                << byte;
    }
    EXPECT_TRUE(GShMemID(GBuffer()).IsEmpty());
}

TEST_F(GShMemIDTest, TakesAndJoinsStringsOfAnyEncodingAsFarAsTheyAreASCII) {
    const unsigned short plain[] = {'A', 'b', '_'};
    const unsigned short accented[] = {'A', 0xE9};
    const unsigned short substitute[] = {'A', 0xE9, '@'};
    EXPECT_EQ(BytesOf(GShMemID(GString::FromUTF16(plain, 3)).GetBuffer()), "Ab_");
    EXPECT_EQ(ThrownBy([&] { GShMemID(GString::FromUTF16(accented, 2)); }), 40162);
    EXPECT_EQ(ThrownBy([&] { GShMemID(GString::FromUTF16(substitute, 3)); }), 40162);
    EXPECT_TRUE(GShMemID(GString()).IsEmpty());
    GShMemID joined = GShMemID("P") + GShMemID("1234");
    joined += GShMemID();
    joined += GShMemID("MQ7");
    EXPECT_EQ(BytesOf(joined.GetBuffer()), "P1234MQ7");
    EXPECT_TRUE(GShMemID(static_cast<const char*>(nullptr)).IsEmpty());
}

TEST_F(GShMemIDTest, KnowsSevenSpecialIDs) {
    const std::tuple<long, const char*> rows[] = {{0, ""},       {1, "P"},          {2, "G"},    {3, "M"},
                                                  {4, ""},       {-1, ""},          {101, "MQ"}, {102, "PS"},
                                                  {201, "GIPC"}, {202, "GIPCTest"}, {203, ""}};
    for (const auto& [number, text] : rows)
        EXPECT_EQ(BytesOf(GShMemID::GetSpecialID(number).GetBuffer()), text) << number;
    GShMemID::Finalize();
    EXPECT_TRUE(GShMemID::GetSpecialID(201).IsEmpty());
}

}  // namespace
