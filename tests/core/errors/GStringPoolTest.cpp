#include "framework/core/errors/GStringPool.h"

#include "framework/core/errors/GLngString.h"
#include "tests/core/encodings/EncodingForTests.h"

namespace {

constexpr GStringPoolRow cEnglish[] = {
    {70000001, "Delete %1"}, {70000002, "Launch"}, {70000003, "%1 of %2"}, {70000009, "last"}};
constexpr GStringPoolRow cGerman[] = {{70000003, "%2 hat %1"}, {70000001, "%1 l\xF6schen f\xFCr 5 \x80"}};

/// Registers some texts for the length of a test.
struct GStringPoolTest : testing::Test {
    GStringPoolTest() {
        GStringPoolSupport::Register("enUS", "WinAnsiEncoding", cEnglish, 4);
        GStringPoolSupport::Register("deDE", "WinAnsiEncoding", cGerman, 2);
    }
    ~GStringPoolTest() override {
        GStringPoolSupport::Unregister(cEnglish);
        GStringPoolSupport::Unregister(cGerman);
        GStringPoolSupport::SetCurrentLanguage("enUS");
    }
};

using GLngStringTest = GStringPoolTest;

std::u16string Pooled(long id) {
    return Plain(GStringPoolSupport::GetString(id));
}

std::u16string Read(const GLngString& text) {
    return Plain(text.GetString());
}

}  // namespace

TEST_F(GStringPoolTest, FindsTextsByNumberInTheCurrentLanguageOrEnglish) {
    EXPECT_EQ(GStringPoolSupport::GetCurrentLanguage(), "enUS");
    ForEachRow<3>({u"enUS -> 70000001 -> Delete %1", u"enUS -> 70000009 -> last",
                   u"deDE -> 70000003 -> %2 hat %1", u"deDE -> 70000001 -> %1 l\u00F6schen f\u00FCr 5 \u20AC",
                   u"deDE -> 70000002 -> Launch", u"jaJP -> 70000001 -> Delete %1",
                   u"enUS -> 70000000 -> Message 70000000", u"enUS -> 70000004 -> Message 70000004",
                   u"enUS -> 70000010 -> Message 70000010", u"enUS -> -1 -> Message -1"},
                  [&](auto language, auto id, auto text) {
                      GStringPoolSupport::SetCurrentLanguage(Text(language).GetBuffer(ASCII()));
                      EXPECT_EQ(Pooled(Text(id).GetInt32()), text);
                  });
    GString text("before");
    EXPECT_FALSE(GStringPoolSupport::FindString(0, text));
    EXPECT_EQ(Plain(text), u"before");
}

TEST_F(GStringPoolTest, AsksTheLatestRegistrationFirstAndKnowsTheSameRowsOnce) {
    static constexpr GStringPoolRow cNewer[] = {{70000002, "Start"}};
    GStringPoolSupport::Register("enUS", "WinAnsiEncoding", cNewer, 1);
    GStringPoolSupport::Register("enUS", "WinAnsiEncoding", cEnglish, 4);
    EXPECT_EQ(Pooled(70000002), u"Start");
    EXPECT_EQ(Pooled(70000009), u"last");
    GStringPoolSupport::Unregister(cNewer);
    EXPECT_EQ(Pooled(70000002), u"Launch");
    GStringPoolSupport::Unregister(cEnglish);
    EXPECT_EQ(Pooled(70000002), u"Message 70000002");
}

TEST_F(GStringPoolTest, ReadsEachPoolInItsEncoding) {
    alignas(2) static constexpr char cUTF16[] = "\x42\x30\x44\x30\0\0";
    const std::tuple<const char*, const GEncoding*, const char*, std::u16string> rows[] = {
        {"WinAnsiEncoding", WinAnsi(), "\x80\xE4", u"\u20AC\u00E4"},
        {"MacRomanEncoding", MacRoman(), "\x8A", u"\u00E4"},
        {"UTF8Encoding", UTF8(), "\xE2\x82\xAC", u"\u20AC"},
        {"UnicodeEncoding", Unicode(), cUTF16, u"\u3042\u3044"},
        {"ShiftJISEncoding", ShiftJIS(), "\x82\xA0", u"\u3042"},
        {"UTF-8Encoding", nullptr, "plain", u"plain"},
        {"ASCIIEncoding", nullptr, "plain", u"plain"},
        {"winansiencoding", nullptr, "plain\x80", u"plain@"},
        {"", nullptr, "plain", u"plain"}};
    for (const auto& [name, encoding, bytes, expected] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(GStringPoolSupport::GetEncoding(name), encoding);
        const GStringPoolRow pooled[] = {{1, bytes}};
        GString text;
        ASSERT_TRUE(GStringPool("xxXX", name, pooled, 1).Find(1, text));
        EXPECT_EQ(Plain(text), expected);
    }
}

TEST_F(GStringPoolTest, FindsInRowsOfAnyOrder) {
    static constexpr GStringPoolRow cUnsorted[] = {{9, "nine"}, {1, "one"}, {5, "five"}, {1, "again"}};
    static constexpr GStringPoolRow cDouble[] = {{1, "one"}, {1, "again"}, {2, nullptr}};
    const std::tuple<const char*, const GStringPoolRow*, long, long, const char*> rows[] = {
        {"the first of unsorted ones", cUnsorted, 4, 9, "nine"},
        {"the first of equal unsorted ones", cUnsorted, 4, 1, "one"},
        {"none of unsorted ones", cUnsorted, 4, 2, "before"},
        {"the first of equal ones", cDouble, 3, 1, "one"},
        {"a row without a text", cDouble, 3, 2, "before"},
        {"no rows", nullptr, 5, 1, "before"},
        {"a negative count", cDouble, -1, 1, "before"}};
    for (const auto& [what, pooled, count, id, expected] : rows) {
        SCOPED_TRACE(what);
        GString text("before");
        const GStringPool pool("xxXX", "WinAnsiEncoding", pooled, count);
        EXPECT_EQ(pool.Find(id, text), expected != std::string("before"));
        EXPECT_TRUE(text == GString(expected));
    }
}

TEST_F(GLngStringTest, IsReadInTheLanguageOfTheMomentWithWhatItWasGiven) {
    const GString two = Text(u"%2");
    const std::tuple<GLngString, std::u16string, std::u16string> rows[] = {
        {GLngString(70000003), u"%1 of %2", u"%2 hat %1"},
        {GLngString(70000003).AddParam(Text(u"3")).AddParam(Text(u"7")), u"3 of 7", u"7 hat 3"},
        {GLngString(70000003).AddParam(two), u"%2 of %2", u"%2 hat %2"},
        {GLngString(70000003).AddParam(two).AddParam(Text(u"x")), u"%2 of x", u"x hat %2"},
        {GLngString(Text(u"plain %1")).AddParam(Text(u"p")), u"plain p", u"plain p"},
        {GLngString(Text(u"plain %1")), u"plain %1", u"plain %1"}};
    for (const auto& [text, english, german] : rows) {
        GStringPoolSupport::SetCurrentLanguage("enUS");
        EXPECT_EQ(Read(text), english);
        GStringPoolSupport::SetCurrentLanguage("deDE");
        EXPECT_EQ(Read(text), german);
        EXPECT_FALSE(text.IsEmpty());
    }
    const auto beyond32Bits = static_cast<long>(0x100000000LL);
    for (const GLngString& empty : {GLngString(), GLngString(0), GLngString(beyond32Bits),
                                    GLngString(GString()), GLngString().AddParam(Text(u"p"))}) {
        EXPECT_TRUE(empty.IsEmpty());
        EXPECT_EQ(Read(empty), u"");
    }
}

TEST_F(GLngStringTest, JoinsPartsWithTheirParameters) {
    GLngString text(70000001);
    text.AddParam(Text(u"a"));
    text += Text(u": ");
    text += GLngString(70000003).AddParam(Text(u"1")).AddParam(Text(u"2"));
    text += text;
    text += GLngString();
    const GLngString copy(text);
    text += GString("!");
    EXPECT_EQ(Read(copy), u"Delete a: 1 of 2Delete a: 1 of 2") << "changed copies part";
    EXPECT_EQ(Read(text), Read(copy) + u"!");
    EXPECT_EQ(text.GetID(), 70000001);
    EXPECT_EQ(Read(GLngString() + GLngString(70000002)), u"Launch");
    EXPECT_EQ((GLngString(Text(u"x")) + GLngString(70000002)).GetID(), 70000002);
    EXPECT_EQ(GLngString(Text(u"x")).GetID(), 0);
}
