#include <gtest/gtest.h>

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
const GEncoding* UTF8() {
    return GUTF8Encoding::GetInstance();
}

std::string NameOf(const GString& text) {
    return BytesOf(text.GetEncodingName());
}

TEST(GString, EqualityComparesTextsNotBytes) {
    const struct {
        const char* what;
        GString a;
        GString b;
        bool equal;
    } rows[] = {
        {"ASCII and UTF-16", GString("abc"), StringOf(u"abc"), true},
        {"WinAnsi and UTF-8", GString("\xE9", WinAnsi()), GString("\xC3\xA9", UTF8()), true},
        {"the same bytes in two encodings", GString("\xE9", WinAnsi()),
         GString("\xE9", GMacRomanEncoding::GetInstance()), false},
        {"composed and not", GString("e\xCC\x81", UTF8()), StringOf(u"\u00E9"), true},
        {"nothing and an empty text", GString(), GString(""), true},
        {"nothing and a text", GString(), GString("a"), false},
        {"a shorter text", GString("ab"), GString("abc"), false},
        {"case", GString("abc"), GString("abC"), false},
        {"a zero in it", GString(BufferOf("a\0b"sv), WinAnsi()), GString("a"), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.a == row.b, row.equal);
        EXPECT_EQ(row.b == row.a, row.equal);
        EXPECT_EQ(row.a != row.b, !row.equal);
    }
}

TEST(GString, ComparingConvertsNeitherText) {
    const GString a("\xE9", WinAnsi());
    const GString b("\xC3\xA9", UTF8());
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a < b);
    EXPECT_EQ(NameOf(a), "WinAnsiEncoding");
    EXPECT_EQ(NameOf(b), "UTF-8Encoding");
}

TEST(GString, OrderIsThatOfLittleEndianBytes) {
    const struct {
        const char* what;
        GString less;
        GString more;
    } rows[] = {
        {"letters", GString("abc"), GString("abd")},
        {"a shorter text", GString("ab"), GString("abc")},
        {"nothing", GString(), GString("a")},
        {"capitals first", GString("Z"), GString("a")},
        {"the low byte decides", StringOf(u"\u0100"), StringOf(u"\u00FF")},
        {"then the high byte", StringOf(u"\u0141"), StringOf(u"\u0241")},
        {"a mixed pair", GString("\xE9", WinAnsi()), StringOf(u"\u00EA")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_TRUE(row.less < row.more);
        EXPECT_FALSE(row.more < row.less);
        EXPECT_TRUE(row.less <= row.more);
        EXPECT_FALSE(row.more <= row.less);
        EXPECT_TRUE(row.more > row.less);
        EXPECT_FALSE(row.less > row.more);
        EXPECT_TRUE(row.more >= row.less);
        EXPECT_FALSE(row.less >= row.more);
        EXPECT_TRUE(GString::IsLessThan(row.less, row.more));
        EXPECT_FALSE(row.less < row.less);
        EXPECT_TRUE(row.less <= row.less);
        EXPECT_TRUE(row.less >= row.less);
    }
}

TEST(GString, OrderIgnoringCase) {
    EXPECT_TRUE(GString::IsLessThanIgnoreCase(GString("a"), GString("B")));
    EXPECT_FALSE(GString::IsLessThanIgnoreCase(GString("B"), GString("a")));
    EXPECT_FALSE(GString::IsLessThanIgnoreCase(GString("ABC"), GString("abc")));
    EXPECT_FALSE(GString::IsLessThanIgnoreCase(GString("abc"), GString("ABC")));
    EXPECT_TRUE(GString::IsLessThanIgnoreCase(GString("_"), GString("Z"))) << "capitals become small letters";
}

TEST(GString, HashDoesNotDependOnTheEncoding) {
    EXPECT_EQ(GString("abc").GetHash(), StringOf(u"abc").GetHash());
    EXPECT_EQ(GString("\xE9", WinAnsi()).GetHash(), GString("\xC3\xA9", UTF8()).GetHash());
    EXPECT_EQ(GString().GetHash(), 0u);
    EXPECT_EQ(GString("A").GetHash(), 0x610u) << "((2 rotl 4) ^ 0x41) rotl 4, over two bytes";
}

TEST(GString, CaseMapping) {
    GString text = StringOf(u"Stra\u00DFe \u00C4\u0416 \xD801\xDC00 1");
    text.ToUpper();
    EXPECT_EQ(UnitsOf(text), u"STRA\u00DFE \u00C4\u0416 \xD801\xDC00 1");
    text.ToLower();
    EXPECT_EQ(UnitsOf(text), u"stra\u00DFe \u00E4\u0436 \xD801\xDC00 1");
    GString none;
    none.ToUpper();
    EXPECT_EQ(NameOf(none), "NULL");
    GString empty("", WinAnsi());
    empty.ToLower();
    EXPECT_EQ(NameOf(empty), "WinAnsiEncoding");
}

}  // namespace
