#include "framework/core/GString.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GMacExpertEncoding.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GPDFDocEncoding.h"
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

TEST(GString, EveryWayOfMakingOneSetsBytesAndEncoding) {
    const GBuffer bytes = BufferOf("a\xE9"sv);
    const auto* raw = reinterpret_cast<const unsigned char*>("a\xE9z");
    const char* null = nullptr;
    const struct {
        const char* what;
        GString text;
        std::string bytes;
        const char* encoding;
    } rows[] = {
        {"nothing", GString(), "", "NULL"},
        {"a literal", GString("ab"), "ab", "ASCIIEncoding"},
        {"a null pointer", GString(null), "", "ASCIIEncoding"},
        {"a text in an encoding", GString("a\xE9", WinAnsi()), "a\xE9", "WinAnsiEncoding"},
        {"a null pointer in an encoding", GString(null, WinAnsi()), "", "WinAnsiEncoding"},
        {"a text without encoding", GString("ab", nullptr), "", "NULL"},
        {"a text, at once UTF-16", GString("a", WinAnsi(), false), "a\0"s, "UnicodeEncoding"},
        {"bytes in an encoding", GString(raw, 2, WinAnsi()), "a\xE9", "WinAnsiEncoding"},
        {"bytes of negative length", GString(raw, -1, WinAnsi()), "", "WinAnsiEncoding"},
        {"null bytes", GString(static_cast<const unsigned char*>(nullptr), 5, WinAnsi()), "",
         "WinAnsiEncoding"},
        {"a buffer in an encoding", GString(bytes, WinAnsi()), "a\xE9", "WinAnsiEncoding"},
        {"a buffer, at once UTF-16", GString(bytes, WinAnsi(), false), "a\0\xE9\0"s, "UnicodeEncoding"},
        {"a number", GString(12), "12", "ASCIIEncoding"},
        {"UTF-8", GString::FromUTF8("\xC3\xA9"), "\xC3\xA9", "UTF-8Encoding"},
        {"no UTF-8", GString::FromUTF8(nullptr), "", "UTF-8Encoding"},
        {"no UTF-16", GString::FromUTF16(nullptr, 5), "", "UnicodeEncoding"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(BytesOf(row.text.GetEncodedBuffer()), row.bytes);
        EXPECT_EQ(NameOf(row.text), row.encoding);
        EXPECT_EQ(row.text.IsEmpty(), row.bytes.empty());
    }
    const unsigned short units[] = {'e', 0x0301, 'x'};
    EXPECT_EQ(UnitsOf(GString::FromUTF16(units, 2)), u"\u00E9");
    EXPECT_EQ(UnitsOf(GString::FromUTF16(units, -3)), u"");
    EXPECT_EQ(UnitsOf(GString(reinterpret_cast<const char*>(u"ab"), Unicode())), u"ab");
}

TEST(GString, SetReplacesBytesAndEncoding) {
    GString text = StringOf(u"\u4E00");
    text.Set("ab");
    EXPECT_EQ(NameOf(text), "ASCIIEncoding");
    EXPECT_EQ(BytesOf(text.GetEncodedBuffer()), "ab");
    text.Set(GString::FromUTF8("\xC3\xA9"));
    EXPECT_EQ(NameOf(text), "UTF-8Encoding");
    text.Set(GBuffer("\xE9"), WinAnsi(), false);
    EXPECT_EQ(UnitsOf(text), u"\u00E9");
    EXPECT_EQ(NameOf(text), "UnicodeEncoding");
    text = GString();
    EXPECT_EQ(NameOf(text), "NULL");
}

TEST(GString, IsConvertedOnceWhenCharactersAreNeeded) {
    const GString text("\xC3\xA9\xE4\xB8\x80", UTF8());
    EXPECT_EQ(NameOf(text), "UTF-8Encoding");
    EXPECT_EQ(text.GetLength(), 2);
    EXPECT_EQ(NameOf(text), "UnicodeEncoding");
    EXPECT_EQ(text[0], 0x00E9);
    EXPECT_EQ(text[1], 0x4E00);
}

TEST(GString, ConversionComposes) {
    EXPECT_EQ(GString("e\xCC\x81", UTF8()).GetLength(), 1);
    EXPECT_EQ(UnitsOf(GString("e\xCC\x81", UTF8())), u"\u00E9") << "GetBuffer as well";
    EXPECT_EQ(StringOf(u"e\u0301").GetLength(), 1);
    const GString both = GString("e") + StringOf(u"\u0301");
    EXPECT_EQ(both.GetLength(), 2) << "joining does not";
}

TEST(GString, WithoutEncodingBytesBecomeUTF16AsTheyAre) {
    GString text(BufferOf(u"ab"), nullptr);
    EXPECT_EQ(UnitsOf(text), u"") << "nothing is known of them yet";
    EXPECT_EQ(text.GetLength(), 2);
    EXPECT_EQ(UnitsOf(text), u"ab");
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
    EXPECT_TRUE(second == GString("xbc"));
    first = second;
    first += GString("d");
    EXPECT_TRUE(second == GString("xbc"));
    const GString moved(std::move(first));
    EXPECT_TRUE(moved == GString("xbcd"));
}

TEST(GString, BorrowedBytesAreNeverWritten) {
    static constexpr char16_t cText[] = u"abc";
    GBuffer borrowed;
    borrowed.SetFromStatic(reinterpret_cast<const unsigned char*>(cText), 6);
    GString text(borrowed, Unicode(), true);
    EXPECT_EQ(static_cast<const void*>(text.GetEncodedBuffer().GetRawData()),
              static_cast<const void*>(cText));
    text.SetChar(1, 'X');
    text.ToUpper();
    text.Replace(0, 'A', 'Y');
    EXPECT_EQ(UnitsOf(text), u"YXC");
    EXPECT_EQ(std::u16string_view(cText), u"abc");
}

TEST(GString, UTF16PointerIsZeroTerminatedAndAligned) {
    EXPECT_EQ(GString().GetUTF16Ptr()[0], 0);
    const GString text("ab");
    const unsigned short* units = text.GetUTF16Ptr();
    EXPECT_EQ(units[0], 'a');
    EXPECT_EQ(units[1], 'b');
    EXPECT_EQ(units[2], 0);
    // Two units at an odd address, with a third one behind them.
    alignas(2) static constexpr unsigned char cBytes[] = {'-', 'a', 0, 'b', 0, 'c', 'c'};
    GBuffer borrowed;
    borrowed.SetFromStatic(cBytes + 1, 4, 6);
    const GString odd(borrowed, Unicode(), true);
    EXPECT_EQ(odd[1], 'b');
    EXPECT_EQ(odd.Find(GString("b")), 1);
    units = odd.GetUTF16Ptr();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(units) % 2, 0u);
    EXPECT_EQ(units[2], 0);
}

TEST(GString, CharactersOutOfRangeReadAsZeroAndAreNotWritten) {
    GString text("abc");
    EXPECT_EQ(text[0], 'a');
    EXPECT_EQ(text[2], 'c');
    EXPECT_EQ(text[3], 0);
    EXPECT_EQ(text[-1], 0);
    EXPECT_EQ(text[0x7FFFFFFF], 0);
    text.SetChar(2, 'z');
    text.SetChar(3, 'x');
    text.SetChar(-1, 'x');
    EXPECT_TRUE(text == GString("abz"));
}

TEST(GString, LengthCanBeSet) {
    GString text("abc");
    text.SetLength(2);
    EXPECT_TRUE(text == GString("ab"));
    text.SetLength(4);
    EXPECT_EQ(UnitsOf(text), u"ab\0\0"sv);
    text.SetLength(-1);
    EXPECT_TRUE(text.IsEmpty());
    text.SetLength(1);
    EXPECT_EQ(UnitsOf(text), u"\0"sv);
}

TEST(GString, InsertsAndRemoves) {
    const struct {
        long position;
        const char* inserted;
    } inserts[] = {{0, "-abc"}, {1, "a-bc"}, {3, "abc-"}, {4, "abc-"}, {-1, "-abc"}};
    for (const auto& row : inserts) {
        SCOPED_TRACE(row.position);
        GString unit("abc");
        unit.Insert(row.position, static_cast<unsigned short>('-'));
        EXPECT_TRUE(unit == GString(row.inserted));
        GString text("abc");
        text.Insert(row.position, GString("-"));
        EXPECT_TRUE(text == GString(row.inserted));
    }
    const struct {
        long start;
        long count;
        const char* left;
    } removals[] = {{0, 1, "bc"},  {1, 1, "ac"},   {2, 1, "ab"},  {1, 9, "a"},    {0, 3, ""},
                    {3, 1, "abc"}, {-1, 2, "abc"}, {1, 0, "abc"}, {1, -1, "abc"}, {1, 0x7FFFFFFF, "a"}};
    for (const auto& row : removals) {
        SCOPED_TRACE(testing::Message() << row.start << ", " << row.count);
        GString text("abc");
        text.Remove(row.start, row.count);
        EXPECT_TRUE(text == GString(row.left));
    }
}

TEST(GString, ATextMayBeItsOwnArgument) {
    GString text("ab");
    text += text;
    EXPECT_TRUE(text == GString("abab"));
    text.Insert(1, text);
    EXPECT_TRUE(text == GString("aababbab"));
    text.Set("xyx");
    EXPECT_TRUE(text.Replace(0, text, GString("-")));
    EXPECT_TRUE(text == GString("-"));
    text.Set("a-a");
    EXPECT_TRUE(text.Replace(0, GString("-"), text));
    EXPECT_TRUE(text == GString("aa-aa"));
    text.Set("<%1>");
    text.SubstituteParams(text);
    EXPECT_TRUE(text == GString("<<%1>>"));
    text.GetSubstring(1, 4, text);
    EXPECT_TRUE(text == GString("<%1>"));
    EXPECT_EQ(text.Find(text), 0);
}

TEST(GString, ReplacesEveryOccurrence) {
    const struct {
        const char* what;
        const char* text;
        long start;
        const char* find;
        const char* with;
        const char* result;
        bool replaced;
    } rows[] = {
        {"none", "abc", 0, "x", "y", "abc", false},
        {"several", "abcabc", 0, "bc", "x", "axax", true},
        {"from a position on", "abcabc", 2, "bc", "x", "abcax", true},
        {"to something longer", "aa", 0, "a", "bab", "babbab", true},
        {"to nothing", "abcabc", 0, "b", "", "acac", true},
        {"not twice in one place", "aaa", 0, "aa", "b", "ba", true},
        {"an empty text", "abc", 0, "", "x", "abc", false},
        {"from before the start", "abc", -3, "a", "x", "xbc", true},
        {"from behind the end", "abc", 4, "a", "x", "abc", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GString text(row.text);
        EXPECT_EQ(text.Replace(row.start, GString(row.find), GString(row.with)), row.replaced);
        EXPECT_TRUE(text == GString(row.result));
    }
    GString text("abab");
    EXPECT_TRUE(text.Replace(1, static_cast<unsigned short>('a'), static_cast<unsigned short>('x')));
    EXPECT_TRUE(text == GString("abxb"));
    EXPECT_FALSE(text.Replace(0, static_cast<unsigned short>('q'), static_cast<unsigned short>('x')));
    EXPECT_TRUE(StringOf(u"\u0141\u4101").Find(GString("A")) == -1) << "only whole units are found";
}

TEST(GString, SubstringsAreCut) {
    const struct {
        long start;
        long count;
        const char* part;
    } rows[] = {{0, 2, "ab"}, {1, 2, "bc"}, {1, 9, "bc"},  {1, -1, "bc"},       {3, 1, ""},
                {4, 1, ""},   {0, 0, ""},   {-1, 2, "ab"}, {2, 0x7FFFFFFF, "c"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.start << ", " << row.count);
        EXPECT_TRUE(GString("abc").GetSubstring(row.start, row.count) == GString(row.part));
        GString out("old");
        GString("abc").GetSubstring(row.start, row.count, out);
        EXPECT_TRUE(out == GString(row.part));
    }
}

TEST(GString, Finds) {
    const GString text("abcabc");
    const unsigned short set[] = {'x', 'c', 'b'};
    const struct {
        const char* what;
        long found;
        long expected;
    } rows[] = {
        {"a text", text.Find(GString("bc"), 0), 1},
        {"a text where the search starts", text.Find(GString("bc"), 1), 1},
        {"a text behind", text.Find(GString("bc"), 2), 4},
        {"a text beyond the last", text.Find(GString("bc"), 5), -1},
        {"the whole", text.Find(text, 0), 0},
        {"more than the whole", text.Find(GString("abcabca"), 0), -1},
        {"an empty text", text.Find(GString(""), 3), 0},
        {"an empty text in nothing", GString().Find(GString(), 0), 0},
        {"from before the start", text.Find(GString("a"), -5), 0},
        {"a unit", text.FindFirst('b', 0), 1},
        {"a unit behind", text.FindFirst('b', 2), 4},
        {"a unit beyond the last", text.FindFirst('b', 5), -1},
        {"a unit beyond the end", text.FindFirst('b', 99), -1},
        {"one of a set", text.FindFirst(set, 3, 0), 1},
        {"one of a set behind", text.FindFirst(set, 3, 3), 4},
        {"one of an empty set", text.FindFirst(set, 0, 0), -1},
        {"another unit", text.FindFirstNot('a', 0), 1},
        {"another unit behind", text.FindFirstNot('c', 2), 3},
        {"another unit of equal ones", GString("aaa").FindFirstNot('a', 0), -1},
        {"none of a set", text.FindFirstNot(set, 3, 1), 3},
        {"the last", text.FindLast('a', 5), 3},
        {"the last where the search ends", text.FindLast('a', 3), 3},
        {"the last before", text.FindLast('a', 2), 0},
        {"the last beyond the end", text.FindLast('a', 99), 3},
        {"the last before the start", text.FindLast('a', -1), -1},
        {"the last of none", text.FindLast('x', 5), -1},
    };
    for (const auto& row : rows) EXPECT_EQ(row.found, row.expected) << row.what;
}

TEST(GString, ClearKeepsTheEncoding) {
    GString text("ab", WinAnsi());
    text.Clear();
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(NameOf(text), "WinAnsiEncoding");
    EXPECT_TRUE(GString::cEmptyString.IsEmpty());
}

TEST(GString, ConvertsOut) {
    const struct {
        const char* what;
        GString text;
        const GEncoding* target;
        std::string bytes;
        long result;
    } rows[] = {
        {"no encoding", GString(), WinAnsi(), "", 1},
        {"no target", GString("ab"), nullptr, "", 1},
        {"the same encoding, valid or not", GString("\xFF", UTF8()), UTF8(), "\xFF", 1},
        {"invalid input stops", GString("ab\xFF", UTF8()), Unicode(), "a\0b\0"s, 4},
        {"a character is missing", GString("\xE2\x82\xAC", UTF8()), GMacRomanEncoding::GetInstance(), "@", 2},
        {"all characters are there", GString("\xE2\x82\xAC", UTF8()), WinAnsi(), "\x80", 1},
        {"composed", GString("e\xCC\x81", UTF8()), Unicode(), "\xE9\0"s, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GBuffer out("old");
        EXPECT_EQ(row.text.GetBuffer(out, row.target), row.result);
        EXPECT_EQ(BytesOf(out), row.bytes);
        EXPECT_EQ(BytesOf(row.text.GetBuffer(row.target)), row.bytes);
    }
}

TEST(GString, CompatibleBytes) {
    const struct {
        const char* what;
        std::string_view bytes;
        const GEncoding* encoding;
        bool compatible;
    } rows[] = {
        {"ASCII", "abc", GASCIIEncoding::GetInstance(), true},
        {"not ASCII", "\x80", GASCIIEncoding::GetInstance(), false},
        {"WinAnsi", "\x80", WinAnsi(), true},
        {"not WinAnsi", "\x81", WinAnsi(), false},
        {"not MacRoman", "\xF0", GMacRomanEncoding::GetInstance(), false},
        {"not PDFDoc", "\x9F", GPDFDocEncoding::GetInstance(), false},
        {"UTF-8", "\xC3\xA9", UTF8(), true},
        {"not UTF-8", "\xC3", UTF8(), false},
        {"a zero byte in UTF-8", "\0"sv, UTF8(), false},
        {"UTF-16", "a\0"sv, Unicode(), true},
        {"half a unit", "a"sv, Unicode(), false},
        {"others are not asked", "\x01\x7F", GMacExpertEncoding::GetInstance(), true},
        {"no encoding", "abc", nullptr, true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(GString::AreCompatible(BufferOf(row.bytes), row.encoding), row.compatible) << row.what;
}

TEST(GString, NormalizeKeepsTheEncodingOrNot) {
    GString kept("a", WinAnsi());
    kept.Normalize(true);
    EXPECT_EQ(NameOf(kept), "WinAnsiEncoding");
    kept.Normalize(false);
    EXPECT_EQ(NameOf(kept), "UnicodeEncoding");
    GString none;
    none.Normalize(true);
    EXPECT_EQ(NameOf(none), "NULL");
    none.Normalize(false);
    EXPECT_EQ(NameOf(none), "UnicodeEncoding");
}

TEST(GString, Joins) {
    EXPECT_TRUE(GString("ab") + GString("cd") == GString("abcd"));
    EXPECT_TRUE(GString() + GString("cd") == GString("cd"));
    EXPECT_TRUE(GString("ab") + GString() == GString("ab"));
    GString text("a");
    text += static_cast<unsigned short>(0x4E00);
    EXPECT_EQ(UnitsOf(text), u"a\u4E00");
    GString other("x");
    text.Swap(other);
    EXPECT_TRUE(text == GString("x"));
    EXPECT_EQ(UnitsOf(other), u"a\u4E00");
}

}  // namespace
