#include "framework/core/GString.h"

#include <gtest/gtest.h>

#include <tuple>

#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GException.h"
#include "framework/core/GMacExpertEncoding.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GPDFDocEncoding.h"
#include "framework/core/GTable.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TextForTests.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

const GEncoding* WinAnsi() {
    return GWinAnsiEncoding::GetInstance();
}
const GEncoding* UTF8() {
    return GUTF8Encoding::GetInstance();
}
const GEncoding* Unicode() {
    return GUnicodeEncoding::GetInstance();
}

std::string NameOf(const GString& text) {
    return BytesOf(text.GetEncodingName());
}

// A text over memory that is not its own.
GString Borrowed(const unsigned char* bytes, long length, long arraySize) {
    GBuffer borrowed;
    borrowed.SetFromStatic(bytes, length, arraySize);
    return GString(borrowed, Unicode(), true);
}

TEST(GString, EveryWayOfMakingOneSetsBytesAndEncoding) {
    const GBuffer bytes = BufferOf("a\xE9"sv);
    const auto* raw = reinterpret_cast<const unsigned char*>("a\xE9z");
    const char* const null = nullptr;
    const unsigned short units[] = {'e', 0x0301, 'x'};
    const std::tuple<const char*, GString, std::string, const char*> rows[] = {
        {"nothing", GString(), "", "NULL"},
        {"a literal", GString("ab"), "ab", "ASCIIEncoding"},
        {"a null pointer", GString(null), "", "ASCIIEncoding"},
        {"a text in an encoding", GString("a\xE9", WinAnsi()), "a\xE9", "WinAnsiEncoding"},
        {"a null pointer in an encoding", GString(null, WinAnsi()), "", "WinAnsiEncoding"},
        {"a text without encoding", GString("ab", nullptr), "", "NULL"},
        {"a text of units", GString(reinterpret_cast<const char*>(u"a"), Unicode()), "a\0"s,
         "UnicodeEncoding"},
        {"bytes in an encoding", GString(raw, 2, WinAnsi()), "a\xE9", "WinAnsiEncoding"},
        {"bytes of negative length", GString(raw, -1, WinAnsi()), "", "WinAnsiEncoding"},
        {"null bytes", GString(nullptr, 5, WinAnsi()), "", "WinAnsiEncoding"},
        {"a buffer in an encoding", GString(bytes, WinAnsi()), "a\xE9", "WinAnsiEncoding"},
        {"a buffer, at once UTF-16", GString(bytes, WinAnsi(), false), "a\0\xE9\0"s, "UnicodeEncoding"},
        {"UTF-8", GString::FromUTF8("\xC3\xA9"), "\xC3\xA9", "UTF-8Encoding"},
        {"UTF-16, composed", GString::FromUTF16(units, 2), "\xE9\0"s, "UnicodeEncoding"},
        {"UTF-16 of negative length", GString::FromUTF16(units, -3), "", "UnicodeEncoding"},
        {"no UTF-16", GString::FromUTF16(nullptr, 5), "", "UnicodeEncoding"},
    };
    for (const auto& [what, text, expected, encoding] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(BytesOf(text.GetEncodedBuffer()), expected);
        EXPECT_EQ(NameOf(text), encoding);
        EXPECT_EQ(text.IsEmpty(), expected.empty());
    }
}

TEST(GString, SetReplacesBytesAndEncoding) {
    GString text = StringOf(u"\u4E00");
    text.Set("ab");
    EXPECT_EQ(BytesOf(text.GetEncodedBuffer()) + NameOf(text), "abASCIIEncoding");
    text.Set(GString::FromUTF8("\xC3\xA9"));
    EXPECT_EQ(BytesOf(text.GetEncodedBuffer()) + NameOf(text), "\xC3\xA9UTF-8Encoding");
    text.Set(text.GetEncodedBuffer(), WinAnsi(), false);
    EXPECT_EQ(BytesOf(text.GetEncodedBuffer()) + NameOf(text), "\xC3\0\xA9\0UnicodeEncoding"s);
    text = GString();
    EXPECT_EQ(NameOf(text), "NULL");
}

TEST(GString, IsConvertedOnceAndComposedWhenCharactersAreNeeded) {
    const GString text("e\xCC\x81\xE4\xB8\x80", UTF8());
    EXPECT_EQ(UnitsOf(text), u"\u00E9\u4E00");
    EXPECT_EQ(NameOf(text), "UTF-8Encoding") << "a conversion out changes nothing";
    EXPECT_EQ(text.GetLength(), 2);
    EXPECT_EQ(NameOf(text), "UnicodeEncoding");
    EXPECT_EQ(text[0], 0x00E9);
    EXPECT_EQ(text[1], 0x4E00);
    EXPECT_EQ((GString("e") + StringOf(u"\u0301")).GetLength(), 2) << "joining does not compose";
}

TEST(GString, WithoutEncodingBytesBecomeUTF16AsTheyAre) {
    GString text(BufferOf(u"ab"), nullptr);
    EXPECT_EQ(UnitsOf(text), u"") << "nothing is known of them yet";
    EXPECT_EQ(text.GetLength(), 2);
    EXPECT_EQ(UnitsOf(text), u"ab");
}

TEST(GString, TheSharedEmptyStringIsNeverConverted) {
    EXPECT_EQ(GString::cEmptyString.GetLength(), 0);
    EXPECT_EQ(GString::cEmptyString.GetUTF16Ptr()[0], 0);
    EXPECT_EQ(GString::cEmptyString.Find(GString("a")), -1);
    EXPECT_EQ((GString("a") + GString::cEmptyString).GetLength(), 1);
    EXPECT_EQ(NameOf(GString::cEmptyString), "NULL");
}

TEST(GString, AnOddLastByteIsDropped) {
    GString text(BufferOf("a\0b"sv), Unicode(), true);
    EXPECT_EQ(text.GetLength(), 1);
    text += GString("c");
    EXPECT_EQ(UnitsOf(text), u"ac");
    GString lone(BufferOf("x"sv), Unicode(), true);
    EXPECT_EQ(lone[0], 0);
    lone.ToUpper();
    EXPECT_EQ(lone.GetLength(), 0);
}

TEST(GString, CopiesAreIndependent) {
    GString first("abc");
    GString second(first);
    second.SetChar(0, 'x');
    EXPECT_TRUE(first == GString("abc"));
    first = second;
    first += static_cast<unsigned short>(0x4E00);
    EXPECT_TRUE(second == GString("xbc"));
    first.Swap(second);
    const GString moved(std::move(second));
    EXPECT_EQ(UnitsOf(moved + first), u"xbc\u4E00xbc");
    EXPECT_TRUE(GString() + first + GString() == first);
}

TEST(GString, BorrowedBytesAreNeverWritten) {
    static constexpr char16_t cText[] = u"abc-";
    const auto* bytes = reinterpret_cast<const unsigned char*>(cText);
    GString text = Borrowed(bytes, 6, 10);
    EXPECT_EQ(text.GetEncodedBuffer().GetRawData(), bytes);
    text.SetChar(1, 'X');
    text.ToUpper();
    text.Replace(0, 'A', 'Y');
    EXPECT_EQ(UnitsOf(text), u"YXC");
    GString longer = Borrowed(bytes, 6, 10);
    longer.SetLength(4);
    EXPECT_EQ(UnitsOf(longer), u"abc\0"sv) << "nor is what lies behind them shown";
    EXPECT_EQ(std::u16string_view(cText), u"abc-");
}

TEST(GString, UTF16PointerIsZeroTerminatedAndAligned) {
    EXPECT_EQ(GString().GetUTF16Ptr()[0], 0);
    EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(GString("ab").GetUTF16Ptr())), u"ab");
    // Two units at an odd address, with a third one behind them.
    alignas(2) static constexpr unsigned char cBytes[] = {'-', 'a', 0, 'b', 0, 'c', 'c'};
    const GString odd = Borrowed(cBytes + 1, 4, 6);
    EXPECT_EQ(odd[1], 'b');
    EXPECT_EQ(odd.Find(GString("b")), 1);
    const unsigned short* units = odd.GetUTF16Ptr();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(units) % 2, 0u);
    EXPECT_EQ(units[2], 0);
}

TEST(GString, PositionsOutOfRangeReadAsZeroAndAreNotWritten) {
    GString text("abc");
    for (const auto& [position, unit] : {std::pair(0L, 'a'), {2, 'c'}, {3, 0}, {-1, 0}, {0x7FFFFFFF, 0}})
        EXPECT_EQ(text[position], unit) << position;
    for (const long position : {2L, 3L, -1L}) text.SetChar(position, 'z');
    EXPECT_TRUE(text == GString("abz"));
}

TEST(GString, LengthCanBeSet) {
    GString text("abc");
    for (const auto& [length, units] : {std::pair(2, u"ab"sv), {4, u"ab\0\0"sv}, {-1, u""sv}, {1, u"\0"sv}}) {
        text.SetLength(length);
        EXPECT_EQ(UnitsOf(text), units) << length;
        EXPECT_THROW(text.SetLength(0x7FFFFFFF), GMemoryException);
        EXPECT_EQ(UnitsOf(text), units) << "as it was";
    }
}

TEST(GString, InsertsAndRemoves) {
    const std::pair<long, const char*> inserts[] = {
        {0, "-abc"}, {1, "a-bc"}, {3, "abc-"}, {4, "abc-"}, {-1, "-abc"}};
    for (const auto& [position, result] : inserts) {
        GString unit("abc");
        unit.Insert(position, static_cast<unsigned short>('-'));
        EXPECT_TRUE(unit == GString(result)) << position;
        GString text("abc");
        text.Insert(position, GString("-"));
        EXPECT_TRUE(text == GString(result)) << position;
    }
    const std::tuple<long, long, const char*> removals[] = {
        {0, 1, "bc"},  {1, 1, "ac"},   {2, 1, "ab"},  {1, 9, "a"},    {0, 3, ""},
        {3, 1, "abc"}, {-1, 2, "abc"}, {1, 0, "abc"}, {1, -1, "abc"}, {1, 0x7FFFFFFF, "a"}};
    for (const auto& [start, count, left] : removals) {
        GString text("abc");
        text.Remove(start, count);
        EXPECT_TRUE(text == GString(left)) << start << ", " << count;
    }
}

TEST(GString, ATextMayBeItsOwnArgument) {
    GString text("ab");
    text += text;
    EXPECT_TRUE(text == GString("abab"));
    text.Insert(1, text);
    EXPECT_TRUE(text == GString("aababbab"));
    EXPECT_TRUE(text.Replace(0, text, text));
    EXPECT_TRUE(text == GString("aababbab"));
    EXPECT_TRUE(text.Replace(0, text, GString("a-a")));
    EXPECT_TRUE(text.Replace(0, GString("-"), text));
    EXPECT_TRUE(text == GString("aa-aa"));
    text.Set("<%1>");
    text.SubstituteParams(text);
    EXPECT_TRUE(text == GString("<<%1>>"));
    text.GetSubstring(1, 4, text);
    EXPECT_TRUE(text == GString("<%1>"));
    text.Set(text);
    EXPECT_EQ(text.Find(text), 0);
}

TEST(GString, ReplacesEveryOccurrence) {
    const std::tuple<const char*, const char*, long, const char*, const char*, const char*> rows[] = {
        {"none", "abc", 0, "x", "y", nullptr},
        {"several", "abcabc", 0, "bc", "x", "axax"},
        {"from a position on", "abcabc", 2, "bc", "x", "abcax"},
        {"to something longer", "aa", 0, "a", "bab", "babbab"},
        {"to nothing", "abcabc", 0, "b", "", "acac"},
        {"not twice in one place", "aaa", 0, "aa", "b", "ba"},
        {"an empty text", "abc", 0, "", "x", nullptr},
        {"from before the start", "abc", -3, "a", "x", "xbc"},
        {"from behind the end", "abc", 4, "a", "x", nullptr},
    };
    for (const auto& [what, before, start, find, with, after] : rows) {
        SCOPED_TRACE(what);
        GString text(before);
        EXPECT_EQ(text.Replace(start, GString(find), GString(with)), after != nullptr);
        EXPECT_TRUE(text == GString(after != nullptr ? after : before));
    }
    GString text("abab");
    EXPECT_TRUE(text.Replace(1, static_cast<unsigned short>('a'), static_cast<unsigned short>('x')));
    EXPECT_TRUE(text == GString("abxb"));
    EXPECT_FALSE(text.Replace(0, static_cast<unsigned short>('q'), static_cast<unsigned short>('x')));
}

TEST(GString, SubstringsAreCut) {
    const std::tuple<long, long, const char*> rows[] = {{0, 2, "ab"},  {1, 2, "bc"},  {1, 9, "bc"},
                                                        {1, -1, "bc"}, {3, 1, ""},    {4, 1, ""},
                                                        {0, 0, ""},    {-1, 2, "ab"}, {2, 0x7FFFFFFF, "c"}};
    for (const auto& [start, count, part] : rows)
        EXPECT_TRUE(GString("abc").GetSubstring(start, count) == GString(part)) << start << ", " << count;
}

TEST(GString, Finds) {
    const GString text("abcabc");
    const unsigned short set[] = {'x', 'c', 'b'};
    const std::tuple<const char*, long, long> rows[] = {
        {"a text where the search starts", text.Find(GString("bc"), 1), 1},
        {"a text behind", text.Find(GString("bc"), 2), 4},
        {"a text beyond the last", text.Find(GString("bc"), 5), -1},
        {"an empty text", text.Find(GString(""), 3), 0},
        {"an empty text in nothing", GString().Find(GString(), 0), 0},
        {"from before the start", text.Find(GString("a"), -5), 0},
        {"whole units only", StringOf(u"\u0141\u4101").Find(GString("A")), -1},
        {"half a surrogate pair", StringOf(u"\xD83D\xDE00").Find(StringOf(u"\xDE00")), 1},
        {"a unit", text.FindFirst('b', 2), 4},
        {"a unit beyond the end", text.FindFirst('b', 0x7FFFFFFF), -1},
        {"one of a set", text.FindFirst(set, 3, 3), 4},
        {"one of an empty set", text.FindFirst(set, 0, 0), -1},
        {"another unit", text.FindFirstNot('c', 2), 3},
        {"another unit of equal ones", GString("aaa").FindFirstNot('a', 0), -1},
        {"none of a set", text.FindFirstNot(set, 3, 1), 3},
        {"the last where the search ends", text.FindLast('a', 3), 3},
        {"the last before", text.FindLast('a', 2), 0},
        {"the last beyond the end", text.FindLast('a', 0x7FFFFFFF), 3},
        {"the last before the start", text.FindLast('a', -1), -1},
    };
    for (const auto& [what, found, expected] : rows) EXPECT_EQ(found, expected) << what;
}

TEST(GString, ConvertsOut) {
    const std::tuple<const char*, GString, const GEncoding*, std::string, long> rows[] = {
        {"no encoding", GString(), WinAnsi(), "", 1},
        {"no target", GString("ab"), nullptr, "", 1},
        {"the same encoding, valid or not", GString("\xFF", UTF8()), UTF8(), "\xFF", 1},
        {"invalid input stops", GString("ab\xFF", UTF8()), Unicode(), "a\0b\0"s, 4},
        {"a character is missing", GString("\xE2\x82\xAC", UTF8()), GMacRomanEncoding::GetInstance(), "@", 2},
        {"all characters are there", GString("\xE2\x82\xAC", UTF8()), WinAnsi(), "\x80", 1},
    };
    for (const auto& [what, text, target, bytes, result] : rows) {
        SCOPED_TRACE(what);
        GBuffer out("old");
        EXPECT_EQ(text.GetBuffer(out, target), result);
        EXPECT_EQ(BytesOf(out), bytes);
        EXPECT_EQ(BytesOf(text.GetBuffer(target)), bytes);
    }
}

TEST(GString, CompatibleBytes) {
    const std::tuple<const char*, std::string_view, const GEncoding*, bool> rows[] = {
        {"not ASCII", "\x80", GASCIIEncoding::GetInstance(), false},
        {"WinAnsi", "\x80", WinAnsi(), true},
        {"not WinAnsi", "\x81", WinAnsi(), false},
        {"not MacRoman", "\xF0", GMacRomanEncoding::GetInstance(), false},
        {"not PDFDoc", "\x9F", GPDFDocEncoding::GetInstance(), false},
        {"UTF-8", "\xC3\xA9", UTF8(), true},
        {"not UTF-8", "\xC3", UTF8(), false},
        {"a zero byte in UTF-8", "\0"sv, UTF8(), false},
        {"half a unit", "a"sv, Unicode(), false},
        {"others are not asked", "\x01\x7F", GMacExpertEncoding::GetInstance(), true},
        {"no encoding", "abc", nullptr, true},
    };
    for (const auto& [what, bytes, encoding, compatible] : rows)
        EXPECT_EQ(GString::AreCompatible(BufferOf(bytes), encoding), compatible) << what;
}

TEST(GString, NormalizeKeepsTheEncodingOrNotAndClearDoes) {
    for (const auto& [text, kept] :
         {std::pair(GString("a", WinAnsi()), "WinAnsiEncoding"), {GString(), "NULL"}}) {
        GString normalized(text);
        normalized.Normalize(true);
        EXPECT_EQ(NameOf(normalized), kept);
        normalized.Clear();
        EXPECT_TRUE(normalized.IsEmpty());
        EXPECT_EQ(NameOf(normalized), kept);
        normalized.Normalize(false);
        EXPECT_EQ(NameOf(normalized), "UnicodeEncoding");
    }
}

TEST(GString, SubstitutesParameters) {
    const std::tuple<const char*, const char*, std::vector<const char*>, const char*> rows[] = {
        {"by number", "%2 of %1", {"3", "7"}, "7 of 3"},
        {"a number twice", "%1%1", {"a", "b"}, "aa"},
        {"a number without a parameter", "%3", {"a", "b"}, "%3"},
        {"number zero", "%0", {"a", "b"}, "%0"},
        {"in order and by number", "%s %1 %s %s", {"a", "b"}, "a a b %s"},
        {"at the end", "100%", {"a", "b"}, "100%"},
        {"two signs", "%%1", {"a", "b"}, "%a"},
        {"anything else", "%d %x %", {"a", "b"}, "%d %x %"},
        {"a marker in a parameter", "%1 %2", {"%2", "%1"}, "%2 %1"},
        {"halves of a marker", "%%1", {"1", "b"}, "%1"},
        {"an empty parameter", "<%1>", {"", "b"}, "<>"},
        {"nothing", "", {"a", "b"}, ""},
        {"the ninth", "%9", {"1", "2", "3", "4", "5", "6", "7", "8", "i"}, "i"},
        {"two digits are one and a digit", "%10", {"x", "y"}, "x0"},
    };
    for (const auto& [what, before, parameters, after] : rows) {
        SCOPED_TRACE(what);
        const std::vector<GString> texts(parameters.begin(), parameters.end());
        GTable<const GString*> table;
        for (const GString& text : texts) table.Append(&text);
        GString text(before);
        EXPECT_EQ(&text.SubstituteParams(table), &text);
        EXPECT_TRUE(text == GString(after));
    }
}

TEST(GString, TakesParametersInEveryForm) {
    const GString a("a"), b("b"), c("c");
    const auto text = [] { return GString("%1-%s-%3"); };
    EXPECT_TRUE(text().SubstituteParams(a) == GString("a-a-%3"));
    EXPECT_TRUE(text().SubstituteParams(b, a) == GString("b-b-%3"));
    EXPECT_TRUE(text().SubstituteParams(a, b, c) == GString("a-a-c"));
    EXPECT_TRUE(text().SubstituteParams(3, &c, &b, &a) == GString("c-c-a"));
    EXPECT_TRUE(text().SubstituteParams(0) == text());
    EXPECT_TRUE(text().SubstituteParams(GTable<const GString*>{nullptr, &b}) == GString("%1-%s-%3"));
    EXPECT_EQ(UnitsOf(GString("e%1%2").SubstituteParams(StringOf(u"\u0301"), GString("\xE9", WinAnsi()))),
              u"\u00E9\u00E9")
        << "the result is composed";
}

TEST(GString, CountsSubstitutes) {
    const std::pair<const char*, long> rows[] = {{"", 0},     {"%", 0},   {"%1", 1},   {"%0", 0},
                                                 {"%9%s", 2}, {"%%1", 1}, {"100%", 0}, {"%S %d", 0}};
    for (const auto& [text, count] : rows) EXPECT_EQ(GString(text).GetNumSubstitutes(), count) << text;
}

}  // namespace
