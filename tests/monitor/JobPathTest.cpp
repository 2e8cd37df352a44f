#include "monitor/JobPath.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "framework/system/PSystem.h"
#include "tests/core/TestText.h"

namespace {

std::u16string FileName(std::u16string_view title) {
    return Plain(JobPath::MakeFileName(Text(title)));
}

TEST(JobPath, NamesTheFileAfterTheDocument) {
    const struct {
        std::u16string_view title, fileName;
    } rows[] = {
        // What applications pass.
        {u"Q3 report.docx", u"Q3 report.ps"},
        {u"Microsoft Word - Q3 report.docx", u"Q3 report.ps"},
        {u"Microsoft Outlook - Mail: Re?.msg", u"Mail_ Re_.ps"},
        {u"Report v1.2", u"Report v1.ps"},
        {u"archive.tar.gz", u"archive.tar.ps"},
        {u"https://example.org/a/b.html?x=1", u"https___example.org_a_b.ps"},
        {u"C:\\Users\\anna\\letter.rtf", u"C__Users_anna_letter.ps"},
        {u"\\\\server\\share\\plan.dwg", u"__server_share_plan.ps"},
        {u"Mail - \"Fw: <urgent>\"", u"Mail - _Fw_ _urgent__.ps"},
        {u"a|b*c", u"a_b_c.ps"},
        {u"100%.txt", u"100%.ps"},
        {u"R\u00E9sum\u00E9.pdf", u"R\u00E9sum\u00E9.ps"},
        {u"\u65E5\u672C\u8A9E.txt", u"\u65E5\u672C\u8A9E.ps"},
        {u"\U0001F600.txt", u"\U0001F600.ps"},
        {u"Re\u0301sume\u0301.pdf", u"R\u00E9sum\u00E9.ps"},
        // Only one prefix, only at the start, only exactly.
        {u"Microsoft Word - Microsoft Word - a.doc", u"Microsoft Word - a.ps"},
        {u"Microsoft Word - Microsoft Outlook - a.doc", u"Microsoft Outlook - a.ps"},
        {u"Microsoft Outlook - Microsoft Word - a.doc", u"Microsoft Word - a.ps"},
        {u"Microsoft Excel - Q3.xlsx", u"Microsoft Excel - Q3.ps"},
        {u"Microsoft Word -Q3.docx", u"Microsoft Word -Q3.ps"},
        {u"microsoft word - Q3.docx", u"microsoft word - Q3.ps"},
        {u" Microsoft Word - Q3.docx", u" Microsoft Word - Q3.ps"},
        {u"Microsoft Word -  x", u" x.ps"},
        // What must not name a file, or more than a file.
        {u"", u"_.ps"},
        {u".", u"_.ps"},
        {u"..", u"__.ps"},
        {u"...", u"___.ps"},
        {u" ", u"_.ps"},
        {u". .", u"___.ps"},
        {u"Microsoft Word - ", u"_.ps"},
        {u".ps", u"_ps.ps"},
        {u"..ps", u"_.ps"},
        {u"a..", u"a__.ps"},
        {u"a. . .", u"a_____.ps"},
        {u"\\", u"_.ps"},
        {u"/", u"_.ps"},
        {u":", u"_.ps"},
        {u"?", u"_.ps"},
        {u"\u0001", u"_.ps"},
        {u"a\tb\nc", u"a_b_c.ps"},
        {u"../../evil", u".._..ps"},
        {u"..\\..\\Windows\\x.dll", u".._.._Windows_x.ps"},
        {u"report.ps:stream", u"report.ps"},
        {u"report:stream:$DATA", u"report_stream_$DATA.ps"},
        // Names of devices.
        {u"CON", u"_CON.ps"},
        {u"con", u"_con.ps"},
        {u"PRN.txt", u"_PRN.ps"},
        {u"aux.", u"aux_.ps"},
        {u"NUL ", u"NUL_.ps"},
        {u"NUL .txt", u"_NUL .ps"},
        {u"nul.a.b", u"_nul.a.ps"},
        {u"Microsoft Outlook - NUL.msg", u"_NUL.ps"},
        {u"CON:", u"CON_.ps"},
        {u"aux:x", u"aux_x.ps"},
        {u"COM0", u"_COM0.ps"},
        {u"COM9.ps", u"_COM9.ps"},
        {u"LPT1.x", u"_LPT1.ps"},
        {u"LPT\u00B9", u"_LPT\u00B9.ps"},
        {u"COM\u00B2", u"_COM\u00B2.ps"},
        {u"com\u00B3.a", u"_com\u00B3.ps"},
        {u"CONIN$", u"_CONIN$.ps"},
        {u"conout$.txt", u"_conout$.ps"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Readable(row.title));
        EXPECT_EQ(FileName(row.title), row.fileName);
    }
}

TEST(JobPath, CutsTheNameToOneComponent) {
    const auto repeated = [](std::size_t count, std::u16string_view text) {
        std::u16string result;
        while (count-- > 0) result += text;
        return result;
    };
    const struct {
        const char* what;
        std::u16string title, name;
    } rows[] = {
        {"all that fits", repeated(251, u"x"), repeated(251, u"x")},
        {"one too many", repeated(252, u"x"), repeated(251, u"x")},
        {"a long title with an extension", repeated(300, u"x") + u".docx", repeated(251, u"x")},
        {"a long extension", u"x." + repeated(300, u"y"), u"x"},
        {"very long", repeated(70000, u"x"), repeated(251, u"x")},
        {"whole pairs", repeated(200, u"\U0001F600"), repeated(125, u"\U0001F600")},
        {"pairs at odd places", u"x" + repeated(200, u"\U0001F600"), u"x" + repeated(125, u"\U0001F600")},
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
