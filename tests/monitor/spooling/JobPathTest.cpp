#include "monitor/spooling/JobPath.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "framework/system/PSystem.h"
#include "tests/core/TextForTests.h"

namespace {

std::u16string FileName(std::u16string_view title) {
    return Plain(JobPath::MakeFileName(Text(title)));
}

/// Each row has the title of a document and the name that its file gets.
void ExpectNames(std::initializer_list<std::u16string_view> rows) {
    for (const std::u16string_view row : rows) {
        const auto [title, fileName] = CellsOf<2>(row);
        EXPECT_EQ(FileName(title), fileName) << Readable(row);
    }
}

TEST(JobPath, NamesTheFileAfterTheDocument) {
    // What applications pass.
    ExpectNames({u"Q3 report.docx -> Q3 report.ps", u"Microsoft Word - Q3 report.docx -> Q3 report.ps",
                 u"Microsoft Outlook - Mail: Re?.msg -> Mail_ Re_.ps", u"Report v1.2 -> Report v1.ps",
                 u"archive.tar.gz -> archive.tar.ps",
                 u"https://example.org/a/b.html?x=1 -> https___example.org_a_b.ps",
                 u"C:\\Users\\anna\\letter.rtf -> C__Users_anna_letter.ps",
                 u"\\\\server\\share\\plan.dwg -> __server_share_plan.ps",
                 u"Mail - \"Fw: <urgent>\" -> Mail - _Fw_ _urgent__.ps", u"a|b*c -> a_b_c.ps",
                 u"100%.txt -> 100%.ps", u"R\u00E9sum\u00E9.pdf -> R\u00E9sum\u00E9.ps",
                 u"\u65E5\u672C\u8A9E.txt -> \u65E5\u672C\u8A9E.ps", u"\U0001F600.txt -> \U0001F600.ps",
                 u"Re\u0301sume\u0301.pdf -> R\u00E9sum\u00E9.ps"});
    // Only one prefix, only at the start, only exactly.
    ExpectNames({u"Microsoft Word - Microsoft Word - a.doc -> Microsoft Word - a.ps",
                 u"Microsoft Word - Microsoft Outlook - a.doc -> Microsoft Outlook - a.ps",
                 u"Microsoft Outlook - Microsoft Word - a.doc -> Microsoft Word - a.ps",
                 u"Microsoft Excel - Q3.xlsx -> Microsoft Excel - Q3.ps",
                 u"Microsoft Word -Q3.docx -> Microsoft Word -Q3.ps",
                 u"microsoft word - Q3.docx -> microsoft word - Q3.ps",
                 u" Microsoft Word - Q3.docx ->  Microsoft Word - Q3.ps", u"Microsoft Word -  x ->  x.ps"});
    // What names no file.
    ExpectNames({u" -> _.ps", u". -> _.ps", u".. -> __.ps", u"... -> ___.ps", u"  -> _.ps", u". . -> ___.ps",
                 u"Microsoft Word -  -> _.ps", u".ps -> _ps.ps", u"..ps -> _.ps", u"a.. -> a__.ps",
                 u"a. . . -> a_____.ps"});
    // What would split it, or name more than a file.
    ExpectNames({u"\\ -> _.ps", u"/ -> _.ps", u": -> _.ps", u"? -> _.ps", u"\u0001 -> _.ps",
                 u"a\tb\nc -> a_b_c.ps", u"../../evil -> .._..ps",
                 u"..\\..\\Windows\\x.dll -> .._.._Windows_x.ps", u"report.ps:stream -> report.ps",
                 u"report:stream:$DATA -> report_stream_$DATA.ps"});
    // Names of devices.
    ExpectNames({u"CON -> _CON.ps", u"con -> _con.ps", u"PRN.txt -> _PRN.ps", u"aux. -> aux_.ps",
                 u"NUL  -> NUL_.ps", u"NUL .txt -> _NUL .ps", u"nul.a.b -> _nul.a.ps",
                 u"Microsoft Outlook - NUL.msg -> _NUL.ps", u"CON: -> CON_.ps", u"aux:x -> aux_x.ps",
                 u"COM0 -> _COM0.ps", u"COM9.ps -> _COM9.ps", u"LPT1.x -> _LPT1.ps",
                 u"LPT\u00B9 -> _LPT\u00B9.ps", u"COM\u00B2 -> _COM\u00B2.ps",
                 u"com\u00B3.a -> _com\u00B3.ps", u"CONIN$ -> _CONIN$.ps", u"conout$.txt -> _conout$.ps"});
}

TEST(JobPath, CutsTheNameToOneComponent) {
    const auto repeated = [](std::u16string_view lead, std::size_t count, std::u16string_view text) {
        std::u16string result(lead);
        while (count-- > 0) result += text;
        return result;
    };
    const struct {
        const char* what;
        std::u16string title, name;
    } rows[] = {
        {"all that fits", repeated(u"", 251, u"x"), repeated(u"", 251, u"x")},
        {"one too many", repeated(u"", 252, u"x"), repeated(u"", 251, u"x")},
        {"a long title with an extension", repeated(u"", 300, u"x") + u".docx", repeated(u"", 251, u"x")},
        {"a long extension", repeated(u"x.", 300, u"y"), u"x"},
        {"very long", repeated(u"", 70000, u"x"), repeated(u"", 251, u"x")},
        {"whole pairs", repeated(u"", 200, u"\U0001F600"), repeated(u"", 125, u"\U0001F600")},
        {"pairs at odd places", repeated(u"x", 200, u"\U0001F600"), repeated(u"x", 125, u"\U0001F600")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(FileName(row.title), row.name + u".ps");
    }
}

TEST(JobPath, StandsInFoldersForTheUserAndThePrinter) {
    GPathName folder;
    folder.SetPortablePath(GString("C:/spool"));
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, folder);
    GString user;
    PSystem::GetLogonName(user);
    const GPathName path = JobPath::MakePath(GString("Proof"), GString("Microsoft Word - Q3 report.docx"));
    GFileSystem::RemoveSpecialPath(GSpecialPath::cGlobalTemp);
    EXPECT_TRUE(path.GetPortablePath() == GString("C:/spool/") + user + GString("/Proof/Q3 report.ps"));
}

}  // namespace
