#include "framework/core/encodings/GPlatformEncoding.h"

#include "tests/core/encodings/EncodingForTests.h"

// Every character is compared with the peer's in the native build; here is what the product's system does.
TEST(GShiftJISEncoding, ConvertsJapaneseAndReplacesWhatItCannot) {
    // Kanji, half-width katakana, and a second byte that is a backslash.
    const std::u16string units = u"abc\r\n\u6F22\uFF71\u8868";
    EXPECT_EQ(Read(ShiftJIS(), "abc\r\n\x8A\xBF\xB1\x95\x5C"), (Conversion{units, 1}));
    EXPECT_EQ(Write(ShiftJIS(), units), (Written{"abc\r\n\x8A\xBF\xB1\x95\x5C", 1}));
    EXPECT_EQ(Read(ShiftJIS(), "a\x82"), (Conversion{u"a@", 2})) << "cut off";
    EXPECT_EQ(Write(ShiftJIS(), u"caf\u00E9\uAC00"), (Written{"caf@@", 2})) << "by no similar letter";
}

TEST(GPlatformEncoding, TheModifierChoosesTheCodePageForAScope) {
    GPlatformEncoding* encoding = GPlatformEncoding::GetInstance();
    const long before = encoding->GetModifier();
    {
        const GPlatformEncodingModifier cyrillic(1251);
        EXPECT_EQ((GPlatformEncodingModifier(1250), Read(encoding, "\xC6").text), u"\u0106");
        EXPECT_EQ(Read(encoding, "\xC6").text, u"\u0416");
        EXPECT_EQ(Write(encoding, u"\u0416").text, "\xC6");
    }
    EXPECT_EQ(encoding->GetModifier(), before);
}

TEST(GPlatformEncoding, AnUnknownCodePageConvertsNothing) {
    GSharedObject<GPlatformEncoding> encoding(new GPlatformEncoding(31999));
    EXPECT_EQ(Read(encoding.Get(), "abc"), (Conversion{u"", 4}));
    EXPECT_EQ(Write(encoding.Get(), u"abc"), (Written{"", 4}));
}

TEST(GPlatformEncoding, UTF8CodePageTakesPairsAndRefusesHalves) {
    GSharedObject<GPlatformEncoding> encoding(new GPlatformEncoding(65001));
    EXPECT_EQ(Write(encoding.Get(), u"a\xD83D\xDE00z").text, "a\xF0\x9F\x98\x80z");
    EXPECT_EQ(Read(encoding.Get(), "a\xF0\x9F\x98\x80z").text, u"a\xD83D\xDE00z");
    EXPECT_EQ(Write(encoding.Get(), u"a\xD83Dz"), (Written{"a@z", 2}));
    EXPECT_EQ(Read(encoding.Get(), "\xC3\xA9\xFFz"), (Conversion{u"\u00E9@z", 2}));
}

TEST(GPlatformEncodingFactory, AReplacedFactoryMakesTheEncodings) {
    struct Factory : GPlatformEncodingFactory {
        GPlatformEncoding* CreatePlatformEncoding(long) const override { return new GPlatformEncoding(1251); }
    };
    GPlatformEncoding::SetInstance(nullptr);
    GPlatformEncodingFactory::SetInstance(new Factory);
    GPlatformEncodingFactory::SetInstance(GPlatformEncodingFactory::GetInstance());  // is not deleted
    EXPECT_EQ(GPlatformEncoding::GetInstance()->GetModifier(), 1251);
    GPlatformEncodingFactory::SetInstance(nullptr);
    EXPECT_EQ(GPlatformEncoding::GetInstance()->GetModifier(), 1251) << "made before";
    GPlatformEncoding::SetInstance(nullptr);
    EXPECT_EQ(GPlatformEncoding::GetInstance()->GetModifier(), 0);
}
