#include "framework/core/GStringSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TextForTests.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::vector<std::u16string> UnitsOf(const GTable<GString>& texts) {
    std::vector<std::u16string> result;
    for (const GString& text : texts) result.push_back(UnitsOf(text));
    return result;
}

GTable<GString> TableOf(const std::vector<const char*>& texts) {
    GTable<GString> table;
    for (const char* text : texts) table.Append(GString(text));
    return table;
}

// The definition, word for word, by the strings' own operations.
bool ReferenceLess(const GString& a, const GString& b) {
    const unsigned short digits[] = {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'};
    const long first = a.FindFirst(digits, 10, 0);
    if (first < 0 || first != b.FindFirst(digits, 10, 0)) return a < b;
    if (a.GetSubstring(0, first) != b.GetSubstring(0, first)) return a < b;
    const GString restA = a.GetSubstring(first, -1);
    const GString restB = b.GetSubstring(first, -1);
    if (restA.GetInt32() != restB.GetInt32()) return restA.GetInt32() < restB.GetInt32();
    const long endA = restA.FindFirstNot(digits, 10, 0);
    const long endB = restB.FindFirstNot(digits, 10, 0);
    return ReferenceLess(endA < 0 ? GString() : restA.GetSubstring(endA, -1),
                         endB < 0 ? GString() : restB.GetSubstring(endB, -1));
}

TEST(GStringSupport, NaturalOrder) {
    const struct {
        const char* what;
        const char16_t* less;
        const char16_t* more;
    } rows[] = {
        {"numbers by value", u"file9", u"file10"},
        {"numbers by value in the middle", u"page 9 of 10", u"page 10 of 2"},
        {"the second number", u"1.9", u"1.10"},
        {"leading zeros do not count", u"a007b", u"a7c"},
        {"a number before a letter behind it", u"7", u"7a"},
        {"no digits", u"abc", u"abd"},
        {"a digit against a letter", u"a1", u"ab"},
        {"a digit against the end", u"a", u"a1"},
        {"different beginnings", u"a10", u"b9"},
        {"digits at different places", u"ab1", u"b1"},
        {"the byte order of the rest", u"1\u0100", u"1\u00FF"},
        {"numbers up to the largest", u"n2147483646", u"n2147483647"},
        {"digits of other scripts are letters", u"9", u"\u0661"},
        {"prefix longer than a vector", u"abcdefghijklmnopqrstuvwxyz 9", u"abcdefghijklmnopqrstuvwxyz 10"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_TRUE(GStringSupport::IsLessThanAlphanumeric(StringOf(row.less), StringOf(row.more)));
        EXPECT_FALSE(GStringSupport::IsLessThanAlphanumeric(StringOf(row.more), StringOf(row.less)));
    }
}

TEST(GStringSupport, TextsThatNaturalOrderCannotTellApart) {
    const struct {
        const char* what;
        const char* a;
        const char* b;
    } rows[] = {
        {"nothing", "", ""},
        {"the same", "file10.txt", "file10.txt"},
        {"leading zeros", "a007", "a7"},
        {"numbers beyond 32 bits count as the largest", "n2147483647", "n99999999999999999999"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_FALSE(GStringSupport::IsLessThanAlphanumeric(GString(row.a), GString(row.b)));
        EXPECT_FALSE(GStringSupport::IsLessThanAlphanumeric(GString(row.b), GString(row.a)));
    }
}

TEST(GStringSupport, NaturalOrderAgreesWithItsDefinition) {
    std::mt19937 random(4711);
    const std::u16string_view units = u"0019ab\u0130\u3031.";
    const auto make = [&] {
        std::u16string text(random() % 4 * (random() % 7), u'p');
        for (std::size_t i = random() % 8; i > 0; --i) text += units[random() % units.size()];
        return StringOf(text);
    };
    for (int i = 0; i < 50000; ++i) {
        const GString a = make();
        const GString b = make();
        ASSERT_EQ(GStringSupport::IsLessThanAlphanumeric(a, b), ReferenceLess(a, b))
            << testing::PrintToString(UnitsOf(a)) << testing::PrintToString(UnitsOf(b));
    }
}

TEST(GStringSupport, ComparesForTheUser) {
    EXPECT_EQ(GStringSupport::Compare(GString("abc"), GString("abc"), true), 0);
    EXPECT_EQ(GStringSupport::Compare(GString("abc"), StringOf(u"abd"), true), -1);
    EXPECT_EQ(GStringSupport::Compare(GString("abd"), GString("abc"), true), 1);
    EXPECT_EQ(GStringSupport::Compare(GString("ab"), GString("abc"), true), -1);
    EXPECT_EQ(GStringSupport::Compare(GString("ABC"), GString("abc"), false), 0);
    EXPECT_NE(GStringSupport::Compare(GString("ABC"), GString("abc"), true), 0);
    EXPECT_EQ(GStringSupport::Compare(StringOf(u"\u00C4"), StringOf(u"\u00E4"), false), 0);
    EXPECT_EQ(GStringSupport::Compare(GString(), GString(), true), 0);
    EXPECT_EQ(GStringSupport::Compare(GString(), GString("a"), true), -1);
}

TEST(GStringSupport, EqualityIgnoringCase) {
    EXPECT_TRUE(GStringSupport::IsEqualIgnoreCase(GString("ABC"), StringOf(u"abc")));
    EXPECT_TRUE(GStringSupport::IsEqualIgnoreCase(StringOf(u"\u00C4\u0416"), StringOf(u"\u00E4\u0436")));
    EXPECT_FALSE(GStringSupport::IsEqualIgnoreCase(GString("ABC"), GString("abd")));
    EXPECT_TRUE(GStringSupport::IsEqualIgnoreCase(GString(), GString("")));
}

TEST(GStringSupport, IncreasesNumericSuffixes) {
    const struct {
        const char* text;
        unsigned long maxLength;
        const char* result;
    } rows[] = {
        {"Report", 0, "Report (2)"},
        {"Report (2)", 0, "Report (3)"},
        {"Report (9)", 0, "Report (10)"},
        {"Report (9)", 8, "Repo(10)"},
        {"Report (9)", 11, "Report (10)"},
        {"Report (9)", 10, "Report(10)"},
        {"Report (x)", 0, "Report (x) (2)"},
        {"Report (02)", 0, "Report (02) (2)"},
        {"Report (+2)", 0, "Report (+2) (2)"},
        {"Report (-1)", 0, "Report (0)"},
        {"Report ()", 0, "Report () (2)"},
        {"Report (2) ", 0, "Report (2)  (2)"},
        {"Report ((2)", 0, "Report ((3)"},
        {"(2)", 0, "(2) (2)"},
        {"a(2)", 0, "a(3)"},
        {"a)", 0, "a) (2)"},
        {"", 0, " (2)"},
        {"Report", 10, "Report (2)"},
        {"Report", 9, "Repor (2)"},
        {"Report", 3, " (2)"},
        {"Report (2147483647)", 0, "Report (2147483648)"},
        {"Report (9223372036854775807)", 0, "Report (9223372036854775807) (2)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        GString text(row.text);
        GStringSupport::IncreaseNumericSuffix(text, row.maxLength);
        EXPECT_EQ(UnitsOf(text), UnitsOf(GString(row.result)));
    }
}

TEST(GStringSupport, WhiteSpaceIsExactlySixUnits) {
    for (int unit = 0; unit < 0x10000; ++unit) {
        const bool expected = unit == 8 || unit == 9 || unit == 10 || unit == 11 || unit == 13 || unit == 32;
        ASSERT_EQ(GStringSupport::IsWhiteSpace(static_cast<unsigned short>(unit)), expected) << unit;
        if (unit < 256) {
            ASSERT_EQ(GStringSupport::IsWhiteSpace(static_cast<unsigned char>(unit)), expected) << unit;
        }
    }
}

TEST(GStringSupport, StripsWhiteSpace) {
    const struct {
        const char* text;
        const char* leading;
        const char* trailing;
    } rows[] = {
        {" \t\b\v\r\na b \n", "a b \n", " \t\b\v\r\na b"},
        {"\f a", "\f a", "\f a"},
        {"a", "a", "a"},
        {"  ", "", ""},
        {"", "", ""},
    };
    for (const auto& row : rows) {
        GString text(row.text);
        EXPECT_EQ(&GStringSupport::StripLeadingWhiteSpace(text), &text);
        EXPECT_TRUE(text == GString(row.leading));
        text.Set(row.text);
        EXPECT_EQ(&GStringSupport::StripTrailingWhiteSpace(text), &text);
        EXPECT_TRUE(text == GString(row.trailing));
    }
    GString noBreak = StringOf(u"\u00A0a");
    EXPECT_EQ(UnitsOf(GStringSupport::StripLeadingWhiteSpace(noBreak)), u"\u00A0a");
}

TEST(GStringSupport, EscapesAndQuotes) {
    const struct {
        const char* text;
        const char* escaped;
    } rows[] = {
        {"", ""},
        {"plain", "plain"},
        {"a\tb", "a\\tb"},
        {"a\r\nb\rc\nd\n\re", "a\\nb\\nc\\nd\\ne"},
        {"say \"hi\" it's", "say \\\"hi\\\" it's"},
        {"C:\\x", "C:\\\\x"},
    };
    for (const auto& row : rows) {
        GString text(row.text);
        GStringSupport::ReplaceSpecialChars(text);
        EXPECT_EQ(UnitsOf(text), UnitsOf(GString(row.escaped)));
        text.Set(row.text);
        GStringSupport::QuoteString(text);
        EXPECT_EQ(UnitsOf(text), UnitsOf(GString("\"") + GString(row.escaped) + GString("\"")));
    }
    GString lines("a\r\nb\n\rc\nd");
    GStringSupport::ReplaceSpecialEndCharsWithDefaultChar(lines);
    EXPECT_TRUE(lines == GString("a@b@c@d"));
}

TEST(GStringSupport, SplitsAtWholeSeparators) {
    const struct {
        const char* text;
        const char* separator;
        std::vector<std::u16string> dropped;
        std::vector<std::u16string> kept;
    } rows[] = {
        {"a,b", ",", {u"a", u"b"}, {u"a", u"b"}},
        {"a,,b,", ",", {u"a", u"b"}, {u"a", u"", u"b", u""}},
        {",a", ",", {u"a"}, {u"", u"a"}},
        {"", ",", {}, {u""}},
        {",", ",", {}, {u"", u""}},
        {"a, b,c", ", ", {u"a", u"b,c"}, {u"a", u"b,c"}},
        {"aaa", "aa", {u"a"}, {u"", u"a"}},
        {"abc", "", {u"abc"}, {u"abc"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        GTable<GString> out = TableOf({"old"});
        GStringSupport::SeparatedStringToStringTable(GString(row.text), GString(row.separator), out, false);
        EXPECT_EQ(UnitsOf(out), row.dropped);
        GStringSupport::SeparatedStringToStringTable(GString(row.text), GString(row.separator), out, true);
        EXPECT_EQ(UnitsOf(out), row.kept);
    }
    GTable<GString> own = TableOf({"a;b"});
    GStringSupport::SeparatedStringToStringTable(own[0], GString(";"), own, true);
    EXPECT_EQ(UnitsOf(own), (std::vector<std::u16string>{u"a", u"b"})) << "the text may stand in the table";
}

TEST(GStringSupport, JoinsWithSeparators) {
    GString out("old");
    GStringSupport::StringTableToSeparatedString(TableOf({}), GString(","), out);
    EXPECT_TRUE(out.IsEmpty());
    GStringSupport::StringTableToSeparatedString(TableOf({"a"}), GString(","), out);
    EXPECT_TRUE(out == GString("a"));
    GStringSupport::StringTableToSeparatedString(TableOf({"a", "", "b"}), GString(", "), out);
    EXPECT_TRUE(out == GString("a, , b"));
}

TEST(GStringSupport, SearchesAndReplacesInOrder) {
    GTable<GPair<GString, GString>> pairs;
    pairs.Append({GString("a"), GString("b")});
    pairs.Append({GString("b"), GString("c")});
    pairs.Append({GString(""), GString("x")});
    GString text("ab-ab");
    GStringSupport::SearchAndReplace(text, pairs);
    EXPECT_TRUE(text == GString("cc-cc"));
}

TEST(GStringSupport, ChoosesAnEncodingForText) {
    const GEncoding* ascii = GASCIIEncoding::GetInstance();
    const GEncoding* winAnsi = GWinAnsiEncoding::GetInstance();
    const GEncoding* macRoman = GMacRomanEncoding::GetInstance();
    const GEncoding* utf8 = GUTF8Encoding::GetInstance();
    GBuffer out;
    EXPECT_EQ(GStringSupport::GetBuffer(GString("abc"), out), ascii);
    EXPECT_EQ(BytesOf(out), "abc");
    EXPECT_EQ(GStringSupport::GetBuffer(StringOf(u"\u20AC"), out), winAnsi);
    EXPECT_EQ(BytesOf(out), "\x80");
    EXPECT_EQ(GStringSupport::GetBuffer(StringOf(u"\u4E00"), out), utf8);
    EXPECT_EQ(BytesOf(out), "\xE4\xB8\x80");
    EXPECT_EQ(GStringSupport::GetBuffer(StringOf(u"\u00E4"), out, {nullptr, macRoman, winAnsi}), macRoman);
    EXPECT_EQ(BytesOf(out), "\x8A");
    EXPECT_EQ(GStringSupport::GetBuffer(StringOf(u"\u00E4"), out, {ascii}), utf8);
    EXPECT_EQ(BytesOf(out), "\xC3\xA4");
}

TEST(GStringSupport, ChoosesAnEncodingForBytes) {
    const GEncoding* ascii = GASCIIEncoding::GetInstance();
    const GEncoding* winAnsi = GWinAnsiEncoding::GetInstance();
    const GEncoding* macRoman = GMacRomanEncoding::GetInstance();
    const GEncoding* utf8 = GUTF8Encoding::GetInstance();
    const struct {
        const char* what;
        std::string bytes;
        const GEncoding* encoding;
        std::u16string units;
    } rows[] = {
        {"nothing", "", ascii, u""},
        {"ASCII", "abc", ascii, u"abc"},
        {"UTF-8", "\xC3\xA4", utf8, u"\u00E4"},
        {"WinAnsi", "\xE4", winAnsi, u"\u00E4"},
        {"MacRoman, since WinAnsi lacks a code", "\xE4\x81", macRoman, u"\u2030\u00C5"},
        {"none: the last", "\x81\xF0", macRoman, u"\u00C5@"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GString text;
        EXPECT_EQ(GStringSupport::AssignEncoding(BufferOf(row.bytes), text), row.encoding);
        EXPECT_EQ(text.GetEncoding(), row.encoding);
        EXPECT_EQ(UnitsOf(text), row.units);
    }
    GString text("old");
    EXPECT_EQ(GStringSupport::AssignEncoding(GBuffer("\xE4"), text, {nullptr, utf8, winAnsi}), winAnsi);
    EXPECT_EQ(UnitsOf(text), u"\u00E4");
    EXPECT_EQ(GStringSupport::AssignEncoding(GBuffer("abc"), text, GTable<const GEncoding*>()), nullptr);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(GStringSupport, EmailAddresses) {
    const std::string label63(63, 'a');
    const std::string domain253 = label63 + "." + label63 + "." + label63 + "." + std::string(61, 'a');
    const struct {
        std::string text;
        bool possible;
    } rows[] = {
        {"a@b.de", true},
        {"first.last+tag@mail.example.com", true},
        {"o'neil@example.co.uk", true},
        {std::string(64, 'x') + "@example.com", true},
        {std::string(65, 'x') + "@example.com", false},
        {"a@" + label63 + ".com", true},
        {"a@" + label63 + "a.com", false},
        {"a@" + domain253, true},
        {"a@" + domain253 + "a", false},
        {"a@x-y.com", true},
        {"a@1.2.com", true},
        {"", false},
        {"@", false},
        {"a", false},
        {"@b.de", false},
        {"a@", false},
        {"a@b", false},
        {"a@b@c.de", false},
        {"a b@c.de", false},
        {".a@b.de", false},
        {"a.@b.de", false},
        {"a..b@c.de", false},
        {"a@.de", false},
        {"a@b.", false},
        {"a@b..de", false},
        {"a@-b.de", false},
        {"a@b-.de", false},
        {"a@b_c.de", false},
        {"a@127.0.0.1", false},
        {"a@b.de ", false},
        {"\"a\"@b.de", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(GStringSupport::IsPossibleEmailAddress(GString(row.text.c_str())), row.possible)
            << row.text;
    EXPECT_TRUE(GStringSupport::IsPossibleEmailAddress(StringOf(u"j\u00FCrgen@b\u00FCcher.de")));
    EXPECT_FALSE(GStringSupport::IsPossibleEmailAddress(StringOf(u"a@b\u3002de")));
    EXPECT_FALSE(GStringSupport::IsPossibleEmailAddress(StringOf(u"a\0@b.de"sv)));
}

TEST(GStringSupport, UnicodeRanges) {
    EXPECT_TRUE(GStringSupport::GetUnicodeRange(GStringSupport::cBasicLatin) == GRange(0, 0x7F));
    EXPECT_TRUE(GStringSupport::GetUnicodeRange(GStringSupport::cCyrillic) == GRange(0x400, 0x4FF));
    EXPECT_TRUE(GStringSupport::GetUnicodeRange(GStringSupport::cHalfwidthAndFullwidthForms) ==
                GRange(0xFF00, 0xFFEF));
    EXPECT_TRUE(GStringSupport::GetUnicodeRange(static_cast<GStringSupport::RangeSpecifier>(31)).IsEmpty());
}

TEST(GStringSupport, UnicodeRangesDoNotOverlap) {
    long last = -1;
    for (int i = GStringSupport::cBasicLatin; i <= GStringSupport::cHalfwidthAndFullwidthForms; ++i) {
        const GRange range = GStringSupport::GetUnicodeRange(static_cast<GStringSupport::RangeSpecifier>(i));
        EXPECT_GT(range.GetFirst(), last) << i;
        EXPECT_FALSE(range.IsEmpty()) << i;
        last = range.GetLast();
    }
}

TEST(GStringSupport, ScramblingCanBeUndone) {
    for (const std::u16string_view units : {u"p"sv, u"secret"sv, u"\0\uFFFF\xD83D e\u0301"sv}) {
        GString text;
        for (const char16_t unit : units) text += static_cast<unsigned short>(unit);
        GStringSupport::Scramble(text);
        EXPECT_EQ(text.Find(GString("secret")), -1);
        for (long i = 0; i < text.GetLength(); ++i) EXPECT_TRUE(text[i] > ' ' && text[i] < 0x7F);
        EXPECT_TRUE(GStringSupport::DeScramble(text));
        EXPECT_EQ(UnitsOf(text), units);
    }
    GString empty;
    GStringSupport::Scramble(empty);
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_TRUE(GStringSupport::DeScramble(empty));
}

TEST(GStringSupport, ScramblingIsTheSameEverywhere) {
    GString text("Ab");
    GStringSupport::Scramble(text);
    EXPECT_EQ(UnitsOf(text), u"$1$5B82431202EB");
}

TEST(GStringSupport, OnlyScrambledTextsAreUndone) {
    GString scrambled("Ab");
    GStringSupport::Scramble(scrambled);
    const std::u16string units = UnitsOf(scrambled);
    for (std::size_t length = 1; length < units.size(); ++length) {
        GString part = StringOf(units.substr(0, length));
        EXPECT_FALSE(GStringSupport::DeScramble(part)) << length;
        EXPECT_EQ(UnitsOf(part), units.substr(0, length));
    }
    for (std::size_t i = 0; i < units.size(); ++i) {
        std::u16string changed = units;
        changed[i] = changed[i] == u'0' ? u'1' : u'0';
        GString text = StringOf(changed);
        EXPECT_FALSE(GStringSupport::DeScramble(text)) << i;
    }
    GString plain("plain text");
    EXPECT_FALSE(GStringSupport::DeScramble(plain));
}

}  // namespace
