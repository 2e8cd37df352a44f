#include "framework/core/GSimpleEncoding.h"

#include <gtest/gtest.h>

#include "framework/core/GCharCode.h"
#include "framework/core/GSharedObject.h"
#include "tests/core/EncodingForTests.h"

namespace {

TEST(GSimpleEncoding, MappingsCanBeAddedAndReplaced) {
    GSharedObject<GSimpleEncoding> encoding(new GSimpleEncoding);
    EXPECT_TRUE(encoding->HasMapping(0x0A));
    EXPECT_FALSE(encoding->HasMapping('A'));
    encoding->AddMapping('A', static_cast<unsigned short>(0x0410));
    encoding->AddMapping('B', GBuffer("beta"), static_cast<unsigned short>(0x03B2));
    encoding->AddMapping('C', GBuffer("Euro"));
    encoding->AddMapping('D', GBuffer("nosuchglyph"));
    EXPECT_FALSE(encoding->HasMapping('D'));
    EXPECT_EQ(Read(encoding.Get(), "ABC").units, u"\u0410\u03B2\u20AC");
    EXPECT_EQ(Write(encoding.Get(), u"\u20AC\u03B2\u0410").bytes, "CBA");
    encoding->AddMapping('B', static_cast<unsigned short>(0x0411));
    EXPECT_EQ(Write(encoding.Get(), u"\u0411").bytes, "B");
    EXPECT_EQ(Write(encoding.Get(), u"\u03B2").result, 2) << "the old mapping is gone";
}

TEST(GSimpleEncoding, AUnitGoesBackToTheLowestOfItsCodes) {
    GSharedObject<GSimpleEncoding> encoding(new GSimpleEncoding);
    encoding->AddMapping('z', static_cast<unsigned short>(0x0416));
    encoding->AddMapping('a', static_cast<unsigned short>(0x0416));
    EXPECT_EQ(Write(encoding.Get(), u"\u0416").bytes, "a");
    encoding->AddMapping('a', static_cast<unsigned short>('a'));
    EXPECT_EQ(Write(encoding.Get(), u"\u0416").bytes, "z");
    GCharCode code(static_cast<unsigned short>(0x0417));
    encoding->AddMapping('b', GBuffer(), code, false);
    EXPECT_EQ(Read(encoding.Get(), "b").units, u"\u0417");
    EXPECT_EQ(Write(encoding.Get(), u"\u0417").result, 2);
}

TEST(GSimpleEncoding, ACodeMayStandForSeveralUnits) {
    GSharedObject<GSimpleEncoding> encoding(new GSimpleEncoding);
    const unsigned short units[] = {0x05D3, 0x05B2};
    encoding->AddMapping('x', GCharCode(units, 2));
    encoding->AddMapping('y', static_cast<unsigned short>('y'));
    const Conversion read = Read(encoding.Get(), "yxqx");
    EXPECT_EQ(read.units, u"y\u05D3\u05B2@\u05D3\u05B2");
    EXPECT_EQ(read.result, 2);
    EXPECT_EQ(Write(encoding.Get(), u"\u05D3").bytes, "@") << "a sequence is not written";
}

TEST(GSimpleEncoding, EveryHighByteMayHaveCodes) {
    GSharedObject<GSimpleEncoding> encoding(new GSimpleEncoding);
    for (int code = 0; code < 256; ++code)
        encoding->AddMapping(static_cast<unsigned char>(code), static_cast<unsigned short>(code << 8 | code));
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(Write(encoding.Get(), std::u16string(1, static_cast<char16_t>(code << 8 | code))).bytes,
                  std::string(1, static_cast<char>(code)));
}

}  // namespace
