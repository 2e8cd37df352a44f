#include "framework/core/encodings/GSimpleEncoding.h"

#include "tests/core/encodings/EncodingForTests.h"

namespace {

struct ASimpleEncoding : testing::Test {
    void Map(unsigned char code, unsigned short unit) { mEncoding->AddMapping(code, unit); }
    Written WriteUnits(std::u16string_view units) const { return Write(mEncoding.Get(), units); }

    GSharedObject<GSimpleEncoding> mEncoding{new GSimpleEncoding};
};

TEST_F(ASimpleEncoding, TakesMappingsAndReplacesThem) {
    EXPECT_TRUE(mEncoding->HasMapping(0x0A));
    EXPECT_FALSE(mEncoding->HasMapping('A'));
    Map('A', 0x0410);
    mEncoding->AddMapping('B', GBuffer("beta"), static_cast<unsigned short>(0x03B2));
    mEncoding->AddMapping('C', GBuffer("Euro"));
    mEncoding->AddMapping('D', GBuffer("nosuchglyph"));
    EXPECT_FALSE(mEncoding->HasMapping('D'));
    EXPECT_EQ(Read(mEncoding.Get(), "ABC").text, u"\u0410\u03B2\u20AC");
    EXPECT_EQ(WriteUnits(u"\u20AC\u03B2\u0410").text, "CBA");
    Map('B', 0x0411);
    EXPECT_EQ(WriteUnits(u"\u0411").text, "B");
    EXPECT_EQ(WriteUnits(u"\u03B2").result, 2) << "the old mapping is gone";
}

TEST_F(ASimpleEncoding, WritesAUnitAsTheLowestOfItsCodes) {
    Map('z', 0x0416);
    Map('a', 0x0416);
    EXPECT_EQ(WriteUnits(u"\u0416").text, "a");
    Map('a', 'a');
    EXPECT_EQ(WriteUnits(u"\u0416").text, "z");
    mEncoding->AddMapping('b', GBuffer(), GCharCode(static_cast<unsigned short>(0x0417)), false);
    EXPECT_EQ(Read(mEncoding.Get(), "b").text, u"\u0417");
    EXPECT_EQ(WriteUnits(u"\u0417").result, 2) << "a mapping for reading only";
    Map('b', 'b');
    EXPECT_EQ(WriteUnits(u"b").text, "b");
}

TEST_F(ASimpleEncoding, ReadsACodeThatStandsForSeveralUnits) {
    const unsigned short units[] = {0x05D3, 0x05B2};
    mEncoding->AddMapping('x', GCharCode(units, 2));
    Map('y', 'y');
    EXPECT_EQ(Read(mEncoding.Get(), "yxqx"), (Conversion{u"y\u05D3\u05B2@\u05D3\u05B2", 2}));
    EXPECT_EQ(WriteUnits(u"\u05D3").text, "@") << "a sequence is not written";
}

TEST_F(ASimpleEncoding, MayHaveCodesForEveryHighByte) {
    for (int code = 0; code < 256; ++code)
        Map(static_cast<unsigned char>(code), static_cast<unsigned short>(code << 8 | code));
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(WriteUnits(std::u16string(1, static_cast<char16_t>(code << 8 | code))).text,
                  std::string(1, static_cast<char>(code)));
}

// Codes that stand for the unit of the same number go by blocks of 16, as long as they do.
TEST_F(ASimpleEncoding, NoticesWhenACodeStandsForItsNumberNoLonger) {
    for (int code = 0x20; code < 0x100; ++code)
        if (code < 0x7F || code >= 0xA0)
            Map(static_cast<unsigned char>(code), static_cast<unsigned short>(code));
    const std::string text = "fifteen letters\xE4";
    EXPECT_EQ(Read(mEncoding.Get(), text), (Conversion{u"fifteen letters\u00E4", 1}));
    EXPECT_EQ(WriteUnits(u"fifteen letters\u00E4"), (Written{text, 1}));
    Map(0xE4, 0x0416);
    EXPECT_EQ(Read(mEncoding.Get(), text), (Conversion{u"fifteen letters\u0416", 1}));
    EXPECT_EQ(WriteUnits(u"fifteen letters\u00E4"), (Written{"fifteen letters@", 2}));
    Map('f', 0x0444);
    EXPECT_EQ(Read(mEncoding.Get(), text).text, u"\u0444i\u0444teen letters\u0416");
}

}  // namespace
