// A walk through the foundation of the framework: each function shows one family of classes. What the
// program prints stands in Expected.txt, which a test compares with it, and docs/framework.md explains it.
#include <cstdio>
#include <exception>

#include "framework/GFrameworkScope.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/patterns/GRegEx.h"
#include "framework/core/text/GString.h"
#include "framework/core/text/GStringSupport.h"
#include "framework/core/time/GDateTime.h"

namespace {

void Print(const char* what, const GString& value) {
    std::printf("%-16s%s\n", what, value.GetBuffer(GUTF8Encoding::GetInstance()).GetPtr());
}

void ShowBuffers() {
    GBuffer literal;
    literal.SetFromStatic("borrowed bytes are copied when they are written to");
    GBuffer copy(literal);  // shares the literal
    copy.Replace(0, 8, "Borrowed");
    copy += '.';
    Print("Buffer", GString(copy.GetPtr()));
    Print("Original", GString(literal.GetPtr()));
}

void ShowStrings() {
    // A string keeps the bytes it was given, and their encoding, until characters are needed.
    const GString fromWindows(
        "Gr\xFC\xDF"
        "e",
        GWinAnsiEncoding::GetInstance());
    const GString fromUTF8 = GString::FromUTF8(
        "Gr\xC3\xBC\xC3\x9F"
        "e");
    Print("Text", fromWindows);
    Print("Equal", fromWindows == fromUTF8 ? "yes" : "no");
    Print("Length", GString(fromUTF8.GetLength()));  // in UTF-16 units

    GString sentence("%1 of %2 pages");
    Print("Parameters", sentence.SubstituteParams(GString(3), GString(7)));
    Print("Natural order", GStringSupport::IsLessThanAlphanumeric("file9", "file10") ? "file9, file10" : "");
    Print("Pattern", GRegEx("(\\d+)-(\\d+)").Replace("pages 12-14", "from $1 to $2"));
}

void ShowTables() {
    GTable<GString> names = {"draft.ps", "report.ps", "draft.ps", "letter.ps"};
    GDict<GString, long> counts;
    for (const GString& name : names) ++counts.GetOrInsert(name);
    Print("Counted", GString(*counts.Find("draft.ps")));

    // An iterator stays right while its table changes.
    GTableIterator<GString> each(names);
    while (const GString* name = each.Next()) {
        if (*name == "draft.ps") names.Remove(each.GetPosition());
    }
    GString left;
    GStringSupport::StringTableToSeparatedString(names, ", ", left);
    Print("Left", left);
}

void ShowPaths() {
    GPathName path;
    path.SetWin32PathString("C:\\jobs\\anna\\..\\Q3 report.ps");
    path.Normalize();
    path.ReplaceExtension("pdf");
    Print("Portable", path.GetPortablePath());
    Print("URL", path.GetURLPathString());
    Print("From a folder", path.GetRelativePathFrom(GPathName("C:/jobs/out")).GetPortablePath());

    GString title = "Orders: 1/2 <draft>?";
    GPathName::CreateValidFileName(title, 0, '_');
    Print("File name", title);
}

void ShowDates() {
    GDateTime date;
    date.SetFromPDFDateTime("D:20240131093000+01'00'");
    date.AddMonthsClampingDay(1);  // February has no 31st
    GString text;
    date.GetDateAsString(text, true, "yyyy-MM-dd HH:mm");
    Print("Date", text);
}

void ShowFailures() {
    const GExceptionLocation doing(GString("Joining two paths"));
    try {
        GPathName path("C:/jobs");
        path /= GPathName("D:/out");
    } catch (const GException& failure) {
        Print("Failure", failure.GetFullDescription());
    }
}

}  // namespace

int main() {
    try {
        const GFrameworkScope framework;
        ShowBuffers();
        ShowStrings();
        ShowTables();
        ShowPaths();
        ShowDates();
        ShowFailures();
        return 0;
    } catch (const std::exception&) {
        std::fputs("Out of memory.\n", stderr);
    } catch (const GException&) {
        std::fputs("The framework could not be started.\n", stderr);
    }
    return 1;
}
