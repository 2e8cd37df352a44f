#include "framework/core/text/GBufferSupport.h"

#include "framework/core/containers/GDictUtil.h"
#include "framework/core/containers/GTable.h"
#include "tests/core/encodings/EncodingForTests.h"

namespace {

using Operation = void (*)(GBuffer&);

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

// Each row is a text and what an operation makes of it in bytes, and in units where there is one for them.
void ExpectRewritten(Operation narrow, Operation wide, std::initializer_list<std::string_view> rows) {
    ForEachRow<2>(rows, [&](auto text, auto result) {
        EXPECT_EQ(After(narrow, text), result);
        EXPECT_EQ(wide == nullptr ? result : AfterWide(wide, text), result);
    });
}

// Each with a ';' behind it.
std::string Shown(const GTable<GBuffer>& fields) {
    std::string shown;
    for (const GBuffer& field : fields) shown += BytesOf(field) + ";";
    return shown;
}

GTable<GBuffer> SplitOf(const GBuffer& merged) {
    GTable<GBuffer> split{"from before"};
    GBufferSupport::SplitSeparatedBuffer(merged, split);
    return split;
}

GBuffer MergedOf(const GTable<GBuffer>& fields) {
    GBuffer merged("from before");
    GBufferSupport::MergeIntoSeparatedBuffer(fields, merged);
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
    ExpectRewritten(narrow, wide,
                    {"a\rb\nc\r\nd -> a\r\nb\r\nc\r\nd", "\n\r -> \r\n\r\n", "\r\r\n\n -> \r\n\r\n\r\n",
                     "\r -> \r\n", "no line end -> no line end", "\0\n\0 -> \0\r\n\0"sv});
    EXPECT_EQ(AfterUnits(wide, u"\x0D0A\x0A0D"), u"\x0D0A\x0A0D") << "their bytes within units are none";
}

TEST(GBufferSupportText, IsEscapedAndBack) {
    const Operation escape = GBufferSupport::ASCIIReplaceSpecialChars;
    const Operation resolve = GBufferSupport::ASCIIReplaceEscapeCodes;
    ExpectRewritten(
        escape, GBufferSupport::UniReplaceSpecialChars,
        {"a\tb -> a\\tb", "\n -> \\n", "\r -> \\n", "\r\n -> \\n", "\n\r -> \\n", "\n\n -> \\n\\n",
         "\r\n\r\n -> \\n\\n", "\" -> \\\"", "C:\\x -> C:\\\\x", "'\x80\xA5 -> '\x80\xA5", " -> "});
    ExpectRewritten(resolve, GBufferSupport::UniReplaceEscapeCodes,
                    {"a\\tb -> a\tb", "\\n -> \r\n", "\\\"\\' -> \"'", "\\\\n -> \\n", "\\x\\T -> \\x\\T",
                     "a\\ -> a\\", "\x80t\xA5t -> \t\t", "\\\x80t -> \\\x80t", "\\\\\\ -> \\\\", " -> "});
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

TEST(GBufferSupportLists, SplittingAndJoining) {
    // A text, the separators, its fields, and those that are not empty.
    ForEachRow<4>(
        {"a,,b, -> , -> a;;b;; -> a;b;", "a,b+c -> ,+ -> a;b;c; -> a;b;c;", ",, -> , -> ;;; -> ",
         "abc -> , -> abc; -> abc;", "a,b ->  -> a,b; -> a,b;", " -> , -> ; -> ", ",a -> , -> ;a; -> a;"},
        [](auto text, auto separators, auto kept, auto dropped) {
            GTable<GBuffer> out{"from before"};
            const GBuffer bytes = BufferOf(text), marks = BufferOf(separators);
            GBufferSupport::SeparatedBufferToBufferTable(bytes, marks, out, false);
            EXPECT_EQ(Shown(out), dropped);
            GBufferSupport::SeparatedBufferToBufferTable(bytes, marks, out, true);
            EXPECT_EQ(Shown(out), kept);
            GBuffer joined("from before");
            GBufferSupport::BufferTableToSeparatedBuffer(out, ", ", joined);
            joined.FindAndReplace(0, GBuffer(", "), GBuffer(","));
            EXPECT_EQ(BytesOf(joined), separators == ",+" ? "a,b,c" : text);
        });
    GTable<GBuffer> self{"a,b"};
    GBufferSupport::SeparatedBufferToBufferTable(self[0], ",", self, true);
    EXPECT_EQ(Shown(self), "a;b;");
    GBuffer none("from before");
    GBufferSupport::BufferTableToSeparatedBuffer({}, ",", none);
    EXPECT_TRUE(none.IsEmpty());
}

TEST(GBufferSupportLists, TheListThatDescribesItself) {
    // A list, its fields, and the list of those. An escape before an ordinary byte or at the end is dropped;
    // it wins where the separator is the same byte.
    ForEachRow<3>(
        {"#|a#|b|##| -> a|b;#;; -> #|a#|b|##|", "#|abc -> abc; -> #|abc", "#|| -> ;; -> #||", " ->  -> ",
         "#| ->  -> ", "# ->  -> ", "\\,a\\,b,c -> a,b;c; -> #|a,b|c", "#|a#bc -> abc; -> #|abc",
         "#|a|b# -> a;b; -> #|a|b", "||a|b -> ab; -> #|ab", "#|a| -> a;; -> #|a|"},
        [](auto merged, auto fields, auto again) {
            const GTable<GBuffer> split = SplitOf(BufferOf(merged));
            EXPECT_EQ(Shown(split), fields);
            EXPECT_EQ(BytesOf(MergedOf(split)), again);
        });
    EXPECT_EQ(BytesOf(MergedOf({GBuffer()})), "#|");
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        GTable<GBuffer> fields;
        for (unsigned i = 2 + random() % 4; i > 0; --i)
            fields.Append(BufferOf(RandomText(random, "a#|\0"sv, 6)));
        ASSERT_TRUE(SplitOf(MergedOf(fields)) == fields);
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
    ExpectRewritten(GBufferSupport::StripLeadingWhiteSpace, nullptr, {" \b\t\n\v\r\fa  -> \fa ", " \t  -> "});
    ExpectRewritten(GBufferSupport::StripTrailingWhiteSpace, nullptr,
                    {" a\f\b\t\n\v\r  ->  a\f", " \t  -> "});
    ExpectRewritten([](GBuffer& text) { GBufferSupport::StripTrailingZeroes(text, false); }, nullptr,
                    {"a\0\0\0 -> a"sv, "\0\0\0\0 -> "sv, "\0\0ab -> \0\0ab"sv});
    ExpectRewritten([](GBuffer& text) { GBufferSupport::StripTrailingZeroes(text, true); }, nullptr,
                    {"ab\0\0 -> ab"sv, "a\0\0\0 -> a\0"sv, "\0\0\0\0 -> "sv, "ab\0 -> ab\0"sv});
    ExpectRewritten(GBufferSupport::SwapUnicodeBytes, nullptr, {"abcde -> badce", " -> "});
    ExpectRewritten(GBufferSupport::SwapBigEndian, nullptr, {"abcd -> badc"});
    ExpectRewritten(GBufferSupport::SwapLittleEndian, nullptr, {"abcd -> abcd"});
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
        std::vector<unsigned char> moved = bytes;
        for (long i = 0; i < count; ++i) {
            const auto source = static_cast<std::size_t>(from + i), target = static_cast<std::size_t>(to + i);
            const unsigned bit = bytes[source / 8] >> (7 - source % 8) & 1;
            const unsigned mask = 1U << (7 - target % 8);
            moved[target / 8] = static_cast<unsigned char>((moved[target / 8] & ~mask) | (bit ? mask : 0));
        }
        GBufferSupport::CopyBitBlock_LBE_LBE(bytes.data(), from, bytes.data(), to, count);
        ASSERT_EQ(bytes, moved) << from << " -> " << to << ", " << count;
    }
}

TEST(GBufferSupportBytes, UnicodeFromAnyEncoding) {
    GBuffer out("from before");
    EXPECT_EQ(GBufferSupport::GetUnicodeBuffer("\xC3\xA9", UTF8(), out), 1);
    EXPECT_EQ(Plain(out), u"\xE9");
    EXPECT_EQ(GBufferSupport::GetUnicodeBuffer("a\xFF", UTF8(), out), 4);
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
    ForEachRow<3>({"1 -> i -> I", "4 -> iv -> IV", "9 -> ix -> IX", "40 -> xl -> XL", "90 -> xc -> XC",
                   "400 -> cd -> CD", "1984 -> mcmlxxxiv -> MCMLXXXIV", "3999 -> mmmcmxcix -> MMMCMXCIX",
                   "0 -> 0 -> 0", "-5 -> -5 -> -5", "4000 -> 4000 -> 4000"},
                  [](auto digits, auto lower, auto upper) {
                      const long value = std::atol(digits.data());
                      EXPECT_EQ(BytesOf(GBufferSupport::IntToRomanNumeralLower(value)), lower);
                      EXPECT_EQ(BytesOf(GBufferSupport::IntToRomanNumeralUpper(value)), upper);
                  });
}
