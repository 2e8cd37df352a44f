#include "framework/core/text/GStandardString.h"

#include "tests/core/encodings/EncodingForTests.h"

namespace {

/// Itself where wchar_t is something else.
template <class Wide>
GString ThroughWide(const GString& text) {
    if constexpr (sizeof(Wide) == 2)
        return GStandardString::FromWide<Wide>(GStandardString::ToWide<Wide>(text));
    else
        return text;
}

TEST(GStandardString, TextsPassBothWaysUnchanged) {
    const std::pair<std::string, std::u16string> rows[] = {
        {"", u""},
        {"plain", u"plain"},
        {"a\0b"s, u"a\0b"s},
        {"Gr\xC3\xBC\xC3\x9F\x65 \xE2\x82\xAC", u"Gr\u00FC\u00DFe \u20AC"},
        {"\xF0\x9F\x96\xA8", u"\U0001F5A8"}};
    for (const auto& [utf8, utf16] : rows) {
        SCOPED_TRACE(utf8);
        for (const GString& text : {GStandardString::FromUTF8(utf8), GStandardString::FromUTF16(utf16)}) {
            EXPECT_EQ(GStandardString::ToUTF8(text), utf8);
            EXPECT_EQ(GStandardString::ToUTF16(text), utf16);
        }
        EXPECT_EQ(GStandardString::ToUTF8(ThroughWide<wchar_t>(GStandardString::FromUTF8(utf8))), utf8);
    }
}

TEST(GStandardString, WhatIsNoTextIsReplacedAndUTF16IsComposed) {
    ForEachRow<2>({"e\xCC\x81 -> \u00E9", "a\xFFz -> a\uFFFDz", "\x80\xBF -> \uFFFD\uFFFD", "\xC3 -> \uFFFD",
                   "\xE2\x82( -> \uFFFD(", "\xC0\x80 -> \uFFFD\uFFFD", "\xE0\x9F\xBF -> \uFFFD\uFFFD\uFFFD",
                   "\xED\xA0\x80 -> \uFFFD\uFFFD\uFFFD", "\xF0\x90\x80 -> \uFFFD",
                   "\xF4\x8F\xBF\xBF -> \U0010FFFF", "\xF4\x90\x80\x80 -> \uFFFD\uFFFD\uFFFD\uFFFD",
                   "\xED\x9F\xBF\xEE\x80\x80 -> \xED\x9F\xBF\xEE\x80\x80"},
                  [](auto utf8, auto replaced) {
                      const std::u16string units = GStandardString::ToUTF16(GStandardString::FromUTF8(utf8));
                      EXPECT_EQ(GStandardString::ToUTF8(GStandardString::FromUTF16(units)), replaced);
                  });
    for (const std::u16string half : {u"\xD800", u"\xDC00"}) {
        EXPECT_EQ(GStandardString::ToUTF8(GStandardString::FromUTF16(half + u"a")), "\xEF\xBF\xBD\x61");
        EXPECT_EQ(GStandardString::ToUTF8(GStandardString::FromUTF16(half)), "\xEF\xBF\xBD");
    }
    EXPECT_EQ(GStandardString::ToUTF8(GString("\x80", WinAnsi())), "\xE2\x82\xAC");
    EXPECT_EQ(GStandardString::ToUTF8(GString()), "");
}

}  // namespace
