#include "framework/core/patterns/GRegEx.h"

#include "framework/core/errors/GException.h"
#include "tests/core/TextForTests.h"

TEST(GRegEx, MatchesWholeTexts) {
    // Case and classes know more than ASCII, ranges go by code, a surrogate pair is two characters.
    ForEachRow<2>(
        {u" -> ", u"(?i)\u00E4\u0436 -> \u00C4\u0416", u"(?i)[\u0430-\u044F]+ -> \u0416\u0410",
         u"\\w+ -> Gr\u00FC\u00DFe_1", u"\\d -> \u0661", u"\\s+ ->  \t\r\n\u00A0\u3000",
         u"[[:upper:]][[:lower:]][[:digit:]][[:punct:]][[:xdigit:]] -> Ab1!f",
         u"\\x{20AC}\\x{fFaA}\\xAg -> \u20AC\uFFAA\ng", u"[[:CNTRL:]]{4} -> \x1F\x7F\x80\x9F",
         u"[[:unicode:]] -> \u0100", u".. -> \xD83D\xDE00", u"(a+)-\\1 -> aa-aa",
         u"(cat|dog){2}s? -> catdogs"},
        [&](auto expression, auto text) { EXPECT_TRUE(GRegEx(Text(expression)).Matches(Text(text))); });
    ForEachRow<2>(
        {u"abc -> abcd", u"abc -> aBc", u"[a-z] -> \u00E9", u"\\w -> -", u"\\S ->  ",
         u"[[:unicode:][:cntrl:]] -> \u00FF", u"[[:unicode:][:cntrl:]] -> \u00A0", u"[[:xdigit:]] -> g"},
        [&](auto expression, auto text) { EXPECT_FALSE(GRegEx(Text(expression)).Matches(Text(text))); });
    GRegEx moved(GString("abc"), true);
    EXPECT_TRUE(GRegEx(std::move(moved)).Matches(GString("aBc")));
}

TEST(GRegEx, FindsTheFirstMatchFromAPositionOn) {
    // An expression, a text, where the search starts, and the match; none leaves the range as it was. What
    // stands before the start counts for a word's start and for the text's.
    ForEachRow<4>(
        {u"\\d+ -> a12b345c -> -5 -> 1 2", u"\\d+ -> a12b345c -> 1 -> 1 2", u"\\d+ -> a12b345c -> 2 -> 2 2",
         u"\\d+ -> a12b345c -> 3 -> 4 6", u"\\d+ -> a12b345c -> 7 -> none",
         u"\\d+ -> a12b345c -> 2147483647 -> none", u"\\bcat -> concat -> 3 -> none",
         u"\\Aa -> aa -> 1 -> none", u"cat -> concat -> 3 -> 3 5", u"x* -> ab -> 1 -> 1 0"},
        [](auto expression, auto text, auto start, auto expected) {
            GRange match(7, 8);
            const bool found = GRegEx(Text(expression)).Find(Text(text), Text(start).GetInt32(), match);
            const GString ends = GString(match.GetFirst()) + GString(" ") + GString(match.GetLast());
            EXPECT_EQ(Plain(ends), found ? expected : u"7 8");
            EXPECT_EQ(found, expected != u"none");
        });
}

TEST(GRegEx, GivesTheTextsOfGroups) {
    const GRegEx expression(GString("(\\w+)=(\\d+)?(;)?"));
    EXPECT_EQ(expression.GetGroupCount(), 3);
    const std::pair<const char*, GTable<GString>> rows[] = {
        {"  key=42;", {"key=42;", "key", "42", ";"}}, {"key=", {"key=", "key", "", ""}}, {"none", {"old"}}};
    for (const auto& [text, expected] : rows) {
        GRange match;
        GTable<GString> groups{"old"};
        EXPECT_EQ(expression.Find(GString(text), 0, match, groups), expected.GetCount() == 4) << text;
        EXPECT_TRUE(groups == expected) << text;
    }
}

TEST(GRegEx, ReplacesAllMatches) {
    ForEachRow<4>({u"b -> abcb -> - -> a-c-", u"[aeiou] -> education ->  -> dctn",
                   u"(\\w+) (\\w+) -> one two -> $2 $1 -> two one", u"(a)(b) -> ab -> \\2\\1 -> ba",
                   u"b+ -> abbc -> <$&> -> a<bb>c", u"x* -> ab -> - -> -a-b-"},
                  [&](auto expression, auto text, auto with, auto result) {
                      EXPECT_EQ(Plain(GRegEx(Text(expression)).Replace(Text(text), Text(with))), result);
                  });
}

TEST(GRegEx, RefusesWhatIsMalformedOrTooDeepAndGivesUpWhatWouldTakeForEver) {
    const std::string deep = std::string(100000, '(') + std::string(100000, ')');
    for (const char* expression : {"(", "[a", "a{2,1}", "*a", "(?<", "[[:nosuch:]]", "\\", deep.c_str()})
        EXPECT_THROW(GRegEx{GString(expression)}, GCustomException) << std::string(expression, 0, 20);
    const GRegEx slow(GString("(a|aa|a?)+$"));
    EXPECT_THROW(slow.Matches(GString((std::string(240, 'a') + "b").c_str())), GCustomException);
}
