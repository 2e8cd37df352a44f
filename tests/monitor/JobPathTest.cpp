#include "monitor/JobPath.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/core/GUTF8Encoding.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GSpecialPath.h"
#include "framework/system/PSystem.h"

namespace {

GString TextOf(const std::u16string& text) {
    return GString::FromUTF16(reinterpret_cast<const unsigned short*>(text.data()),
                              static_cast<long>(text.size()));
}

std::u16string UnitsOf(const GString& text) {
    return std::u16string(reinterpret_cast<const char16_t*>(text.GetUTF16Ptr()), text.GetLength());
}

std::u16string FileName(const std::u16string& title) {
    return UnitsOf(JobPath::MakeFileName(TextOf(title)));
}

TEST(JobPath, NamesTheFileAfterTheDocument) {
    const struct {
        const char16_t* title;
        const char16_t* fileName;
    } rows[] = {
        // What applications pass.
        {u"Q3 report.docx", u"Q3 report.ps"},
        {u"Microsoft Word - Q3 report.docx", u"Q3 report.ps"},
        {u"Microsoft Outlook - Mail: Re?.msg", u"Mail_ Re_.ps"},
        {u"Untitled", u"Untitled.ps"},
        {u"Report v1.2", u"Report v1.ps"},
        {u"archive.tar.gz", u"archive.tar.ps"},
        {u"https://example.org/a/b.html?x=1", u"https___example.org_a_b.ps"},
        {u"C:\\Users\\anna\\letter.rtf", u"C__Users_anna_letter.ps"},
        {u"C:\\t.rtf", u"C__t.ps"},
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
        {u"Microsoft Word -Q3.docx", u"Microsoft Word -Q3.ps"},
        {u"microsoft word - Q3.docx", u"microsoft word - Q3.ps"},
        {u" Microsoft Word - Q3.docx", u" Microsoft Word - Q3.ps"},
        {u"Microsoft Excel - Q3.xlsx", u"Microsoft Excel - Q3.ps"},
        {u"Microsoft Word -  x", u" x.ps"},
        // What must not name a file.
        {u"a\tb\nc", u"a_b_c.ps"},
        {u"a/b\\c", u"a_b_c.ps"},
        {u"../../evil", u".._..ps"},
        {u"..\\..\\Windows\\x.dll", u".._.._Windows_x.ps"},
        {u"report.ps:stream", u"report.ps"},
        {u"report:stream:$DATA", u"report_stream_$DATA.ps"},
        {u"trailing.", u"trailing_.ps"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(row.title)));
        EXPECT_EQ(FileName(row.title), row.fileName);
    }
}

/// What a title may never become, however it is spelled.
TEST(JobPath, NeverGivesANameThatMeansMoreThanAFile) {
    const char16_t* const titles[] = {
        u"",
        u".",
        u"..",
        u"...",
        u" ",
        u". .",
        u"Microsoft Word - ",
        u"CON",
        u"con",
        u"PRN.txt",
        u"aux.",
        u"NUL ",
        u"nul.a.b",
        u"COM0",
        u"COM9.ps",
        u"LPT1.x",
        u"LPT\u00B9",
        u"COM\u00B2",
        u"com\u00B3.a",
        u"CONIN$",
        u"conout$.txt",
        u"NUL .txt",
        u"CON:",
        u"aux:x",
        u".ps",
        u"..ps",
        u"a..",
        u"a. . .",
        u"\\",
        u"/",
        u":",
        u"?",
        u"\u0001",
        u"Microsoft Outlook - NUL.msg",
    };
    const std::u16string devices[] = {
        u"con",  u"prn",  u"aux",  u"nul",  u"conin$", u"conout$",   u"com0",      u"com1",      u"com2",
        u"com3", u"com9", u"lpt0", u"lpt1", u"lpt9",   u"com\u00B9", u"com\u00B2", u"com\u00B3", u"lpt\u00B9",
    };
    for (const char16_t* title : titles) {
        const std::u16string name = FileName(title);
        SCOPED_TRACE(testing::PrintToString(std::u16string(title)) + " -> " + testing::PrintToString(name));
        ASSERT_GE(name.size(), 3u);
        EXPECT_EQ(name.substr(name.size() - 3), u".ps");
        EXPECT_EQ(name.find_first_of(u"<>:\"/\\|?*"), std::u16string::npos);
        for (const char16_t unit : name) EXPECT_GE(unit, 0x20);
        std::u16string base = name.substr(0, name.find(u'.'));
        while (!base.empty() && base.back() == u' ') base.pop_back();
        for (char16_t& unit : base) unit = unit >= u'A' && unit <= u'Z' ? unit + 32 : unit;
        for (const std::u16string& device : devices) EXPECT_NE(base, device);
    }
}

TEST(JobPath, KeepsTheNameWithinOneComponent) {
    const struct {
        const char* what;
        std::u16string title;
    } rows[] = {
        {"all that fits", std::u16string(251, u'x')},
        {"one too many", std::u16string(252, u'x')},
        {"a long title", std::u16string(300, u'x')},
        {"a long title with an extension", std::u16string(300, u'x') + u".docx"},
        {"a long extension", u"x." + std::u16string(300, u'y')},
        {"very long", std::u16string(70000, u'x')},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const std::u16string name = FileName(row.title);
        EXPECT_LE(name.size(), 255u);
        EXPECT_EQ(name.substr(name.size() - 3), u".ps");
    }
    EXPECT_EQ(FileName(std::u16string(251, u'x')), std::u16string(251, u'x') + u".ps");
}

TEST(JobPath, NeverCutsACharacterInTwo) {
    for (std::size_t lead = 0; lead < 4; ++lead) {
        std::u16string title(lead, u'x');
        for (int i = 0; i < 200; ++i) title += u"\U0001F600";
        const std::u16string name = FileName(title);
        EXPECT_LE(name.size(), 255u);
        const char16_t last = name[name.size() - 4];
        EXPECT_EQ(last & 0xFC00, 0xDC00) << lead;
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
