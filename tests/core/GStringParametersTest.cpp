#include <gtest/gtest.h>

#include "framework/core/GString.h"
#include "framework/core/GTable.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TextForTests.h"

namespace {

const GEncoding* WinAnsi() {
    return GWinAnsiEncoding::GetInstance();
}

TEST(GString, SubstitutesParameters) {
    const struct {
        const char* what;
        const char* text;
        std::vector<const char*> parameters;
        const char* result;
    } rows[] = {
        {"by number", "%1 of %2", {"3", "7"}, "3 of 7"},
        {"by number, the other way round", "%2 of %1", {"3", "7"}, "7 of 3"},
        {"a number twice", "%1%1", {"a", "b"}, "aa"},
        {"a number without a parameter", "%3", {"a", "b"}, "%3"},
        {"number zero", "%0", {"a", "b"}, "%0"},
        {"in order", "%s-%s-%s", {"a", "b"}, "a-b-%s"},
        {"in order and by number", "%s %1 %s", {"a", "b"}, "a a b"},
        {"at the end", "100%", {"a", "b"}, "100%"},
        {"two signs", "%%1", {"a", "b"}, "%a"},
        {"anything else", "%d %x %", {"a", "b"}, "%d %x %"},
        {"a marker in a parameter", "%1 %2", {"%2", "%1"}, "%2 %1"},
        {"halves of a marker", "%%1", {"1", "b"}, "%1"},
        {"an empty parameter", "<%1>", {"", "b"}, "<>"},
        {"none", "abc", {"a", "b"}, "abc"},
        {"nothing", "", {"a", "b"}, ""},
        {"the ninth", "%9", {"1", "2", "3", "4", "5", "6", "7", "8", "i"}, "i"},
        {"two digits are one and a digit", "%10", {"x", "y"}, "x0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        std::vector<GString> texts(row.parameters.begin(), row.parameters.end());
        GTable<const GString*> table;
        for (const GString& text : texts) table.Append(&text);
        GString text(row.text);
        EXPECT_EQ(&text.SubstituteParams(table), &text);
        EXPECT_TRUE(text == GString(row.result));
        if (texts.size() != 2) continue;
        text.Set(row.text);
        EXPECT_TRUE(text.SubstituteParams(texts[0], texts[1]) == GString(row.result));
        text.Set(row.text);
        EXPECT_TRUE(text.SubstituteParams(2, &texts[0], &texts[1]) == GString(row.result));
    }
}

TEST(GString, SubstitutesOneOrThreeParametersAndNulls) {
    GString text("%1-%2-%3");
    EXPECT_TRUE(text.SubstituteParams(GString("a")) == GString("a-%2-%3"));
    text.Set("%1-%2-%3");
    EXPECT_TRUE(text.SubstituteParams(GString("a"), GString("b"), GString("c")) == GString("a-b-c"));
    GTable<const GString*> withNull;
    withNull.Append(nullptr);
    text.Set("%1-%s");
    EXPECT_TRUE(text.SubstituteParams(withNull) == GString("%1-%s"));
    EXPECT_TRUE(text.SubstituteParams(0) == GString("%1-%s"));
    text.Set("e%1");
    EXPECT_EQ(UnitsOf(text.SubstituteParams(StringOf(u"\u0301"))), u"\u00E9") << "the result is composed";
    text.Set("%1");
    text.SubstituteParams(GString("\xE9", WinAnsi()));
    EXPECT_EQ(UnitsOf(text), u"\u00E9");
}

TEST(GString, CountsSubstitutes) {
    const struct {
        const char* text;
        long count;
    } rows[] = {{"", 0}, {"%", 0}, {"%1", 1}, {"%0", 0}, {"%9%s", 2}, {"%%1", 1}, {"100%", 0}, {"%S %d", 0}};
    for (const auto& row : rows) EXPECT_EQ(GString(row.text).GetNumSubstitutes(), row.count) << row.text;
}

}  // namespace
