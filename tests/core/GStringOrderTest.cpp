#include <gtest/gtest.h>

#include <tuple>

#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GString.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TextForTests.h"

namespace {

using namespace std::string_view_literals;

const GEncoding* WinAnsi() {
    return GWinAnsiEncoding::GetInstance();
}

std::string NameOf(const GString& text) {
    return BytesOf(text.GetEncodingName());
}

TEST(GString, EqualityComparesTextsNotBytes) {
    const std::tuple<const char*, GString, GString, bool> rows[] = {
        {"ASCII and UTF-16", GString("abc"), StringOf(u"abc"), true},
        {"WinAnsi and UTF-8", GString("\xE9", WinAnsi()), GString::FromUTF8("\xC3\xA9"), true},
        {"the same bytes in two encodings", GString("\xE9", WinAnsi()),
         GString("\xE9", GMacRomanEncoding::GetInstance()), false},
        {"composed and not", GString::FromUTF8("e\xCC\x81"), StringOf(u"\u00E9"), true},
        {"nothing and an empty text", GString(), GString(""), true},
        {"nothing and a text", GString(), GString("a"), false},
        {"a shorter text", GString("ab"), GString("abc"), false},
        {"case", GString("abc"), GString("abC"), false},
        {"a zero in it", GString(BufferOf("a\0b"sv), WinAnsi()), GString("a"), false},
    };
    for (const auto& [what, a, b, equal] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(a == b, equal);
        EXPECT_EQ(b == a, equal);
        EXPECT_EQ(a != b, !equal);
        if (equal) {
            EXPECT_EQ(GString(a).GetHash(), GString(b).GetHash());
        }
    }
    EXPECT_EQ(GString("A").GetHash(), 0x610u) << "((2 rotl 4) ^ 0x41) rotl 4, over two bytes";
}

TEST(GString, ComparingConvertsNeitherText) {
    const GString a("\xE9", WinAnsi());
    const GString b = GString::FromUTF8("\xC3\xA9");
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a < b);
    EXPECT_EQ(NameOf(a) + NameOf(b), "WinAnsiEncodingUTF-8Encoding");
}

TEST(GString, OrderIsThatOfLittleEndianBytes) {
    const std::tuple<const char*, GString, GString> rows[] = {
        {"letters", GString("abc"), GString("abd")},
        {"a shorter text", GString("ab"), GString("abc")},
        {"nothing", GString(), GString("a")},
        {"capitals first", GString("Z"), GString("a")},
        {"the low byte decides", StringOf(u"\u0100"), StringOf(u"\u00FF")},
        {"then the high byte", StringOf(u"\u0141"), StringOf(u"\u0241")},
        {"a mixed pair", GString("\xE9", WinAnsi()), StringOf(u"\u00EA")},
    };
    for (const auto& [what, less, more] : rows) {
        SCOPED_TRACE(what);
        EXPECT_TRUE(less < more && less <= more && more > less && more >= less);
        EXPECT_FALSE(more < less || more <= less || less > more || less >= more);
        EXPECT_TRUE(GString::IsLessThan(less, more));
        EXPECT_FALSE(less < less || less > less);
        EXPECT_TRUE(less <= less && less >= less);
    }
}

TEST(GString, OrderIgnoringCase) {
    EXPECT_TRUE(GString::IsLessThanIgnoreCase(GString("a"), GString("B")));
    EXPECT_FALSE(GString::IsLessThanIgnoreCase(GString("B"), GString("a")));
    EXPECT_FALSE(GString::IsLessThanIgnoreCase(GString("ABC"), GString("abc")));
    EXPECT_FALSE(GString::IsLessThanIgnoreCase(GString("abc"), GString("ABC")));
    EXPECT_TRUE(GString::IsLessThanIgnoreCase(GString("_"), GString("Z"))) << "capitals become small letters";
}

TEST(GString, CaseMapping) {
    GString text = StringOf(u"Stra\u00DFe \u00C4\u0416 \xD801\xDC00 1");
    text.ToUpper();
    EXPECT_EQ(UnitsOf(text), u"STRA\u00DFE \u00C4\u0416 \xD801\xDC00 1");
    text.ToLower();
    EXPECT_EQ(UnitsOf(text), u"stra\u00DFe \u00E4\u0436 \xD801\xDC00 1");
    GString none;
    none.ToUpper();
    GString empty("", WinAnsi());
    empty.ToLower();
    EXPECT_EQ(NameOf(none) + NameOf(empty), "NULLWinAnsiEncoding") << "nothing to map, nothing converted";
}

}  // namespace
