#include "framework/core/GRegEx.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "framework/core/GException.h"
#include "tests/core/TextForTests.h"

namespace {

std::vector<std::u16string> FindGroups(const GRegEx& expression, const GString& text) {
    std::vector<std::u16string> result;
    GRange match;
    GTable<GString> groups;
    if (expression.Find(text, 0, match, groups))
        for (const GString& group : groups) result.push_back(UnitsOf(group));
    return result;
}

TEST(GRegEx, MatchesWholeTexts) {
    const struct {
        const char* what;
        const char16_t* expression;
        const char16_t* text;
        bool ignoreCase;
        bool matches;
    } rows[] = {
        {"the same letters", u"abc", u"abc", false, true},
        {"a part only", u"abc", u"abcd", false, false},
        {"nothing", u"", u"", false, true},
        {"case", u"abc", u"aBc", false, false},
        {"case ignored", u"abc", u"aBc", true, true},
        {"case ignored beyond ASCII", u"\u00E4\u0436", u"\u00C4\u0416", true, true},
        {"case ignored in a range", u"[\u0430-\u044F]+", u"\u0416\u0410", true, true},
        {"a range goes by code", u"[a-z]", u"\u00E9", false, false},
        {"a word character beyond ASCII", u"\\w+", u"Gr\u00FC\u00DFe_1", false, true},
        {"punctuation is no word character", u"\\w", u"-", false, false},
        {"a digit of another script", u"\\d", u"\u0661", false, true},
        {"white space", u"\\s+", u" \t\r\n\u00A0\u3000", false, true},
        {"no white space", u"\\S", u" ", false, false},
        {"named classes", u"[[:upper:]][[:lower:]][[:digit:]][[:punct:]][[:xdigit:]]", u"Ab1!f", false, true},
        {"a capital is not lower case", u"[[:lower:]]", u"A", false, false},
        {"a code in hexadecimal digits", u"\\x{20AC}", u"\u20AC", false, true},
        {"a surrogate pair is two characters", u"..", u"\xD83D\xDE00", false, true},
        {"a back reference", u"(a+)-\\1", u"aa-aa", false, true},
        {"alternatives and counts", u"(cat|dog){2}s?", u"catdogs", false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(GRegEx(StringOf(row.expression), row.ignoreCase).Matches(StringOf(row.text)), row.matches);
    }
}

TEST(GRegEx, FindsTheFirstMatchFromAPositionOn) {
    const GRegEx number(GString("\\d+"));
    const struct {
        long start;
        bool found;
        GRange match;
    } rows[] = {
        {-5, true, {1, 2}}, {0, true, {1, 2}}, {1, true, {1, 2}}, {2, true, {2, 2}}, {3, true, {4, 6}},
        {6, true, {6, 6}},  {7, false, {}},    {8, false, {}},    {9, false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.start);
        GRange match;
        EXPECT_EQ(number.Find(GString("a12b345c"), row.start, match), row.found);
        EXPECT_TRUE(match == row.match);
    }
}

TEST(GRegEx, WhatStandsBeforeTheStartCountsForBoundaries) {
    GRange match;
    EXPECT_FALSE(GRegEx(GString("\\bcat")).Find(GString("concat"), 3, match));
    EXPECT_FALSE(GRegEx(GString("\\Aa")).Find(GString("aa"), 1, match));
    EXPECT_TRUE(GRegEx(GString("cat")).Find(GString("concat"), 3, match));
    EXPECT_TRUE(match == GRange(3, 5));
}

TEST(GRegEx, AMatchOfNothingHasAPosition) {
    GRange match;
    ASSERT_TRUE(GRegEx(GString("x*")).Find(GString("ab"), 1, match));
    EXPECT_TRUE(match.IsEmpty());
    EXPECT_EQ(match.GetFirst(), 1);
}

TEST(GRegEx, GivesTheTextsOfGroups) {
    const GRegEx expression(GString("(\\w+)=(\\d+)?(;)?"));
    EXPECT_EQ(expression.GetGroupCount(), 3);
    EXPECT_THAT(FindGroups(expression, GString("  key=42;")),
                testing::ElementsAre(u"key=42;", u"key", u"42", u";"));
    EXPECT_THAT(FindGroups(expression, GString("key=")), testing::ElementsAre(u"key=", u"key", u"", u""));
    EXPECT_THAT(FindGroups(expression, GString("none")), testing::IsEmpty());
}

TEST(GRegEx, AFailedSearchLeavesItsOutputs) {
    GRange match(7, 8);
    GTable<GString> groups;
    groups.Append(GString("old"));
    EXPECT_FALSE(GRegEx(GString("x")).Find(GString("abc"), 0, match, groups));
    EXPECT_TRUE(match == GRange(7, 8));
    EXPECT_EQ(groups.GetCount(), 1);
}

TEST(GRegEx, ReplacesAllMatches) {
    const struct {
        const char* what;
        const char* expression;
        const char* text;
        const char* with;
        const char* result;
    } rows[] = {
        {"no match", "x", "abc", "-", "abc"},
        {"every match", "b", "abcb", "-", "a-c-"},
        {"removal", "[aeiou]", "education", "", "dctn"},
        {"groups", "(\\w+) (\\w+)", "one two", "$2 $1", "two one"},
        {"groups with a backslash", "(a)(b)", "ab", "\\2\\1", "ba"},
        {"the match", "b+", "abbc", "<$&>", "a<bb>c"},
        {"a match of nothing", "x*", "ab", "-", "-a-b-"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_TRUE(GRegEx(GString(row.expression)).Replace(GString(row.text), GString(row.with)) ==
                    GString(row.result));
    }
}

TEST(GRegEx, MalformedExpressionsAreRefused) {
    for (const char* expression : {"(", "[a", "a{2,1}", "*a", "(?<", "[[:nosuch:]]", "\\"}) {
        SCOPED_TRACE(expression);
        EXPECT_THROW(GRegEx{GString(expression)}, GCustomException);
    }
}

TEST(GRegEx, AnExpressionThatWouldTakeForEverGivesUp) {
    const GRegEx expression(GString("(a|aa|a?)+$"));
    GString text;
    for (int i = 0; i < 60; ++i) text += GString("aaaa");
    text += GString("b");
    EXPECT_THROW(expression.Matches(text), GCustomException);
}

TEST(GRegEx, CanBeMoved) {
    GRegEx first(GString("a+"));
    GRegEx second(std::move(first));
    EXPECT_TRUE(second.Matches(GString("aaa")));
    first = GRegEx(GString("b"));
    EXPECT_TRUE(first.Matches(GString("b")));
}

}  // namespace
