#include "framework/core/GPlatformEncoding.h"

#include <gtest/gtest.h>

#include "framework/core/GPlatformEncodingFactory.h"
#include "framework/core/GPlatformEncodingModifier.h"
#include "framework/core/GSharedObject.h"
#include "framework/core/GShiftJISEncoding.h"
#include "tests/core/EncodingForTests.h"

namespace {

TEST(GShiftJISEncoding, ConvertsJapanese) {
    const struct {
        const char* what;
        std::string_view bytes;
        std::u16string_view units;
    } rows[] = {
        {"ASCII", "abc\r\n", u"abc\r\n"},
        {"hiragana and kanji", "\x82\xA0\x8A\xBF\x8E\x9A", u"\u3042\u6F22\u5B57"},
        {"half-width katakana", "\xB1\xDD", u"\uFF71\uFF9D"},
        {"a second byte that is a backslash", "\x95\x5C\x8E\xA6", u"\u8868\u793A"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const Conversion read = Read(GShiftJISEncoding::GetInstance(), row.bytes);
        EXPECT_EQ(read.units, row.units);
        EXPECT_EQ(read.result, 1);
        const Written written = Write(GShiftJISEncoding::GetInstance(), row.units);
        EXPECT_EQ(written.bytes, row.bytes);
        EXPECT_EQ(written.result, 1);
    }
}

TEST(GShiftJISEncoding, ReplacesWhatItCannotConvert) {
    const Conversion cutOff = Read(GShiftJISEncoding::GetInstance(), "a\x82");
    EXPECT_EQ(cutOff.units, u"a@");
    EXPECT_EQ(cutOff.result, 2);
    const Written foreign = Write(GShiftJISEncoding::GetInstance(), u"a\uAC00z");
    EXPECT_EQ(foreign.bytes, "a@z");
    EXPECT_EQ(foreign.result, 2);
    const Written similar = Write(GShiftJISEncoding::GetInstance(), u"caf\u00E9");
    EXPECT_EQ(similar.bytes, "caf@") << "no letter is replaced by one that looks like it";
}

TEST(GPlatformEncoding, TheModifierChoosesTheCodePageForAScope) {
    GPlatformEncoding* encoding = GPlatformEncoding::GetInstance();
    const long before = encoding->GetModifier();
    {
        const GPlatformEncodingModifier cyrillic(1251);
        EXPECT_EQ(encoding->GetModifier(), 1251);
        EXPECT_EQ(Read(encoding, "\xC6").units, u"\u0416");
        {
            const GPlatformEncodingModifier centralEuropean(1250);
            EXPECT_EQ(Read(encoding, "\xC6").units, u"\u0106");
        }
        EXPECT_EQ(Write(encoding, u"\u0416").bytes, "\xC6");
    }
    EXPECT_EQ(encoding->GetModifier(), before);
}

TEST(GPlatformEncoding, AnUnknownCodePageConvertsNothing) {
    GSharedObject<GPlatformEncoding> encoding(new GPlatformEncoding(31999));
    EXPECT_EQ(Read(encoding.Get(), "abc").result, 4);
    EXPECT_EQ(Read(encoding.Get(), "abc").units, u"");
    EXPECT_EQ(Write(encoding.Get(), u"abc").result, 4);
    EXPECT_EQ(Write(encoding.Get(), u"abc").bytes, "");
}

TEST(GPlatformEncoding, UTF8CodePageTakesPairsAndRefusesHalves) {
    GSharedObject<GPlatformEncoding> encoding(new GPlatformEncoding(65001));
    EXPECT_EQ(Write(encoding.Get(), u"a\xD83D\xDE00z").bytes, "a\xF0\x9F\x98\x80z");
    EXPECT_EQ(Read(encoding.Get(), "a\xF0\x9F\x98\x80z").units, u"a\xD83D\xDE00z");
    const Written half = Write(encoding.Get(), u"a\xD83Dz");
    EXPECT_EQ(half.bytes, "a@z");
    EXPECT_EQ(half.result, 2);
    const Conversion invalid = Read(encoding.Get(), "\xC3\xA9\xFFz");
    EXPECT_EQ(invalid.units, u"\u00E9@z");
    EXPECT_EQ(invalid.result, 2);
}

TEST(GPlatformEncodingFactory, AReplacedFactoryMakesTheEncodings) {
    class Factory : public GPlatformEncodingFactory {
    public:
        GPlatformEncoding* CreatePlatformEncoding(long) const override { return new GPlatformEncoding(1251); }
    };
    GPlatformEncoding::SetInstance(nullptr);
    GPlatformEncodingFactory::SetInstance(new Factory);
    EXPECT_EQ(GPlatformEncoding::GetInstance()->GetModifier(), 1251);
    GPlatformEncodingFactory::SetInstance(nullptr);
    EXPECT_EQ(GPlatformEncoding::GetInstance()->GetModifier(), 1251) << "made before";
    GPlatformEncoding::SetInstance(nullptr);
    EXPECT_EQ(GPlatformEncoding::GetInstance()->GetModifier(), 0);
}

}  // namespace
