#include <gtest/gtest.h>

#include <string>

#include "framework/core/GPathName.h"
#include "tests/core/TestText.h"

namespace {

std::u16string Valid(std::u16string_view title, long maxLength = -1, char16_t replacement = u'_') {
    GString name = Text(title);
    GPathName::CreateValidFileName(name, maxLength, replacement);
    return Plain(name);
}

/// What becomes of the name when its extension is taken off and another one put on.
std::u16string JobFileName(std::u16string_view title) {
    std::u16string name = Valid(title);
    if (const auto dot = name.rfind(u'.'); dot != name.npos) name.resize(dot);
    return name + u".ps";
}

std::u16string Repeated(char16_t unit, std::size_t count) {
    return std::u16string(count, unit);
}

struct TitleRow {
    std::u16string_view title;
    std::u16string_view name;
    std::u16string_view jobFile;
};

void ExpectNames(std::initializer_list<TitleRow> rows) {
    for (const TitleRow& row : rows) {
        SCOPED_TRACE(Readable(row.title));
        EXPECT_EQ(Valid(row.title), row.name);
        EXPECT_EQ(JobFileName(row.title), row.jobFile);
    }
}

}  // namespace

TEST(GValidFileName, OrdinaryTitlesStay) {
    ExpectNames({
        {u"Q3 report.docx", u"Q3 report.docx", u"Q3 report.ps"},
        {u"Untitled", u"Untitled", u"Untitled.ps"},
        {u"a.b.c", u"a.b.c", u"a.b.ps"},
        {u"a .docx", u"a .docx", u"a .ps"},
        {u"a..docx", u"a..docx", u"a..ps"},
        {u" leading blank", u" leading blank", u" leading blank.ps"},
        {u"100% [final] {x} & co; it's, done=1 @home #2!", u"100% [final] {x} & co; it's, done=1 @home #2!",
         u"100% [final] {x} & co; it's, done=1 @home #2!.ps"},
        {u"Gr\u00FC\u00DFe aus K\u00F6ln", u"Gr\u00FC\u00DFe aus K\u00F6ln",
         u"Gr\u00FC\u00DFe aus K\u00F6ln.ps"},
        {u"\u6587\u66F8.pdf", u"\u6587\u66F8.pdf", u"\u6587\u66F8.ps"},
        {u"\U0001F600 party", u"\U0001F600 party", u"\U0001F600 party.ps"},
        {u"\u007F\u0080", u"\u007F\u0080", u"\u007F\u0080.ps"},
    });
}

TEST(GValidFileName, ReplacesWhatWindowsRefuses) {
    ExpectNames({
        {u"Mail: Re?.msg", u"Mail_ Re_.msg", u"Mail_ Re_.ps"},
        {u"a<b>c:d\"e/f\\g|h?i*j", u"a_b_c_d_e_f_g_h_i_j", u"a_b_c_d_e_f_g_h_i_j.ps"},
        {std::u16string_view(u"a\0b", 3), u"a_b", u"a_b.ps"},
        {u"tab\tline\r\nend\x1F!", u"tab_line__end_!", u"tab_line__end_!.ps"},
        {u"\x20\x1F\x21", u" _!", u" _!.ps"},
        {u"???", u"___", u"___.ps"},
    });
}

TEST(GValidFileName, NeverLeavesTheFolderOrTheFile) {
    ExpectNames({
        {u"..\\..\\windows\\win.ini", u".._.._windows_win.ini", u".._.._windows_win.ps"},
        {u"../../etc/passwd", u".._.._etc_passwd", u".._..ps"},
        {u"C:\\boot.ini", u"C__boot.ini", u"C__boot.ps"},
        {u"\\\\server\\share\\x", u"__server_share_x", u"__server_share_x.ps"},
        {u"\\\\?\\C:\\x", u"____C__x", u"____C__x.ps"},
        {u"report.txt:hidden", u"report.txt_hidden", u"report.ps"},
        {u"report.txt::$DATA", u"report.txt__$DATA", u"report.ps"},
        {u"/", u"_", u"_.ps"},
    });
}

TEST(GValidFileName, ReplacesDotsAndBlanksAtTheEnd) {
    ExpectNames({
        {u"Report.", u"Report_", u"Report_.ps"},
        {u"Report ", u"Report_", u"Report_.ps"},
        {u"Report. . .", u"Report_____", u"Report_____.ps"},
        {u"a.b.", u"a.b_", u"a.ps"},
    });
}

TEST(GValidFileName, IsNeverEmptyWithOrWithoutItsExtension) {
    ExpectNames({
        {u"", u"_", u"_.ps"},
        {u".", u"_", u"_.ps"},
        {u"..", u"__", u"__.ps"},
        {u"...", u"___", u"___.ps"},
        {u"   ", u"___", u"___.ps"},
        {u". .", u"___", u"___.ps"},
        {u".foo", u"_foo", u"_foo.ps"},
        {u".foo.", u"_foo_", u"_foo_.ps"},
        {u"..foo", u"_.foo", u"_.ps"},
        {u" .foo", u"_.foo", u"_.ps"},
        {u" . .foo", u"___.foo", u"___.ps"},
        {u".a.b", u".a.b", u".a.ps"},
    });
}

TEST(GValidFileName, DefusesDeviceNames) {
    ExpectNames({
        {u"CON", u"_CON", u"_CON.ps"},
        {u"prn", u"_prn", u"_prn.ps"},
        {u"Aux.txt", u"_Aux.txt", u"_Aux.ps"},
        {u"NUL.foo", u"_NUL.foo", u"_NUL.ps"},
        {u"nul.tar.gz", u"_nul.tar.gz", u"_nul.tar.ps"},
        {u"NUL .txt", u"_NUL .txt", u"_NUL .ps"},
        {u"NUL   .a.txt", u"_NUL   .a.txt", u"_NUL   .a.ps"},
        {u"NUL..", u"NUL__", u"NUL__.ps"},
        {u"NUL:", u"NUL_", u"NUL_.ps"},
        {u"NUL..txt", u"_NUL..txt", u"_NUL..ps"},
        {u"com1", u"_com1", u"_com1.ps"},
        {u"COM0.log", u"_COM0.log", u"_COM0.ps"},
        {u"LPT9", u"_LPT9", u"_LPT9.ps"},
        {u"COM\u00B9", u"_COM\u00B9", u"_COM\u00B9.ps"},
        {u"LPT\u00B2.x", u"_LPT\u00B2.x", u"_LPT\u00B2.ps"},
        {u"lpt\u00B3", u"_lpt\u00B3", u"_lpt\u00B3.ps"},
        {u"CONIN$", u"_CONIN$", u"_CONIN$.ps"},
        {u"conout$.txt", u"_conout$.txt", u"_conout$.ps"},
    });
}

TEST(GValidFileName, LeavesNamesThatOnlyLookLikeDevices) {
    ExpectNames({
        {u"CONTRACT", u"CONTRACT", u"CONTRACT.ps"},
        {u"COM", u"COM", u"COM.ps"},
        {u"COM10", u"COM10", u"COM10.ps"},
        {u"COMA", u"COMA", u"COMA.ps"},
        {u"LPT\u2074", u"LPT\u2074", u"LPT\u2074.ps"},
        {u"CONIN", u"CONIN", u"CONIN.ps"},
        {u"a.CON", u"a.CON", u"a.ps"},
        {u" NUL", u" NUL", u" NUL.ps"},
        {u"NUL x.txt", u"NUL x.txt", u"NUL x.ps"},
    });
}

TEST(GValidFileName, LeavesRoomForAnExtension) {
    EXPECT_EQ(Valid(Repeated(u'a', 251)), Repeated(u'a', 251));
    EXPECT_EQ(Valid(Repeated(u'a', 252)), Repeated(u'a', 251));
    EXPECT_EQ(Valid(Repeated(u'a', 300), 1000), Repeated(u'a', 251));
    EXPECT_EQ(Valid(Repeated(u'a', 300) + u".docx"), Repeated(u'a', 251));
    EXPECT_EQ(Valid(Repeated(u'a', 300), 0), Repeated(u'a', 251));
}

TEST(GValidFileName, CutsToTheCallersLength) {
    const struct {
        std::u16string_view title;
        long maxLength;
        std::u16string_view name;
    } rows[] = {
        {u"abcdef", 6, u"abcdef"}, {u"abcdef", 5, u"abcde"}, {u"ab. cd", 4, u"ab__"},   {u"ab.cd", 3, u"ab_"},
        {u"CONSOLE", 3, u"_CO"},   {u"NUL", 3, u"_NU"},      {u"NUL.txt", 5, u"_NUL_"}, {u".foo", 1, u"_"},
        {u"x", 1, u"x"},           {u"", 1, u"_"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.title) + " to " + std::to_string(row.maxLength));
        EXPECT_EQ(Valid(row.title, row.maxLength), row.name);
    }
}

TEST(GValidFileName, SplitsNoSurrogatePairAndKeepsLoneHalves) {
    EXPECT_EQ(Valid(u"a\U0001F600b", 2), u"a");
    EXPECT_EQ(Valid(u"a\U0001F600b", 3), u"a\U0001F600");
    EXPECT_EQ(Valid(u"\U0001F600", 1), u"_");
    EXPECT_EQ(Valid(Repeated(u'a', 250) + u"\U0001F600"), Repeated(u'a', 250));
    EXPECT_EQ(Valid(Repeated(u'a', 249) + u"\U0001F600x"), Repeated(u'a', 249) + u"\U0001F600");
    const std::u16string halves = {0xD800, u'x', 0xDC00};
    EXPECT_EQ(Valid(halves), halves);
    EXPECT_EQ(Valid(halves, 1), halves.substr(0, 1));
}

TEST(GValidFileName, ABadReplacementSpoilsNothing) {
    const struct {
        const char* what;
        std::u16string_view title;
        char16_t replacement;
        std::u16string_view name;
    } rows[] = {
        {"a refused one", u"a:b", u':', u"a_b"},
        {"a slash", u"a:b", u'/', u"a_b"},
        {"a zero", u"a:b", u'\0', u"a_b"},
        {"half of a pair", u"a:b", 0xD83D, u"a_b"},
        {"the other half", u"a:b", 0xDE00, u"a_b"},
        {"a dot inside", u"a:b", u'.', u"a.b"},
        {"a dot at the end", u"a:", u'.', u"a_"},
        {"a blank inside", u"a:b", u' ', u"a b"},
        {"a blank at the end", u"a:.", u' ', u"a__"},
        {"a dot that makes a device", u"NUL:x", u'.', u"_NUL.x"},
        {"a dot in front", u":x", u'.', u"_x"},
        {"a letter that makes a device", u"CO?", u'N', u"_CON"},
        {"a letter at the end that makes a device", u"NU.", u'L', u"_NUL"},
        {"a digit that makes a device", u"COM*", u'1', u"_COM1"},
        {"a letter in front of a device", u"NUL", u'x', u"_NUL"},
        {"another sign in front of a device", u"NUL", u'-', u"-NUL"},
        {"a superscript digit", u"COM:", 0xB9, u"\u00B9COM\u00B9"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(Valid(row.title, -1, row.replacement), row.name);
    }
}

TEST(GValidFileName, TakesTextOfAnyEncoding) {
    GString name("Mail: Re?.msg");
    GPathName::CreateValidFileName(name, -1, '_');
    EXPECT_EQ(Plain(name), u"Mail_ Re_.msg");
    GString none;
    GPathName::CreateValidFileName(none, -1, '_');
    EXPECT_EQ(Plain(none), u"_");
}
