#include "monitor/spooling/JobPath.h"

#include "framework/core/errors/GException.h"
#include "tests/core/TextForTests.h"
#include "tests/monitor/spooling/JobFolder.h"

namespace {

std::u16string FileName(std::u16string_view title) {
    return Plain(JobPath(GString("Proof"), Text(title)).GetFileName());
}

// What makes any title a valid name is tested where it is done.
TEST(JobPath, NamesTheFileAfterTheDocumentWithoutItsApplicationAndExtension) {
    ForEachRow<2>(
        {u"Q3 report.docx -> Q3 report.ps", u"Invoice 12.500 EUR -> Invoice 12.ps", u"plain -> plain.ps",
         u"Microsoft Word - Q3 report.docx -> Q3 report.ps",
         u"Microsoft Outlook - Mail: Re?.msg -> Mail_ Re_.ps",
         u"https://example.org/a/b.html?x=1 -> https___example.org_a_b.ps",
         u"..\\..\\Windows\\x.dll -> .._.._Windows_x.ps", u"Re\u0301sume\u0301.pdf -> R\u00E9sum\u00E9.ps",
         // Only one prefix, only at the start, only exactly.
         u"Microsoft Word - Microsoft Word - a.doc -> Microsoft Word - a.ps",
         u"Microsoft Word - Microsoft Outlook - a.doc -> Microsoft Outlook - a.ps",
         u"Microsoft Outlook - Microsoft Word - a.doc -> Microsoft Word - a.ps",
         u"Microsoft Excel - Q3.xlsx -> Microsoft Excel - Q3.ps",
         u"Microsoft Word -Q3.docx -> Microsoft Word -Q3.ps",
         u"microsoft word - Q3.docx -> microsoft word - Q3.ps",
         u" Microsoft Word - Q3.docx ->  Microsoft Word - Q3.ps", u"Microsoft Word -  x ->  x.ps",
         // What is nothing, or a device, without the one or the other.
         u" -> _.ps", u"Microsoft Word -  -> _.ps", u".ps -> _ps.ps", u"... -> ___.ps", u"a.. -> a__.ps",
         u"Microsoft Outlook - NUL.msg -> _NUL.ps", u"report.ps:stream -> report.ps"},
        [](auto title, auto name) { EXPECT_EQ(FileName(title), name); });
    EXPECT_EQ(FileName(std::u16string(251, u'x')), std::u16string(251, u'x') + u".ps");
    EXPECT_EQ(FileName(std::u16string(70000, u'x') + u".docx"), std::u16string(251, u'x') + u".ps");
}

/// The folders of a printer name, "refused" when it is.
std::u16string FoldersOf(std::u16string_view printer) {
    try {
        const JobPath path(Text(printer), GString("a"));
        std::u16string folders;
        for (const GString& folder : path.GetFolders()) folders += u" + " + Plain(folder);
        return folders.substr(3 + Plain(path.GetUserName()).size());
    } catch (const GException& failure) {
        return failure.GetExceptionID() == GExceptionID::cInvalidPath ? u"refused" : u"?";
    }
}

TEST(JobPath, StandsInFoldersForTheUserAndThePrinterAndRefusesWhatLeadsAway) {
    const JobFolder folder;
    ForEachRow<2>({u"Proof ->  + Proof", u"\\\\server\\printer ->  + server + printer",
                   u"a/b\\c//d ->  + a + b + c + d", u" -> ", u"./a\\. ->  + a", u"HP Inc. ->  + HP Inc",
                   u".hidden ->  + .hidden", u"a..b ->  + a..b", u"CONTRACT ->  + CONTRACT",
                   // Leaves the folder, or would be another folder for one program than for the next.
                   u".. -> refused", u"a\\..\\b -> refused", u"../x -> refused", u"... -> refused",
                   u"a.. -> refused", u"a\\b . -> refused", u"a  -> refused",
                   // Devices, streams and what Windows takes for no folder.
                   u"NUL -> refused", u"a\\com1.x\\b -> refused", u"conin$ -> refused", u"C:\\x -> refused",
                   u"a:b -> refused", u"a|b -> refused", u"*\\x -> refused", u"a\x1F -> refused"},
                  [](auto printer, auto folders) { EXPECT_EQ(FoldersOf(printer), folders); });
    EXPECT_EQ(FoldersOf(std::u16string(255, u'p')), u" + " + std::u16string(255, u'p'));
    EXPECT_EQ(FoldersOf(std::u16string(256, u'p')), u"refused");
    const JobPath path(GString("\\\\server\\Proof"), GString("Microsoft Word - Q3 report.docx"));
    const std::string users = TextOf(folder.Portable(TextOf(path.GetUserName())));
    EXPECT_EQ(TextOf(path.GetPath()), users + "/\\\\server\\Proof/Q3 report.ps") << "the name just as it is";
    GFileSystem::AddSpecialPath(GSpecialPath::cGlobalTemp, GPathName());
    EXPECT_EQ(FoldersOf(u"Proof"), u"refused") << "without it the path would start anywhere";
}

}  // namespace
