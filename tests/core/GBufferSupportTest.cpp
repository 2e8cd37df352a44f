#include "framework/core/GBufferSupport.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "framework/core/GBuffer.h"
#include "framework/core/GEncoding.h"
#include "framework/core/GTable.h"
#include "framework/core/GUTF8Encoding.h"
#include "tests/core/TextForTests.h"

namespace {

using Operation = void (*)(GBuffer&);
using Fields = std::vector<std::string>;

std::string After(Operation operation, std::string_view bytes) {
    GBuffer buffer = BufferOf(bytes);
    operation(buffer);
    return BytesOf(buffer);
}

// The same text in UTF-16, seen as bytes again; for texts below 0x100.
std::string AfterWide(Operation operation, std::string_view text) {
    GBuffer buffer = BufferOf(std::u16string([&] {
        std::u16string units;
        for (const char c : text) units += static_cast<char16_t>(static_cast<unsigned char>(c));
        return units;
    }()));
    operation(buffer);
    std::string narrow;
    for (const char16_t unit : UnitsOf(buffer)) narrow += static_cast<char>(unit);
    return narrow;
}

std::u16string AfterUnits(Operation operation, std::u16string_view units) {
    GBuffer buffer = BufferOf(units);
    operation(buffer);
    return UnitsOf(buffer);
}

GTable<GBuffer> TableOf(const Fields& fields) {
    GTable<GBuffer> table;
    for (const std::string& field : fields) table.Append(BufferOf(field));
    return table;
}

Fields FieldsOf(const GTable<GBuffer>& table) {
    Fields fields;
    for (const GBuffer& field : table) fields.push_back(BytesOf(field));
    return fields;
}

struct LineEndingForTest {
    LineEndingForTest(bool cr, bool lf) { GBufferSupport::SetLineEnding(cr, lf); }
    ~LineEndingForTest() { GBufferSupport::SetLineEnding(true, true); }
};

}  // namespace

TEST(GBufferSupportLineEnds, EachBecomesThePlatforms) {
    const struct {
        std::string_view text;
        std::string_view result;
    } rows[] = {
        {"a\rb\nc\r\nd", "a\r\nb\r\nc\r\nd"},
        {"\n\r", "\r\n\r\n"},
        {"\r\r\n\n", "\r\n\r\n\r\n"},
        {"\r", "\r\n"},
        {"no line end", "no line end"},
        {"", ""},
        {std::string_view("\0\n\0", 3), std::string_view("\0\r\n\0", 4)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(After(GBufferSupport::ASCIIPlatformLineEndings, row.text), row.result);
        EXPECT_EQ(AfterWide(GBufferSupport::UniPlatformLineEndings, row.text), row.result);
    }
    EXPECT_EQ(AfterUnits(GBufferSupport::UniPlatformLineEndings, u"\x0D0A\x0A0D"), u"\x0D0A\x0A0D")
        << "a line end's bytes within units are none";
}

TEST(GBufferSupportLineEnds, ThePlatformMayUseOneOrNone) {
    const struct {
        bool cr;
        bool lf;
        std::string_view result;
    } rows[] = {{true, false, "a\rb\r\r"},
                {false, true, "a\nb\n\n"},
                {false, false, "ab"},
                {true, true, "a\r\nb\r\n\r\n"}};
    for (const auto& row : rows) {
        const LineEndingForTest ending(row.cr, row.lf);
        EXPECT_EQ(GBufferSupport::GetLineEndingNeedsCR(), row.cr);
        EXPECT_EQ(GBufferSupport::GetLineEndingNeedsLF(), row.lf);
        EXPECT_EQ(After(GBufferSupport::ASCIIPlatformLineEndings, "a\r\nb\n\r"), row.result);
    }
}

TEST(GBufferSupportEscapes, ForStorage) {
    const struct {
        const char* what;
        std::string_view text;
        std::string_view result;
    } rows[] = {
        {"tab", "a\tb", "a\\tb"},
        {"LF", "\n", "\\n"},
        {"CR", "\r", "\\n"},
        {"CR LF is one", "\r\n", "\\n"},
        {"LF CR is one", "\n\r", "\\n"},
        {"LF LF are two", "\n\n", "\\n\\n"},
        {"CR LF CR LF are two", "\r\n\r\n", "\\n\\n"},
        {"quotation mark", "\"", "\\\""},
        {"backslash", "C:\\x", "C:\\\\x"},
        {"a single quote stays", "'", "'"},
        {"what stands for a backslash elsewhere stays", "\x80\xA5", "\x80\xA5"},
        {"nothing", "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(After(GBufferSupport::ASCIIReplaceSpecialChars, row.text), row.result);
        EXPECT_EQ(AfterWide(GBufferSupport::UniReplaceSpecialChars, row.text), row.result);
    }
}

TEST(GBufferSupportEscapes, AreUndone) {
    const struct {
        const char* what;
        std::string_view text;
        std::string_view result;
    } rows[] = {
        {"tab", "a\\tb", "a\tb"},
        {"line end", "\\n", "\r\n"},
        {"quotes", "\\\"\\'", "\"'"},
        {"backslash", "\\\\n", "\\n"},
        {"anything else keeps both", "\\x\\T", "\\x\\T"},
        {"in the last place", "a\\", "a\\"},
        {"the other introducers", "\x80t\xA5t", "\t\t"},
        {"another introducer after one keeps both", "\\\x80t", "\\\x80t"},
        {"three backslashes", "\\\\\\", "\\\\"},
        {"nothing", "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(After(GBufferSupport::ASCIIReplaceEscapeCodes, row.text), row.result);
        EXPECT_EQ(AfterWide(GBufferSupport::UniReplaceEscapeCodes, row.text), row.result);
    }
}

TEST(GBufferSupportEscapes, IntroducersAreExactlyThree) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        EXPECT_EQ(GBufferSupport::IsBackSlashCharacter(static_cast<unsigned short>(code)),
                  code == 0x5C || code == 0x80 || code == 0xA5);
    }
}

TEST(GBufferSupportEscapes, ARoundTripChangesLineEndsAlone) {
    std::mt19937 random(6);
    const std::string_view alphabet("a\t\"'\\tn\0", 8);
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (unsigned i = random() % 12; i > 0; --i) text += alphabet[random() % alphabet.size()];
        GBuffer buffer = BufferOf(text);
        GBufferSupport::ASCIIReplaceSpecialChars(buffer);
        GBufferSupport::ASCIIReplaceEscapeCodes(buffer);
        ASSERT_EQ(BytesOf(buffer), text);
    }
}

TEST(GBufferSupportEscapes, HalfAUnitStays) {
    GBuffer buffer = BufferOf(u"\t");
    buffer += 'x';
    GBufferSupport::UniReplaceSpecialChars(buffer);
    EXPECT_EQ(BytesOf(buffer), std::string_view("\\\0t\0x", 5));
}

TEST(GBufferSupportEscapes, LineEndsBecomeTheDefaultCharacter) {
    const Operation operation = GBufferSupport::UniReplaceSpecialEndCharsWithDefaultChar;
    EXPECT_EQ(AfterUnits(operation, u"a\rb\nc\r\nd\n\re\n\nf"), u"a@b@c@d@e@@f");
    EXPECT_EQ(AfterUnits(operation, u"none"), u"none");
    GEncoding::SetDefaultCharacter(static_cast<char>(0xA5));
    EXPECT_EQ(AfterUnits(operation, u"\n"), u"\xFFA5");
    GEncoding::SetDefaultCharacter('@');
}

TEST(GBufferSupportLists, Splitting) {
    const struct {
        const char* what;
        const char* text;
        const char* separators;
        Fields kept;
        Fields dropped;
    } rows[] = {
        {"with empty fields", "a,,b,", ",", {"a", "", "b", ""}, {"a", "b"}},
        {"several separators", "a,b;c", ",;", {"a", "b", "c"}, {"a", "b", "c"}},
        {"only separators", ",,", ",", {"", "", ""}, {}},
        {"none in the text", "abc", ",", {"abc"}, {"abc"}},
        {"no separators", "a,b", "", {"a,b"}, {"a,b"}},
        {"an empty text", "", ",", {""}, {}},
        {"a leading separator", ",a", ",", {"", "a"}, {"a"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GTable<GBuffer> out = TableOf({"from before"});
        GBufferSupport::SeparatedBufferToBufferTable(row.text, row.separators, out, true);
        EXPECT_EQ(FieldsOf(out), row.kept);
        GBufferSupport::SeparatedBufferToBufferTable(row.text, row.separators, out, false);
        EXPECT_EQ(FieldsOf(out), row.dropped);
    }
    GTable<GBuffer> self = TableOf({"a,b"});
    GBufferSupport::SeparatedBufferToBufferTable(self[0], ",", self, true);
    EXPECT_EQ(FieldsOf(self), (Fields{"a", "b"}));
}

TEST(GBufferSupportLists, Joining) {
    GBuffer out("from before");
    GBufferSupport::BufferTableToSeparatedBuffer(TableOf({"a", "", "b"}), ", ", out);
    EXPECT_EQ(BytesOf(out), "a, , b");
    GBufferSupport::BufferTableToSeparatedBuffer(TableOf({""}), ",", out);
    EXPECT_EQ(BytesOf(out), "");
    GBufferSupport::BufferTableToSeparatedBuffer(TableOf({}), ",", out = "x");
    EXPECT_TRUE(out.IsEmpty());
}

TEST(GBufferSupportLists, TheListThatDescribesItself) {
    const struct {
        const char* what;
        Fields fields;
        const char* merged;
    } rows[] = {
        {"with special bytes", {"a|b", "#", ""}, "#|a#|b|##|"},
        {"one element", {"abc"}, "#|abc"},
        {"two empty ones", {"", ""}, "#||"},
        {"none", {}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GBuffer merged("from before");
        GBufferSupport::MergeIntoSeparatedBuffer(TableOf(row.fields), merged);
        EXPECT_EQ(BytesOf(merged), row.merged);
        GTable<GBuffer> split = TableOf({"from before"});
        GBufferSupport::SplitSeparatedBuffer(merged, split);
        EXPECT_EQ(FieldsOf(split), row.fields);
    }
}

TEST(GBufferSupportLists, SplittingAnyListThatDescribesItself) {
    const struct {
        const char* what;
        const char* merged;
        Fields fields;
    } rows[] = {
        {"too short", "#|", {}},
        {"too short", "#", {}},
        {"one element", "#|x", {"x"}},
        {"another pair of bytes", "\\,a\\,b,c", {"a,b", "c"}},
        {"an escape before an ordinary byte", "#|a#bc", {"abc"}},
        {"an escape at the end is dropped", "#|a|b#", {"a", "b"}},
        {"escape and separator are the same byte: the escape wins", "||a|b", {"ab"}},
        {"a trailing separator", "#|a|", {"a", ""}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GTable<GBuffer> split;
        GBufferSupport::SplitSeparatedBuffer(row.merged, split);
        EXPECT_EQ(FieldsOf(split), row.fields);
    }
}

TEST(GBufferSupportLists, RandomListsSurviveMerging) {
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        Fields fields(1 + random() % 5);
        for (std::string& field : fields) {
            for (unsigned i = random() % 6; i > 0; --i) field += "a#|\0"[random() % 4];
        }
        if (fields == Fields{""}) continue;
        GBuffer merged;
        GBufferSupport::MergeIntoSeparatedBuffer(TableOf(fields), merged);
        GTable<GBuffer> split;
        GBufferSupport::SplitSeparatedBuffer(merged, split);
        ASSERT_EQ(FieldsOf(split), fields);
    }
}

TEST(GBufferSupportBytes, PascalStrings) {
    const struct {
        std::size_t length;
        unsigned char lengthByte;
    } rows[] = {{0, 0}, {1, 1}, {255, 255}, {256, 255}, {300, 255}};
    for (const auto& row : rows) {
        std::string text(row.length, 'x');
        if (!text.empty()) text[0] = 'a';
        GBuffer buffer = BufferOf(text);
        const unsigned char* const converted = GBufferSupport::ConvertToPString(buffer);
        EXPECT_EQ(converted[0], row.lengthByte);
        EXPECT_EQ(converted[row.lengthByte + 1], 0);
        EXPECT_EQ(buffer.GetLength(), 1 + row.lengthByte);
        EXPECT_EQ(BytesOf(buffer.GetSubBuffer(1)), text.substr(0, 255));
    }
}

TEST(GBufferSupportBytes, TrailingZeroes) {
    const struct {
        std::string_view bytes;
        std::size_t narrow;
        std::size_t wide;
    } rows[] = {
        {std::string_view("ab\0\0", 4), 2, 2},   {std::string_view("a\0\0\0", 4), 1, 2},
        {std::string_view("\0\0\0\0", 4), 0, 0}, {std::string_view("ab\0", 3), 2, 3},
        {std::string_view("", 0), 0, 0},         {std::string_view("\0\0ab", 4), 4, 4},
    };
    for (const auto& row : rows) {
        GBuffer narrow = BufferOf(row.bytes);
        GBufferSupport::StripTrailingZeroes(narrow, false);
        EXPECT_EQ(BytesOf(narrow), row.bytes.substr(0, row.narrow));
        GBuffer wide = BufferOf(row.bytes);
        GBufferSupport::StripTrailingZeroes(wide, true);
        EXPECT_EQ(BytesOf(wide), row.bytes.substr(0, row.wide));
    }
}

TEST(GBufferSupportBytes, WhiteSpace) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const bool expected = code == 8 || code == 9 || code == 10 || code == 11 || code == 13 || code == 32;
        EXPECT_EQ(GBufferSupport::IsWhiteSpace(static_cast<unsigned short>(code)), expected) << code;
    }
    EXPECT_EQ(After(GBufferSupport::StripLeadingWhiteSpace, " \b\t\n\v\r\fa "), "\fa ");
    EXPECT_EQ(After(GBufferSupport::StripTrailingWhiteSpace, " a\f\b\t\n\v\r "), " a\f");
    EXPECT_EQ(After(GBufferSupport::StripLeadingWhiteSpace, " \t "), "");
    EXPECT_EQ(After(GBufferSupport::StripTrailingWhiteSpace, " \t "), "");
    EXPECT_EQ(After(GBufferSupport::StripTrailingWhiteSpace, ""), "");
}

TEST(GBufferSupportBytes, LanguageTags) {
    const struct {
        std::u16string_view text;
        std::u16string_view result;
    } rows[] = {
        {u"a\x1B"
         u"enUS\x1B"
         u"b",
         u"ab"},
        {u"\x1B\x1B", u""},
        {u"a\x1B"
         u"b",
         u"a\x1B"
         u"b"},
        {u"\x1Bx\x1B"
         u"a\x1By\x1B",
         u"a\x1By\x1B"},
        {u"\x1B00\x001B", u"\x1B00\x001B"},
        {u"", u""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(AfterUnits(GBufferSupport::RemoveUnicodeLanguageTags, row.text), row.result);
    }
}

TEST(GBufferSupportBytes, ByteOrder) {
    EXPECT_EQ(After(GBufferSupport::SwapUnicodeBytes, "abcde"), "badce");
    EXPECT_EQ(After(GBufferSupport::SwapBigEndian, "abcd"), "badc");
    EXPECT_EQ(After(GBufferSupport::SwapLittleEndian, "abcd"), "abcd");
    EXPECT_EQ(After(GBufferSupport::SwapUnicodeBytes, ""), "");
    GBuffer borrowed;
    static const char literal[] = "abcd";
    borrowed.SetFromStatic(literal);
    GBufferSupport::SwapUnicodeBytes(borrowed);
    EXPECT_STREQ(literal, "abcd");
}

TEST(GBufferSupportBytes, BitBlocks) {
    const struct {
        const char* what;
        long sourceBit;
        long targetBit;
        long count;
        std::string_view result;  // from a source of 0xF0 0x0F 0xAA onto zeros
    } rows[] = {
        {"whole bytes", 0, 0, 24, std::string_view("\xF0\x0F\xAA", 3)},
        {"the first bit is the highest", 0, 7, 1, std::string_view("\x01\x00\x00", 3)},
        {"across a byte", 2, 6, 4, std::string_view("\x03\x00\x00", 3)},
        {"one bit to the right", 0, 1, 16, std::string_view("\x78\x07\x80", 3)},
        {"one bit to the left", 1, 0, 16, std::string_view("\xE0\x1F\x00", 3)},
        {"nothing", 0, 0, 0, std::string_view("\0\0\0", 3)},
        {"less than nothing", 0, 0, -5, std::string_view("\0\0\0", 3)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const unsigned char source[3] = {0xF0, 0x0F, 0xAA};
        unsigned char target[3] = {};
        GBufferSupport::CopyBitBlock_LBE_LBE(source, row.sourceBit, target, row.targetBit, row.count);
        EXPECT_EQ(std::string_view(reinterpret_cast<char*>(target), 3), row.result);
    }
}

TEST(GBufferSupportBytes, BitBlocksBitForBitAlsoWhenTheyOverlap) {
    std::mt19937 random(8);
    for (int round = 0; round < 20000; ++round) {
        std::vector<unsigned char> bytes(8), expected;
        for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
        const auto count = static_cast<long>(random() % 50);
        const auto from = static_cast<long>(random() % (64 - static_cast<unsigned>(count)));
        const auto to = static_cast<long>(random() % (64 - static_cast<unsigned>(count)));
        expected = bytes;
        for (long i = 0; i < count; ++i) {
            const auto source = static_cast<std::size_t>(from + i), target = static_cast<std::size_t>(to + i);
            const unsigned bit = bytes[source / 8] >> (7 - source % 8) & 1;
            const unsigned mask = 1U << (7 - target % 8);
            expected[target / 8] =
                static_cast<unsigned char>((expected[target / 8] & ~mask) | (bit ? mask : 0));
        }
        GBufferSupport::CopyBitBlock_LBE_LBE(bytes.data(), from, bytes.data(), to, count);
        ASSERT_EQ(bytes, expected) << from << " -> " << to << ", " << count;
    }
}

TEST(GBufferSupportBytes, UnicodeFromAnyEncoding) {
    GBuffer out("from before");
    EXPECT_EQ(GBufferSupport::GetUnicodeBuffer("\xC3\xA9", GUTF8Encoding::GetInstance(), out), 1);
    EXPECT_EQ(UnitsOf(out), u"\xE9");
    EXPECT_EQ(GBufferSupport::GetUnicodeBuffer("a\xFF", GUTF8Encoding::GetInstance(), out), 4);
    EXPECT_EQ(UnitsOf(out), u"a");
    EXPECT_EQ(GBufferSupport::GetUnicodeBuffer("abc", nullptr, out), 1);
    EXPECT_TRUE(out.IsEmpty());
}

TEST(GBufferSupportNumbers, FormatsForReals) {
    const struct {
        long digits;
        const char* format;
    } rows[] = {{6, "%1.6f"}, {15, "%1.15f"}, {0, "%1.0f"}, {-1, "%1.0f"}, {99, "%1.99f"}, {100, "%1.99f"}};
    for (const auto& row : rows) {
        GBuffer format;
        GBufferSupport::GenerateFormatStringForReals(row.digits, format);
        EXPECT_EQ(BytesOf(format), row.format);
    }
    GBuffer text;
    GBufferSupport::RealToBuffer(2.125, 2, text);
    EXPECT_EQ(BytesOf(text), "2.12");
}

TEST(GBufferSupportNumbers, RomanNumerals) {
    const struct {
        long value;
        const char* lower;
        const char* upper;
    } rows[] = {
        {1, "i", "I"},
        {3, "iii", "III"},
        {4, "iv", "IV"},
        {9, "ix", "IX"},
        {14, "xiv", "XIV"},
        {40, "xl", "XL"},
        {90, "xc", "XC"},
        {400, "cd", "CD"},
        {1984, "mcmlxxxiv", "MCMLXXXIV"},
        {3999, "mmmcmxcix", "MMMCMXCIX"},
        {0, "0", "0"},
        {-5, "-5", "-5"},
        {4000, "4000", "4000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(BytesOf(GBufferSupport::IntToRomanNumeralLower(row.value)), row.lower);
        EXPECT_EQ(BytesOf(GBufferSupport::IntToRomanNumeralUpper(row.value)), row.upper);
    }
}
