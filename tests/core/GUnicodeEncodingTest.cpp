#include "framework/core/GUnicodeEncoding.h"

#include <gmock/gmock.h>

#include <thread>
#include <vector>

#include "framework/core/GCharCode.h"
#include "framework/core/GTable.h"
#include "tests/core/EncodingForTests.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

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
    const std::tuple<const char*, std::u16string_view, std::u16string> rows[] = {
        {"nothing", u"", u""},
        {"one mark", u"e\u0301", u"\u00E9"},
        {"two marks one after the other", u"e\u0323\u0302", u"\u1EC7"},
        {"a precomposed letter with another mark", u"\u00EA\u0323", u"\u00EA\u0323"},
        {"a mark that does not compose", u"q\u0301", u"q\u0301"},
        {"a mark behind one that does not compose", u"e\u0336\u0301", u"e\u0336\u0301"},
        {"a mark without a base", u"\u0301e", u"\u0301e"},
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
        {"surrogates are left alone", u"\xD83D\xDE00\u0301", u"\xD83D\xDE00\u0301"},
    };
    for (const auto& [what, units, composed] : rows) EXPECT_EQ(Compose(units), composed) << what;
}

// Units are looked at in groups of 8 and 64: a pair may lie in one group or across two. These have the
// first and the last of the marks that lie together.
TEST(GUnicodeEncoding, FindsAPairAtEveryPlace) {
    const std::pair<std::u16string, std::u16string> pairs[] = {
        {u"e\u0300", u"\u00E8"},      {u"\u03B1\u0345", u"\u1FB3"}, {u"\u0627\u0653", u"\u0622"},
        {u"\u1B11\u1B35", u"\u1B12"}, {u"\u304B\u3099", u"\u304C"}, {u"\u30CF\u309A", u"\u30D1"},
    };
    for (const auto& [pair, composed] : pairs) {
        for (std::size_t before = 0; before < 75; ++before) {
            for (const std::size_t after : {0u, 1u, 7u, 8u, 63u, 64u}) {
                const std::u16string head(before, u'\u4E00');
                const std::u16string tail(after, u'\u0416');
                EXPECT_EQ(Compose(head + pair + tail), head + composed + tail) << before << ", " << after;
            }
        }
    }
}

TEST(GUnicodeEncoding, LongRunsOfMarksTakeOnePass) {
    const std::u16string marks(200000, u'\u0301');
    EXPECT_EQ(Compose(u"e" + marks), u"\u00E9" + marks.substr(1));
    EXPECT_EQ(Compose(u"q" + marks), u"q" + marks);
}

TEST(GUnicodeEncoding, BorrowedTextIsCopiedOnlyToBeComposed) {
    static constexpr char16_t cPlain[] = u"Gr\u00FC\u00DFe \u0416\u4E00\u0E01\u0301";
    GBuffer buffer;
    buffer.SetFromStatic(reinterpret_cast<const unsigned char*>(cPlain), sizeof cPlain - 2);
    EXPECT_EQ(&Unicode()->EnsureComposedUnicode(buffer), &buffer);
    EXPECT_EQ(static_cast<const void*>(buffer.GetRawData()), static_cast<const void*>(cPlain));
    static constexpr char16_t cMarked[] = u"e\u0301";
    buffer.SetFromStatic(reinterpret_cast<const unsigned char*>(cMarked), sizeof cMarked - 2);
    Unicode()->Normalize(buffer);
    EXPECT_EQ(UnitsOf(buffer), u"\u00E9");
    EXPECT_EQ(std::u16string_view(cMarked), u"e\u0301");
}

TEST(GUnicodeEncoding, AnOddLastByteIsInvalid) {
    EXPECT_EQ(Read(Unicode(), "a\0b\0c"sv), (Conversion{u"ab", 4}));
    EXPECT_EQ(Read(Unicode(), "a"), (Conversion{u"", 4}));
    EXPECT_EQ(Write(Unicode(), BufferOf("a\0"sv), Unicode()), (Written{"a\0"s, 1}));
    GBuffer odd = BufferOf("e\0\x01\x03z"sv);
    Unicode()->EnsureComposedUnicode(odd);
    EXPECT_EQ(BytesOf(odd), "\xE9\0z"sv) << "composing leaves it";
}

TEST(GUnicodeEncoding, GlyphNamesOfUnits) {
    const struct {
        char16_t unit;
        const char* preferred;  // null: none
        std::vector<std::string> all;
    } rows[] = {
        {u'A', "A", {"A"}},
        {u'\u20AC', "Euro", {"Euro", "euro"}},
        {u' ', "space", {"space", "spacehackarabic"}},
        {u'\u00AF', "macron", {"macron", "overscore"}},
        {u'\u00B5', "mu", {"mu", "mu1"}},
        {u'\uF7E6', "AEsmall", {"AEsmall"}},
        {u'\u4E00', nullptr, {}},
    };
    GTable<GBuffer> names;
    for (const auto& row : rows) {
        const GCharCode code = CodeOf(std::u16string(1, row.unit));
        GBuffer name("old");
        EXPECT_EQ(Unicode()->GetGlyphName(code, name), row.preferred != nullptr);
        EXPECT_EQ(BytesOf(name), row.preferred != nullptr ? row.preferred : "old");
        Unicode()->GetGlyphNameTable(code, names);
        std::vector<std::string> all;
        for (const GBuffer& one : names) all.push_back(BytesOf(one));
        EXPECT_EQ(all, row.all);
    }
    GBuffer name;
    EXPECT_FALSE(Unicode()->GetGlyphName(CodeOf(u"AB"), name)) << "two units have no glyph";
    Unicode()->GetGlyphNameTable(CodeOf(u""), names);
    EXPECT_TRUE(names.IsEmpty());
}

TEST(GUnicodeEncoding, CodesOfGlyphNames) {
    const std::pair<const char*, std::u16string_view> rows[] = {{"A", u"A"},
                                                                {"Euro", u"\u20AC"},
                                                                {"euro", u"\u20AC"},
                                                                {"zukatakana", u"\u30BA"},
                                                                {"dalethatafpatah", u"\u05D3\u05B2"}};
    GCharCode code;
    for (const auto& [glyph, units] : rows) {
        EXPECT_TRUE(Unicode()->GetCharCode(GBuffer(glyph), code)) << glyph;
        EXPECT_TRUE(code == CodeOf(units)) << glyph;
    }
    EXPECT_FALSE(Unicode()->GetCharCode(GBuffer("EURO"), code));
    EXPECT_FALSE(Unicode()->GetCharCode(GBuffer(), code));
    EXPECT_TRUE(code == CodeOf(u"\u05D3\u05B2")) << "a failing call leaves its output";
}

TEST(GUnicodeEncoding, CompatibilityCharacters) {
    const std::tuple<const char*, char16_t, char16_t> rows[] = {
        {"the first of the table", u'\u00A0', u' '},
        {"superscript two", u'\u00B2', u'2'},
        {"full-width letter", u'\uFF21', u'A'},
        {"half-width katakana", u'\uFF71', u'\u30A2'},
    };
    GCharCode plain;
    for (const auto& [what, unit, expected] : rows) {
        EXPECT_TRUE(Unicode()->GetCompatChar(CodeOf(std::u16string(1, unit)), plain)) << what;
        EXPECT_TRUE(plain == CodeOf(std::u16string(1, expected))) << what;
    }
    EXPECT_FALSE(Unicode()->GetCompatChar(CodeOf(u"A"), plain));
    EXPECT_FALSE(Unicode()->GetCompatChar(CodeOf(u"\uFB01"), plain)) << "a ligature is two letters";
    EXPECT_FALSE(Unicode()->GetCompatChar(CodeOf(u""), plain));
    EXPECT_TRUE(plain == CodeOf(u"\u30A2")) << "a failing call leaves its output";
}

TEST(GUnicodeEncoding, DictionariesAreBuiltAgainAfterFinalizeByAnyThread) {
    GUnicodeEncoding::Initialize();
    GUnicodeEncoding::Finalize();
    std::vector<GBuffer> found(4);
    {
        std::vector<std::jthread> threads;
        for (GBuffer& name : found)
            threads.emplace_back([&name] { Unicode()->GetGlyphName(CodeOf(u"\u20AC"), name); });
    }
    GUnicodeEncoding::Finalize();
    GUnicodeEncoding::Finalize();
    EXPECT_THAT(found, testing::Each(GBuffer("Euro"))) << "names outlive the dictionaries";
}

}  // namespace
