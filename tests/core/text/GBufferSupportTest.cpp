#include "framework/core/text/GBufferSupport.h"

#include <cctype>

#include "framework/core/containers/GDictUtil.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/text/GStringSupport.h"
#include "tests/core/TextForTests.h"

namespace {

using Operation = void (*)(GBuffer&);
using Fields = std::vector<std::string>;

std::string After(Operation operation, std::string_view bytes) {
    GBuffer buffer = BufferOf(bytes);
    operation(buffer);
    return BytesOf(buffer);
}

std::u16string AfterUnits(Operation operation, std::u16string_view units) {
    GBuffer buffer = BufferOf(units);
    operation(buffer);
    return Plain(buffer);
}

// The same text in UTF-16, seen as bytes again; for texts below 0x100.
std::string AfterWide(Operation operation, std::string_view text) {
    std::u16string units;
    for (const char c : text) units += static_cast<char16_t>(static_cast<unsigned char>(c));
    std::string narrow;
    for (const char16_t unit : AfterUnits(operation, units)) narrow += static_cast<char>(unit);
    return narrow;
}

// Each row is a text and what an operation makes of it.
using Rewritings = std::initializer_list<std::string_view>;

void ExpectInBytes(Operation operation, Rewritings rows) {
    for (const std::string_view row : rows) {
        const auto [text, result] = CellsOf<2>(row);
        EXPECT_EQ(After(operation, text), result) << row;
    }
}

void ExpectInBytesAndUnits(Operation narrow, Operation wide, Rewritings rows) {
    ExpectInBytes(narrow, rows);
    for (const std::string_view row : rows) {
        const auto [text, result] = CellsOf<2>(row);
        EXPECT_EQ(AfterWide(wide, text), result) << row;
    }
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

Fields SplitOf(const GBuffer& merged) {
    GTable<GBuffer> split = TableOf({"from before"});
    GBufferSupport::SplitSeparatedBuffer(merged, split);
    return FieldsOf(split);
}

GBuffer MergedOf(const Fields& fields) {
    GBuffer merged("from before");
    GBufferSupport::MergeIntoSeparatedBuffer(TableOf(fields), merged);
    return merged;
}

std::string RandomText(std::mt19937& random, std::string_view alphabet, unsigned below) {
    std::string text;
    for (unsigned i = random() % below; i > 0; --i) text += alphabet[random() % alphabet.size()];
    return text;
}

}  // namespace

TEST(GBufferSupportText, LineEndsBecomeThePlatforms) {
    const Operation narrow = GBufferSupport::ASCIIPlatformLineEndings;
    const Operation wide = GBufferSupport::UniPlatformLineEndings;
    ExpectInBytesAndUnits(narrow, wide,
                          {"a\rb\nc\r\nd -> a\r\nb\r\nc\r\nd", "\n\r -> \r\n\r\n", "\r\r\n\n -> \r\n\r\n\r\n",
                           "\r -> \r\n", "no line end -> no line end", "\0\n\0 -> \0\r\n\0"sv});
    EXPECT_EQ(AfterUnits(wide, u"\x0D0A\x0A0D"), u"\x0D0A\x0A0D")
        << "a line end's bytes within units are none";
}

TEST(GBufferSupportText, IsEscapedAndBack) {
    const Operation escape = GBufferSupport::ASCIIReplaceSpecialChars;
    const Operation resolve = GBufferSupport::ASCIIReplaceEscapeCodes;
    ExpectInBytesAndUnits(
        escape, GBufferSupport::UniReplaceSpecialChars,
        {"a\tb -> a\\tb", "\n -> \\n", "\r -> \\n", "\r\n -> \\n", "\n\r -> \\n", "\n\n -> \\n\\n",
         "\r\n\r\n -> \\n\\n", "\" -> \\\"", "C:\\x -> C:\\\\x", "'\x80\xA5 -> '\x80\xA5", " -> "});
    ExpectInBytesAndUnits(
        resolve, GBufferSupport::UniReplaceEscapeCodes,
        {"a\\tb -> a\tb", "\\n -> \r\n", "\\\"\\' -> \"'", "\\\\n -> \\n", "\\x\\T -> \\x\\T", "a\\ -> a\\",
         "\x80t\xA5t -> \t\t", "\\\x80t -> \\\x80t", "\\\\\\ -> \\\\", " -> "});
    GBuffer odd = BufferOf(u"\t");
    odd += 'x';
    GBufferSupport::UniReplaceSpecialChars(odd);
    EXPECT_EQ(BytesOf(odd), "\\\0t\0x"sv) << "half a unit stays";
    std::mt19937 random(6);
    for (int round = 0; round < 5000; ++round) {
        const std::string text = RandomText(random, "a\t\"'\\tn\0"sv, 12);
        ASSERT_EQ(After(resolve, After(escape, text)), text);
    }
}

TEST(GBufferSupportText, ThePlatformMayEndLinesByOneOrNone) {
    const std::tuple<bool, bool, std::string_view, std::string_view> rows[] = {
        {true, false, "a\rb\r\r", "\r"},
        {false, true, "a\nb\n\n", "\n"},
        {false, false, "ab", ""},
        {true, true, "a\r\nb\r\n\r\n", "\r\n"}};  // as it is otherwise
    for (const auto& [cr, lf, result, unescaped] : rows) {
        GBufferSupport::SetLineEnding(cr, lf);
        EXPECT_EQ(GBufferSupport::GetLineEndingNeedsCR(), cr);
        EXPECT_EQ(GBufferSupport::GetLineEndingNeedsLF(), lf);
        EXPECT_EQ(After(GBufferSupport::ASCIIPlatformLineEndings, "a\r\nb\n\r"), result);
        EXPECT_EQ(After(GBufferSupport::ASCIIReplaceEscapeCodes, "\\n"), unescaped);
        EXPECT_TRUE(GDictUtil::GetEOLString() == GString(std::string(unescaped).c_str()));
    }
}

TEST(GBufferSupportText, ClassesOfCharactersAreExact) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto character = static_cast<unsigned short>(code);
        ASSERT_EQ(GBufferSupport::IsBackSlashCharacter(character),
                  code == 0x5C || code == 0x80 || code == 0xA5);
        ASSERT_EQ(GBufferSupport::IsWhiteSpace(character),
                  code == 8 || code == 9 || code == 10 || code == 11 || code == 13 || code == 32);
        ASSERT_EQ(GStringSupport::IsWhiteSpace(character), GBufferSupport::IsWhiteSpace(character));
    }
}

TEST(GBufferSupportText, LineEndsBecomeTheDefaultCharacter) {
    const Operation operation = GBufferSupport::UniReplaceSpecialEndCharsWithDefaultChar;
    EXPECT_EQ(AfterUnits(operation, u"a\rb\nc\r\nd\n\re\n\nf"), u"a@b@c@d@e@@f");
    EXPECT_EQ(AfterUnits(operation, u"none"), u"none");
    GEncoding::SetDefaultCharacter(static_cast<char>(0xA5));
    EXPECT_EQ(AfterUnits(operation, u"\n"), u"\xFFA5");
    GEncoding::SetDefaultCharacter('@');
}

TEST(GBufferSupportLists, SplittingAndJoining) {
    const std::tuple<const char*, const char*, const char*, Fields, Fields> rows[] = {
        {"with empty fields", "a,,b,", ",", {"a", "", "b", ""}, {"a", "b"}},
        {"several separators", "a,b;c", ",;", {"a", "b", "c"}, {"a", "b", "c"}},
        {"only separators", ",,", ",", {"", "", ""}, {}},
        {"none in the text", "abc", ",", {"abc"}, {"abc"}},
        {"no separators", "a,b", "", {"a,b"}, {"a,b"}},
        {"an empty text", "", ",", {""}, {}},
        {"a leading separator", ",a", ",", {"", "a"}, {"a"}}};
    for (const auto& [what, text, separators, kept, dropped] : rows) {
        SCOPED_TRACE(what);
        GTable<GBuffer> out = TableOf({"from before"});
        GBufferSupport::SeparatedBufferToBufferTable(text, separators, out, false);
        EXPECT_EQ(FieldsOf(out), dropped);
        GBufferSupport::SeparatedBufferToBufferTable(text, separators, out, true);
        EXPECT_EQ(FieldsOf(out), kept);
        GBuffer joined("from before");
        GBufferSupport::BufferTableToSeparatedBuffer(out, ", ", joined);
        joined.FindAndReplace(0, GBuffer(", "), GBuffer(","));
        EXPECT_EQ(BytesOf(joined), separators == ",;"sv ? "a,b,c" : text);
    }
    GTable<GBuffer> self = TableOf({"a,b"});
    GBufferSupport::SeparatedBufferToBufferTable(self[0], ",", self, true);
    EXPECT_EQ(FieldsOf(self), (Fields{"a", "b"}));
    GBuffer none("from before");
    GBufferSupport::BufferTableToSeparatedBuffer(TableOf({}), ",", none);
    EXPECT_TRUE(none.IsEmpty());
}

TEST(GBufferSupportLists, TheListThatDescribesItself) {
    const struct {
        const char* what;
        const char* merged;
        Fields fields;
        const char* mergedAgain = nullptr;  // where splitting is no exact reverse
    } rows[] = {{"with special bytes", "#|a#|b|##|", {"a|b", "#", ""}},
                {"one element", "#|abc", {"abc"}},
                {"two empty ones", "#||", {"", ""}},
                {"none", "", {}},
                {"too short", "#|", {}, ""},
                {"too short", "#", {}, ""},
                {"another pair of bytes", "\\,a\\,b,c", {"a,b", "c"}, "#|a,b|c"},
                {"an escape before an ordinary byte", "#|a#bc", {"abc"}, "#|abc"},
                {"an escape at the end is dropped", "#|a|b#", {"a", "b"}, "#|a|b"},
                {"escape and separator are the same byte: the escape wins", "||a|b", {"ab"}, "#|ab"},
                {"a trailing separator", "#|a|", {"a", ""}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(SplitOf(row.merged), row.fields);
        EXPECT_EQ(BytesOf(MergedOf(row.fields)), row.mergedAgain != nullptr ? row.mergedAgain : row.merged);
    }
    EXPECT_EQ(BytesOf(MergedOf({""})), "#|");
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        Fields fields(2 + random() % 4);
        for (std::string& field : fields) field = RandomText(random, "a#|\0"sv, 6);
        ASSERT_EQ(SplitOf(MergedOf(fields)), fields);
    }
}

TEST(GBufferSupportBytes, PascalStrings) {
    for (const std::size_t length : {0, 1, 255, 256, 300}) {
        const std::size_t kept = length > 255 ? 255 : length;
        std::string text(length, 'x');
        GBuffer buffer = BufferOf(text);
        const unsigned char* const converted = GBufferSupport::ConvertToPString(buffer);
        EXPECT_EQ(converted[kept + 1], 0);
        EXPECT_EQ(BytesOf(buffer), static_cast<char>(kept) + text.substr(0, kept));
    }
}

TEST(GBufferSupportBytes, AreStrippedAndSwapped) {
    ExpectInBytes(GBufferSupport::StripLeadingWhiteSpace, {" \b\t\n\v\r\fa  -> \fa ", " \t  -> "});
    ExpectInBytes(GBufferSupport::StripTrailingWhiteSpace, {" a\f\b\t\n\v\r  ->  a\f", " \t  -> "});
    ExpectInBytes([](GBuffer& text) { GBufferSupport::StripTrailingZeroes(text, false); },
                  {"a\0\0\0 -> a"sv, "\0\0\0\0 -> "sv, "\0\0ab -> \0\0ab"sv});
    ExpectInBytes([](GBuffer& text) { GBufferSupport::StripTrailingZeroes(text, true); },
                  {"ab\0\0 -> ab"sv, "a\0\0\0 -> a\0"sv, "\0\0\0\0 -> "sv, "ab\0 -> ab\0"sv});
    ExpectInBytes(GBufferSupport::SwapUnicodeBytes, {"abcde -> badce", " -> "});
    ExpectInBytes(GBufferSupport::SwapBigEndian, {"abcd -> badc"});
    ExpectInBytes(GBufferSupport::SwapLittleEndian, {"abcd -> abcd"});
    static const char literal[] = "abcd";
    GBuffer borrowed;
    borrowed.SetFromStatic(literal);
    GBufferSupport::SwapUnicodeBytes(borrowed);
    EXPECT_STREQ(literal, "abcd");
}

TEST(GBufferSupportBytes, LanguageTags) {
    ForEachRow<2>({u"a\033enUS\033b -> ab", u"\033\033 -> ", u"a\033b -> a\033b",
                   u"\033x\033a\033y\033 -> a\033y\033", u"\x1B00\x001B -> \x1B00\x001B"},
                  [&](auto text, auto result) {
                      EXPECT_EQ(AfterUnits(GBufferSupport::RemoveUnicodeLanguageTags, text), result);
                  });
}

TEST(GBufferSupportBytes, BitBlocksAreCopiedBitForBitAlsoWhenTheyOverlap) {
    unsigned char first[2] = {0x80, 0};  // the first bit is the highest
    GBufferSupport::CopyBitBlock_LBE_LBE(first, 0, first, 15, 1);
    GBufferSupport::CopyBitBlock_LBE_LBE(first, 0, first, 8, -5);
    EXPECT_EQ(first[1], 0x01);
    std::mt19937 random(8);
    for (int round = 0; round < 20000; ++round) {
        std::vector<unsigned char> bytes(8);
        for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
        const long count = random() % 50, from = random() % (64 - count), to = random() % (64 - count);
        std::vector<unsigned char> expected = bytes;
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
    EXPECT_EQ(Plain(out), u"\xE9");
    EXPECT_EQ(GBufferSupport::GetUnicodeBuffer("a\xFF", GUTF8Encoding::GetInstance(), out), 4);
    EXPECT_EQ(Plain(out), u"a");
    EXPECT_EQ(GBufferSupport::GetUnicodeBuffer("abc", nullptr, out), 1);
    EXPECT_TRUE(out.IsEmpty());
}

TEST(GBufferSupportNumbers, FormatsForReals) {
    const std::pair<long, const char*> rows[] = {{6, "%1.6f"},  {15, "%1.15f"}, {0, "%1.0f"},
                                                 {-1, "%1.0f"}, {99, "%1.99f"}, {100, "%1.99f"}};
    for (const auto& [digits, format] : rows) {
        GBuffer made;
        GBufferSupport::GenerateFormatStringForReals(digits, made);
        EXPECT_EQ(BytesOf(made), format);
    }
    GBuffer text;
    GBufferSupport::RealToBuffer(2.125, 2, text);
    EXPECT_EQ(BytesOf(text), "2.12");
}

TEST(GBufferSupportNumbers, RomanNumerals) {
    const std::pair<long, std::string> rows[] = {
        {1, "i"},   {4, "iv"},   {9, "ix"},           {40, "xl"},
        {90, "xc"}, {400, "cd"}, {1984, "mcmlxxxiv"}, {3999, "mmmcmxcix"},
        {0, "0"},   {-5, "-5"},  {4000, "4000"}};
    for (const auto& [value, text] : rows) {
        std::string upper = text;
        for (char& c : upper) c = static_cast<char>(std::toupper(c));
        EXPECT_EQ(BytesOf(GBufferSupport::IntToRomanNumeralLower(value)), text);
        EXPECT_EQ(BytesOf(GBufferSupport::IntToRomanNumeralUpper(value)), upper);
    }
}
