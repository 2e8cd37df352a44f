#include "framework/core/GStringPool.h"

#include <gtest/gtest.h>

#include "framework/core/GLngString.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GShiftJISEncoding.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GUnicodeEncoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TestText.h"

namespace {

constexpr GStringPoolRow cEnglish[] = {
    {70000001, "Delete %1"}, {70000002, "Launch"}, {70000003, "%1 of %2"}, {70000009, "last"}};
constexpr GStringPoolRow cGerman[] = {{70000003, "%2 hat %1"}, {70000001, "%1 l\xF6schen f\xFCr 5 \x80"}};

/// Registers some texts for the length of a test.
class GStringPoolTest : public ::testing::Test {
protected:
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

TEST_F(GStringPoolTest, FindsTextsByNumberInTheCurrentLanguage) {
    EXPECT_EQ(GStringPoolSupport::GetCurrentLanguage(), "enUS");
    EXPECT_EQ(Pooled(70000001), u"Delete %1");
    EXPECT_EQ(Pooled(70000009), u"last");
    GStringPoolSupport::SetCurrentLanguage("deDE");
    EXPECT_EQ(Pooled(70000001), u"%1 l\u00F6schen f\u00FCr 5 \u20AC");
    EXPECT_EQ(Pooled(70000003), u"%2 hat %1");
}

TEST_F(GStringPoolTest, FallsBackToEnglish) {
    GStringPoolSupport::SetCurrentLanguage("deDE");
    EXPECT_EQ(Pooled(70000002), u"Launch");
    GStringPoolSupport::SetCurrentLanguage("jaJP");
    EXPECT_EQ(Pooled(70000001), u"Delete %1");
}

TEST_F(GStringPoolTest, NamesANumberWithoutAText) {
    GString text("before");
    for (const long id : {70000000L, 70000004L, 70000010L, 0L, -1L}) {
        SCOPED_TRACE(id);
        EXPECT_FALSE(GStringPoolSupport::FindString(id, text));
        EXPECT_EQ(Plain(text), u"before");
    }
    EXPECT_EQ(Pooled(70000004), u"Message 70000004");
    EXPECT_EQ(Pooled(-1), u"Message -1");
}

TEST_F(GStringPoolTest, AsksTheLatestRegistrationFirst) {
    static constexpr GStringPoolRow cNewer[] = {{70000002, "Start"}};
    GStringPoolSupport::Register("enUS", "WinAnsiEncoding", cNewer, 1);
    EXPECT_EQ(Pooled(70000002), u"Start");
    EXPECT_EQ(Pooled(70000009), u"last");
    GStringPoolSupport::Unregister(cNewer);
    EXPECT_EQ(Pooled(70000002), u"Launch");
}

TEST_F(GStringPoolTest, RegistersTheSameRowsOnce) {
    GStringPoolSupport::Register("enUS", "WinAnsiEncoding", cEnglish, 4);
    GStringPoolSupport::Unregister(cEnglish);
    EXPECT_EQ(Pooled(70000002), u"Message 70000002");
}

TEST_F(GStringPoolTest, ReadsEachPoolInItsEncoding) {
    alignas(2) static constexpr char cUTF16[] = "\x42\x30\x44\x30\0\0";
    const struct {
        const char* encoding;
        const char* bytes;
        std::u16string_view text;
    } rows[] = {
        {"WinAnsiEncoding", "\x80\xE4", u"\u20AC\u00E4"},
        {"MacRomanEncoding", "\x8A", u"\u00E4"},
        {"UTF8Encoding", "\xE2\x82\xAC", u"\u20AC"},
        {"UnicodeEncoding", cUTF16, u"\u3042\u3044"},
        {"ShiftJISEncoding", "\x82\xA0", u"\u3042"},
        {"UTF-8Encoding", "plain", u"plain"},
        {"", "plain", u"plain"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.encoding);
        const GStringPoolRow pooled[] = {{1, row.bytes}};
        const GStringPool pool("xxXX", row.encoding, pooled, 1);
        GString text;
        ASSERT_TRUE(pool.Find(1, text));
        EXPECT_EQ(Plain(text), row.text);
    }
}

TEST_F(GStringPoolTest, FindsInUnsortedRowsAndTakesTheFirstOfEqualNumbers) {
    static constexpr GStringPoolRow cUnsorted[] = {{9, "nine"}, {1, "one"}, {5, "five"}, {1, "again"}};
    static constexpr GStringPoolRow cDouble[] = {{1, "one"}, {1, "again"}, {2, nullptr}};
    GString text;
    const GStringPool unsorted("xxXX", "WinAnsiEncoding", cUnsorted, 4);
    EXPECT_TRUE(unsorted.Find(9, text));
    EXPECT_EQ(Plain(text), u"nine");
    EXPECT_TRUE(unsorted.Find(1, text));
    EXPECT_EQ(Plain(text), u"one");
    EXPECT_FALSE(unsorted.Find(2, text));
    const GStringPool twice("xxXX", "WinAnsiEncoding", cDouble, 3);
    EXPECT_TRUE(twice.Find(1, text));
    EXPECT_EQ(Plain(text), u"one");
    EXPECT_FALSE(twice.Find(2, text)) << "a row without a text";
}

TEST_F(GStringPoolTest, ToleratesPoolsWithoutRows) {
    GString text;
    EXPECT_FALSE(GStringPool("xxXX", "WinAnsiEncoding", nullptr, 5).Find(1, text));
    EXPECT_FALSE(GStringPool("xxXX", "WinAnsiEncoding", cEnglish, -1).Find(70000001, text));
}

TEST_F(GStringPoolTest, KnowsTheEncodingsOfStringFiles) {
    EXPECT_EQ(GStringPoolSupport::GetEncoding("WinAnsiEncoding"), GWinAnsiEncoding::GetInstance());
    EXPECT_EQ(GStringPoolSupport::GetEncoding("MacRomanEncoding"), GMacRomanEncoding::GetInstance());
    EXPECT_EQ(GStringPoolSupport::GetEncoding("UnicodeEncoding"), GUnicodeEncoding::GetInstance());
    EXPECT_EQ(GStringPoolSupport::GetEncoding("ShiftJISEncoding"), GShiftJISEncoding::GetInstance());
    EXPECT_EQ(GStringPoolSupport::GetEncoding("UTF8Encoding"), GUTF8Encoding::GetInstance());
    for (const char* other : {"UTF-8Encoding", "ASCIIEncoding", "PDFDocEncoding", "winansiencoding", ""}) {
        SCOPED_TRACE(other);
        EXPECT_EQ(GStringPoolSupport::GetEncoding(other), nullptr);
    }
}

TEST_F(GLngStringTest, IsReadInTheLanguageOfTheMoment) {
    GLngString text(70000003);
    text.AddParam(Text(u"3")).AddParam(Text(u"7"));
    EXPECT_EQ(Read(text), u"3 of 7");
    GStringPoolSupport::SetCurrentLanguage("deDE");
    EXPECT_EQ(Read(text), u"7 hat 3");
}

TEST_F(GLngStringTest, SubstitutesOnlyWhatItWasGiven) {
    EXPECT_EQ(Read(GLngString(70000003)), u"%1 of %2");
    EXPECT_EQ(Read(GLngString(70000003).AddParam(Text(u"%2"))), u"%2 of %2");
    EXPECT_EQ(Read(GLngString(70000003).AddParam(Text(u"%2")).AddParam(Text(u"x"))), u"%2 of x");
    EXPECT_EQ(Read(GLngString(Text(u"plain %1")).AddParam(Text(u"p"))), u"plain p");
    EXPECT_EQ(Read(GLngString(Text(u"plain %1"))), u"plain %1");
}

TEST_F(GLngStringTest, KnowsWhenItIsEmpty) {
    EXPECT_TRUE(GLngString().IsEmpty());
    EXPECT_TRUE(GLngString(0).IsEmpty());
    EXPECT_TRUE(GLngString(GString()).IsEmpty());
    EXPECT_TRUE(GLngString().AddParam(Text(u"p")).IsEmpty());
    EXPECT_FALSE(GLngString(70000002).IsEmpty());
    EXPECT_FALSE(GLngString(Text(u"x")).IsEmpty());
    EXPECT_EQ(Read(GLngString()), u"");
}

TEST_F(GLngStringTest, JoinsPartsWithTheirParameters) {
    GLngString text(70000001);
    text.AddParam(Text(u"a"));
    text += Text(u": ");
    text += GLngString(70000003).AddParam(Text(u"1")).AddParam(Text(u"2"));
    EXPECT_EQ(Read(text), u"Delete a: 1 of 2");
    EXPECT_EQ(text.GetID(), 70000001);
    text += text;
    EXPECT_EQ(Read(text), u"Delete a: 1 of 2Delete a: 1 of 2");
    text += GLngString();
    text += GString();
    EXPECT_EQ(Read(text), u"Delete a: 1 of 2Delete a: 1 of 2");
    EXPECT_EQ(Read(GLngString() + GLngString(70000002)), u"Launch");
    EXPECT_EQ((GLngString(Text(u"x")) + GLngString(70000002)).GetID(), 70000002);
    EXPECT_EQ(GLngString(Text(u"x")).GetID(), 0);
}

TEST_F(GLngStringTest, ChangedCopiesPartWithTheOriginal) {
    const GLngString original(70000003);
    GLngString copy = original;
    copy.AddParam(Text(u"1"));
    GLngString longer = copy;
    longer += Text(u"!");
    EXPECT_EQ(Read(original), u"%1 of %2");
    EXPECT_EQ(Read(copy), u"1 of %2");
    EXPECT_EQ(Read(longer), u"1 of %2!");
    copy = original;
    EXPECT_EQ(Read(copy), u"%1 of %2");
    GLngString moved = std::move(longer);
    EXPECT_EQ(Read(moved), u"1 of %2!");
}
