#include "tests/core/paths/PathForTests.h"

namespace {

std::u16string Valid(std::u16string_view title, long maxLength = -1, char16_t replacement = u'_') {
    GString name = Text(title);
    GPathName::CreateValidFileName(name, maxLength, replacement);
    return Plain(name);
}

}  // namespace

TEST(GValidFileName, TitlesThatAreNamesStay) {
    for (const std::u16string_view title :
         {u"Q3 report.docx", u"Untitled", u"a.b.c", u"a .docx", u"a..docx", u" leading blank", u".a.b",
          u"100% [final] {x} & co; it's, done=1 @home #2!", u"Gr\u00FC\u00DFe aus K\u00F6ln",
          u"\u6587\u66F8.pdf", u"\U0001F600 party", u"\u007F\u0080",
          // Only like the names of devices.
          u"CONTRACT", u"COM", u"COM10", u"COMA", u"LPT\u2074", u"LPT\u00BA", u"CONIN", u"a.CON", u" NUL",
          u"NUL x.txt"})
        EXPECT_EQ(Valid(title), title);
}

TEST(GValidFileName, ReplacesWhatWindowsRefuses) {
    ForEachRow<2>({u"a<b>c:d\"e/f\\g|h?i*j -> a_b_c_d_e_f_g_h_i_j",
                   u"tab\tline\r\nend\x1F! -> tab_line__end_!", u"\x20\x1F\x21 ->  _!",
                   // What leads elsewhere.
                   u"..\\..\\windows\\win.ini -> .._.._windows_win.ini", u"\\\\?\\C:\\x -> ____C__x",
                   u"report.txt::$DATA -> report.txt__$DATA",
                   // Nothing, and dots and blanks at the ends.
                   u" -> _", u"??? -> ___", u". -> _", u".. -> __", u"    -> ___", u". . -> ___",
                   u"Report. . . -> Report_____", u"a.b. -> a.b_", u".foo -> _foo", u".foo. -> _foo_",
                   u"..foo -> _.foo", u" .foo -> _.foo", u" . .foo -> ___.foo",
                   // Devices.
                   u"CON -> _CON", u"prn -> _prn", u"Aux.txt -> _Aux.txt", u"nul.tar.gz -> _nul.tar.gz",
                   u"NUL   .a.txt -> _NUL   .a.txt", u"NUL..txt -> _NUL..txt", u"com1 -> _com1",
                   u"COM0.log -> _COM0.log", u"LPT9 -> _LPT9", u"COM\u00B9 -> _COM\u00B9",
                   u"LPT\u00B2.x -> _LPT\u00B2.x", u"lpt\u00B3 -> _lpt\u00B3", u"CONIN$ -> _CONIN$",
                   u"conout$.txt -> _conout$.txt", u"NUL.. -> NUL__", u"CON  -> CON_", u"NUL: -> NUL_"},
                  [](auto title, auto name) { EXPECT_EQ(Valid(title), name); });
    EXPECT_EQ(Valid(u"a\0b"sv), u"a_b");
    GString name("Mail: Re?.msg");
    GPathName::CreateValidFileName(name, -1, '_');
    EXPECT_EQ(Plain(name), u"Mail_ Re_.msg") << "of any encoding";
}

TEST(GValidFileName, LeavesRoomForAnExtensionAndCutsToTheCallersLength) {
    EXPECT_EQ(Valid(Repeated(u'a', 251)), Repeated(u'a', 251));
    for (const long maxLength : {-1, 1000, 0})
        EXPECT_EQ(Valid(Repeated(u'a', 252) + u".docx", maxLength), Repeated(u'a', 251)) << maxLength;
    ForEachRow<3>({u"abcdef -> 6 -> abcdef", u"abcdef -> 5 -> abcde", u"ab. cd -> 4 -> ab__",
                   u"ab.cd -> 3 -> ab_", u"CONSOLE -> 3 -> _CO", u"NUL -> 3 -> _NU", u"NUL.txt -> 5 -> _NUL_",
                   u".foo -> 1 -> _", u"x -> 1 -> x", u" -> 1 -> _",
                   // A surrogate pair goes as a whole.
                   u"a\U0001F600b -> 2 -> a", u"a\U0001F600b -> 3 -> a\U0001F600", u"\U0001F600 -> 1 -> _"},
                  [](auto title, auto maxLength, auto name) {
                      EXPECT_EQ(Valid(title, Text(maxLength).GetInt32()), name);
                  });
}

TEST(GValidFileName, SplitsNoSurrogatePairAndKeepsLoneHalves) {
    EXPECT_EQ(Valid(Repeated(u'a', 250) + u"\U0001F600"), Repeated(u'a', 250));
    EXPECT_EQ(Valid(Repeated(u'a', 249) + u"\U0001F600x"), Repeated(u'a', 249) + u"\U0001F600");
    const std::u16string halves = {0xD800, u'x', 0xDC00};
    EXPECT_EQ(Valid(halves), halves);
    EXPECT_EQ(Valid(halves, 1), halves.substr(0, 1));
}

TEST(GValidFileName, ABadReplacementSpoilsNothing) {
    // A title, the replacement, and the name: refused signs, half pairs, dots and blanks at either end,
    // letters and digits that make a device of a title, and what stands in front of one.
    ForEachRow<3>(
        {u"a:b -> : -> a_b", u"a:b -> / -> a_b", u"a:b -> \xD83D -> a_b", u"a:b -> \xDE00 -> a_b",
         u"a:b -> . -> a.b", u"a: -> . -> a_", u"a:b ->   -> a b", u"a:. ->   -> a__",
         u"NUL:x -> . -> _NUL.x", u":x -> . -> _x", u"CO? -> N -> _CON", u"NU. -> L -> _NUL",
         u"COM* -> 1 -> _COM1", u"NUL -> x -> _NUL", u"NUL -> - -> -NUL",
         u"COM: -> \u00B9 -> \u00B9COM\u00B9"},
        [&](auto title, auto replacement, auto name) { EXPECT_EQ(Valid(title, -1, replacement[0]), name); });
    EXPECT_EQ(Valid(u"a:b", -1, u'\0'), u"a_b");
}
