#include "framework/core/GUnicodeEncoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "framework/core/GCharCode.h"
#include "framework/core/GTable.h"
#include "tests/core/TextForTests.h"

namespace {

using namespace std::string_view_literals;

const GUnicodeEncoding* Unicode() {
    return GUnicodeEncoding::GetInstance();
}

GCharCode CodeOf(std::u16string_view units) {
    GCharCode code;
    for (const char16_t unit : units) code += static_cast<unsigned short>(unit);
    return code;
}

std::u16string Compose(std::u16string_view units) {
    GBuffer buffer = BufferOf(units);
    Unicode()->EnsureComposedUnicode(buffer);
    return UnitsOf(buffer);
}

TEST(GUnicodeEncoding, ComposesBasesWithMarks) {
    const struct {
        const char* what;
        std::u16string_view units;
        std::u16string composed;
    } rows[] = {
        {"nothing", u"", u""},
        {"a letter", u"e", u"e"},
        {"one mark", u"e\u0301", u"\u00E9"},
        {"two marks one after the other", u"e\u0323\u0302", u"\u1EC7"},
        {"a precomposed letter with another mark", u"\u00EA\u0323", u"\u00EA\u0323"},
        {"a mark that does not compose", u"q\u0301", u"q\u0301"},
        {"a mark behind one that does not compose", u"e\u0336\u0301", u"e\u0336\u0301"},
        {"a mark without a base", u"\u0301e", u"\u0301e"},
        {"two bases", u"a\u0308o\u0308", u"\u00E4\u00F6"},
        {"text after a composed letter", u"cafe\u0301s", u"caf\u00E9s"},
        {"a base between others that stay", u"q\u0301e\u0301q\u0301", u"q\u0301\u00E9q\u0301"},
        {"a sign with the long solidus", u"=\u0338", u"\u2260"},
        {"voiced kana", u"\u304B\u3099\u30CF\u309A", u"\u304C\u30D1"},
        {"two halves of a vowel sign", u"\u09C7\u09BE", u"\u09CB"},
        {"an excluded composition", u"\u05D0\u05B7", u"\u05D0\u05B7"},
        {"a singleton stays", u"\u212B", u"\u212B"},
        {"lead and vowel", u"\u1100\u1161", u"\uAC00"},
        {"lead, vowel and tail", u"\u1112\u1161\u11AB", u"\uD55C"},
        {"syllable and tail", u"\uAC00\u11A8", u"\uAC01"},
        {"the last syllable", u"\u1112\u1175\u11C2", u"\uD7A3"},
        {"a syllable takes one tail", u"\uAC01\u11A8", u"\uAC01\u11A8"},
        {"what lies before the first tail is none", u"\uAC00\u11A7", u"\uAC00\u11A7"},
        {"what lies behind the last tail is none", u"\uAC00\u11C3", u"\uAC00\u11C3"},
        {"lead letters end before", u"\u1113\u1161", u"\u1113\u1161"},
        {"vowels end before", u"\u1100\u1176", u"\u1100\u1176"},
        {"a vowel alone", u"\u1161\u11A8", u"\u1161\u11A8"},
        {"surrogates are left alone", u"\xD83D\xDE00\u0301", u"\xD83D\xDE00\u0301"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(Compose(row.units), row.composed);
    }
}

// Units are looked at in groups of 8 and 64: a pair may lie in one group or across two.
TEST(GUnicodeEncoding, FindsAPairAtEveryPlace) {
    for (std::size_t before = 0; before < 75; ++before) {
        for (const std::size_t after : {0u, 1u, 7u, 8u, 63u, 64u}) {
            const std::u16string head(before, u'\u4E00');
            const std::u16string tail(after, u'\u0416');
            EXPECT_EQ(Compose(head + u"e\u0301" + tail), head + u"\u00E9" + tail) << before << ", " << after;
        }
    }
}

TEST(GUnicodeEncoding, LongRunsOfMarksTakeOnePass) {
    const std::u16string marks(200000, u'\u0301');
    EXPECT_EQ(Compose(u"e" + marks), u"\u00E9" + marks.substr(1));
    EXPECT_EQ(Compose(u"q" + marks), u"q" + marks);
}

TEST(GUnicodeEncoding, TextInWhichNothingComposesIsNotCopied) {
    static constexpr char16_t cText[] = u"Gr\u00FC\u00DFe \u0416\u4E00\u0E01\u0301";
    GBuffer buffer;
    buffer.SetFromStatic(reinterpret_cast<const unsigned char*>(cText), sizeof cText - 2);
    EXPECT_EQ(&Unicode()->EnsureComposedUnicode(buffer), &buffer);
    EXPECT_EQ(static_cast<const void*>(buffer.GetRawData()), static_cast<const void*>(cText));
}

TEST(GUnicodeEncoding, ABorrowedTextIsNotWritten) {
    static constexpr char16_t cText[] = u"e\u0301";
    GBuffer buffer;
    buffer.SetFromStatic(reinterpret_cast<const unsigned char*>(cText), sizeof cText - 2);
    Unicode()->EnsureComposedUnicode(buffer);
    EXPECT_EQ(UnitsOf(buffer), u"\u00E9");
    EXPECT_EQ(std::u16string_view(cText), u"e\u0301");
}

TEST(GUnicodeEncoding, AnOddLastByteIsInvalid) {
    GBuffer out;
    EXPECT_EQ(Unicode()->ConvertTo(BufferOf("a\0b\0c"sv), Unicode(), out), 4);
    EXPECT_EQ(UnitsOf(out), u"ab");
    EXPECT_EQ(Unicode()->ConvertTo(BufferOf("a"sv), Unicode(), out), 4);
    EXPECT_TRUE(out.IsEmpty());
    EXPECT_EQ(Unicode()->ConvertFrom(BufferOf("a\0"sv), Unicode(), out), 1);
    EXPECT_EQ(UnitsOf(out), u"a");
}

TEST(GUnicodeEncoding, NormalizeComposes) {
    GBuffer buffer = BufferOf(u"e\u0301");
    Unicode()->Normalize(buffer);
    EXPECT_EQ(UnitsOf(buffer), u"\u00E9");
}

TEST(GUnicodeEncoding, GlyphNamesOfUnits) {
    const struct {
        char16_t unit;
        const char* preferred;
        std::vector<std::string> all;
    } rows[] = {
        {u'A', "A", {"A"}},
        {u'\u20AC', "Euro", {"Euro", "euro"}},
        {u' ', "space", {"space", "spacehackarabic"}},
        {u'\u00AF', "macron", {"macron", "overscore"}},
        {u'\u00B5', "mu", {"mu", "mu1"}},
        {u'\uF7E6', "AEsmall", {"AEsmall"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.preferred);
        GBuffer name;
        ASSERT_TRUE(Unicode()->GetGlyphName(CodeOf(std::u16string(1, row.unit)), name));
        EXPECT_EQ(BytesOf(name), row.preferred);
        GTable<GBuffer> names;
        Unicode()->GetGlyphNameTable(CodeOf(std::u16string(1, row.unit)), names);
        std::vector<std::string> all;
        for (const GBuffer& one : names) all.push_back(BytesOf(one));
        EXPECT_EQ(all, row.all);
    }
}

TEST(GUnicodeEncoding, UnitsWithoutAGlyph) {
    GBuffer name("old");
    EXPECT_FALSE(Unicode()->GetGlyphName(CodeOf(u"\u4E00"), name));
    EXPECT_FALSE(Unicode()->GetGlyphName(CodeOf(u""), name));
    EXPECT_FALSE(Unicode()->GetGlyphName(CodeOf(u"AB"), name)) << "two units have no glyph";
    EXPECT_EQ(BytesOf(name), "old");
    GTable<GBuffer> names;
    names.Append(GBuffer("old"));
    Unicode()->GetGlyphNameTable(CodeOf(u"\u4E00"), names);
    EXPECT_TRUE(names.IsEmpty());
}

TEST(GUnicodeEncoding, CodesOfGlyphNames) {
    const struct {
        const char* glyph;
        std::u16string_view units;
    } rows[] = {
        {"A", u"A"},
        {"Euro", u"\u20AC"},
        {"euro", u"\u20AC"},
        {"zukatakana", u"\u30BA"},
        {"dalethatafpatah", u"\u05D3\u05B2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.glyph);
        GCharCode code;
        ASSERT_TRUE(Unicode()->GetCharCode(GBuffer(row.glyph), code));
        EXPECT_TRUE(code == CodeOf(row.units));
    }
    GCharCode code(static_cast<unsigned short>('x'));
    EXPECT_FALSE(Unicode()->GetCharCode(GBuffer("EURO"), code));
    EXPECT_FALSE(Unicode()->GetCharCode(GBuffer(), code));
    EXPECT_TRUE(code == CodeOf(u"x"));
}

TEST(GUnicodeEncoding, CompatibilityCharacters) {
    const struct {
        const char* what;
        char16_t unit;
        char16_t plain;
    } rows[] = {
        {"the first of the table", u'\u00A0', u' '},
        {"superscript two", u'\u00B2', u'2'},
        {"full-width letter", u'\uFF21', u'A'},
        {"half-width katakana", u'\uFF71', u'\u30A2'},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GCharCode plain;
        ASSERT_TRUE(Unicode()->GetCompatChar(CodeOf(std::u16string(1, row.unit)), plain));
        EXPECT_TRUE(plain == CodeOf(std::u16string(1, row.plain)));
    }
    GCharCode plain(static_cast<unsigned short>('x'));
    EXPECT_FALSE(Unicode()->GetCompatChar(CodeOf(u"A"), plain));
    EXPECT_FALSE(Unicode()->GetCompatChar(CodeOf(u"\uFB01"), plain)) << "a ligature is two letters";
    EXPECT_TRUE(plain == CodeOf(u"x"));
}

TEST(GUnicodeEncoding, DictionariesAreBuiltAgainAfterFinalize) {
    GUnicodeEncoding::Initialize();
    GUnicodeEncoding::Finalize();
    GBuffer name;
    EXPECT_TRUE(Unicode()->GetGlyphName(CodeOf(u"A"), name));
    GUnicodeEncoding::Finalize();
    EXPECT_EQ(BytesOf(name), "A") << "names outlive the dictionaries";
    GUnicodeEncoding::Finalize();
}

TEST(GUnicodeEncoding, DictionariesMayBeNeededByManyThreadsAtOnce) {
    GUnicodeEncoding::Finalize();
    std::vector<std::string> found(4);
    {
        std::vector<std::thread> threads;
        for (std::string& result : found) {
            threads.emplace_back([&result] {
                GBuffer name;
                if (Unicode()->GetGlyphName(CodeOf(u"\u20AC"), name)) result = BytesOf(name);
            });
        }
        for (std::thread& thread : threads) thread.join();
    }
    EXPECT_THAT(found, testing::Each("Euro"));
}

}  // namespace
