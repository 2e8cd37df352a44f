#include "framework/core/encodings/GUnicodeEncoding.h"

#include "framework/core/containers/GTable.h"
#include "framework/core/text/GBufferSupport.h"
#include "tests/core/encodings/EncodingForTests.h"

namespace {

std::u16string Compose(std::u16string_view units) {
    GBuffer buffer = BufferOf(units);
    Unicode()->EnsureComposedUnicode(buffer);
    return Plain(buffer);
}

// Every pair is compared with the peer's in the native build; here are sequences, and what must stay.
TEST(GUnicodeEncoding, ComposesBasesWithMarks) {
    ForEachRow<2>(
        {u"e\u0301 -> \u00E9", u"e\u0323\u0302 -> \u1EC7", u"q\u0301e\u0301q\u0301 -> q\u0301\u00E9q\u0301",
         u"=\u0338 -> \u2260", u"\u304B\u3099\u30CF\u309A -> \u304C\u30D1", u"\u1112\u1161\u11AB -> \uD55C",
         u"\uAC00\u11A8 -> \uAC01", u"\u1112\u1175\u11C2 -> \uD7A3"},
        [&](auto units, auto composed) { EXPECT_EQ(Compose(units), composed); });
    for (const std::u16string_view units :
         {u"", u"\u00EA\u0323", u"q\u0301", u"e\u0336\u0301", u"\u0301e", u"\u05D0\u05B7", u"\u212B",
          u"\uAC01\u11A8", u"\uAC00\u11A7", u"\uAC00\u11C3", u"\u1113\u1161", u"\u1100\u1176",
          u"\xD83D\xDE00\u0301"})
        EXPECT_EQ(Compose(units), units);
}

// Units are looked at in groups of 8 and 64: a pair may lie in one group or across two. These have the
// first and the last of the marks that lie together.
TEST(GUnicodeEncoding, FindsAPairAtEveryPlace) {
    const std::pair<std::u16string, std::u16string> pairs[] = {
        {u"e\u0300", u"\u00E8"},      {u"\u03B1\u0345", u"\u1FB3"}, {u"\u0627\u0653", u"\u0622"},
        {u"\u1B11\u1B35", u"\u1B12"}, {u"\u304B\u3099", u"\u304C"}, {u"\u30CF\u309A", u"\u30D1"}};
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
    EXPECT_EQ(Plain(buffer), u"\u00E9");
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
    // The first of them is preferred; two units have no glyph.
    ForEachRow<2>(
        {u"A -> A", u"\u20AC -> Euro euro", u"\u00AF -> macron overscore", u"\u4E00 -> ", u"AB -> ", u" -> "},
        [](auto units, auto all) {
            GTable<GBuffer> names{"old"};
            GBuffer joined, name("old");
            Unicode()->GetGlyphNameTable(CodeOf(units), names);
            GBufferSupport::BufferTableToSeparatedBuffer(names, " ", joined);
            EXPECT_EQ(joined, Text(all).GetBuffer(ASCII()));
            EXPECT_EQ(Unicode()->GetGlyphName(CodeOf(units), name), !all.empty());
            EXPECT_EQ(name, all.empty() ? "old" : names[0]);
        });
    GCharCode code;
    EXPECT_TRUE(Unicode()->GetCharCode(GBuffer("dalethatafpatah"), code));
    EXPECT_TRUE(code == CodeOf(u"\u05D3\u05B2")) << "but one glyph's name may stand for two";
    EXPECT_TRUE(Unicode()->GetCharCode(GBuffer("euro"), code));
    EXPECT_FALSE(Unicode()->GetCharCode(GBuffer("EURO"), code));
    EXPECT_TRUE(code == CodeOf(u"\u20AC"));
}

TEST(GUnicodeEncoding, CompatibilityCharacters) {
    GCharCode plain;
    for (const std::u16string_view row : {u"\u00A0 ", u"\u00B22", u"\uFF21A", u"\uFF71\u30A2"}) {
        EXPECT_TRUE(Unicode()->GetCompatChar(CodeOf(row.substr(0, 1)), plain)) << Readable(row);
        EXPECT_TRUE(plain == CodeOf(row.substr(1))) << Readable(row);
    }
    for (const std::u16string_view none : {u"A", u"\uFB01", u""})  // a ligature is two letters
        EXPECT_FALSE(Unicode()->GetCompatChar(CodeOf(none), plain)) << Readable(none);
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
