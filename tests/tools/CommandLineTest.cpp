#include "tools/quillonctl/CommandLine.h"

#include <gmock/gmock.h>

#include <tuple>
#include <utility>

#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

using Arguments = std::vector<std::wstring>;

CommandLine Line(Command command, std::wstring printer = {}, std::wstring driver = {}, std::wstring ppd = {},
                 std::wstring library = {}) {
    return {command, std::move(printer), std::move(driver), std::move(ppd), std::move(library)};
}

TEST(CommandLine, ReadsACommandAndItsOptionsInAnyOrder) {
    const std::tuple<const char*, Arguments, CommandLine> rows[] = {
        {"a command alone", {L"install"}, Line(Command::Install)},
        {"uninstall", {L"uninstall"}, Line(Command::Uninstall)},
        {"status", {L"status"}, Line(Command::Status)},
        {"testpage", {L"testpage"}, Line(Command::TestPage)},
        {"testpage with a printer", {L"testpage", L"--printer", L"A B"}, Line(Command::TestPage, L"A B")},
        {"every option of install",
         {L"install", L"--dll", L"C:\\x.dll", L"--ppd", L"p.ppd", L"--printer", L"P", L"--driver", L"D, x"},
         Line(Command::Install, L"P", L"D, x", L"p.ppd", L"C:\\x.dll")},
        {"a value with one dash", {L"install", L"--driver", L"-x"}, Line(Command::Install, L"", L"-x")},
        {"help", {L"--help"}, Line(Command::Help)},
        {"short help", {L"-h"}, Line(Command::Help)},
        {"help behind half a command", {L"install", L"--printer", L"--help"}, Line(Command::Help)},
        {"help behind an unknown command", {L"instal", L"--help"}, Line(Command::Help)},
        {"version", {L"--version"}, Line(Command::Version)},
        {"the longest printer name",
         {L"install", L"--printer", std::wstring(220, L'p')},
         Line(Command::Install, std::wstring(220, L'p'))},
    };
    for (const auto& [what, arguments, expected] : rows) {
        SCOPED_TRACE(what);
        const CommandLine result = ParseCommandLine(arguments);
        EXPECT_EQ(
            std::tie(result.command, result.printer, result.driver, result.ppd, result.library),
            std::tie(expected.command, expected.printer, expected.driver, expected.ppd, expected.library));
    }
}

TEST(CommandLine, RefusesWhatItDoesNotKnowAndNamesIt) {
    const std::tuple<const char*, Arguments, const wchar_t*> rows[] = {
        {"nothing", {}, L"No command"},
        {"an unknown command", {L"remove"}, L"'remove' is not a command"},
        {"a shortened command", {L"inst"}, L"'inst' is not a command"},
        {"a command in upper case", {L"Status"}, L"'Status' is not a command"},
        {"an empty command", {L""}, L"'' is not a command"},
        {"an option first", {L"--printer", L"x"}, L"'--printer' is not a command"},
        {"version with more", {L"--version", L"status"}, L"'--version' is not a command"},
        {"an unknown option", {L"install", L"--force"}, L"'--force' is not an option of install"},
        {"an option with one dash", {L"install", L"-printer", L"x"}, L"'-printer' is not an option"},
        {"an option joined to its value", {L"install", L"--printer=x"}, L"'--printer=x' is not an option"},
        {"a second command", {L"install", L"status"}, L"'status' is not an option of install"},
        {"an option of another command",
         {L"status", L"--printer", L"x"},
         L"'--printer' does not go with status"},
        {"testpage with a driver", {L"testpage", L"--driver", L"x"}, L"'--driver' does not go with testpage"},
        {"uninstall with a printer", {L"uninstall", L"--printer", L"x"}, L"does not go with uninstall"},
        {"a value missing at the end", {L"install", L"--printer"}, L"'--printer' needs a NAME"},
        {"an option for a value", {L"install", L"--ppd", L"--driver", L"x"}, L"'--ppd' needs a FILE"},
        {"an empty value", {L"install", L"--driver", L""}, L"'--driver' needs a NAME"},
        {"an option twice", {L"install", L"--ppd", L"a", L"--ppd", L"a"}, L"'--ppd' is given twice"},
    };
    for (const auto& [what, arguments, named] : rows) {
        SCOPED_TRACE(what);
        try {
            ParseCommandLine(arguments);
            ADD_FAILURE() << "accepted";
        } catch (const UsageFailure& failure) {
            EXPECT_NE(failure.GetText().find(named), std::wstring::npos) << ToUTF8(failure.GetText());
        }
    }
}

TEST(CommandLine, RefusesPrinterNamesThatCannotPrintOrLeaveTheFolder) {
    std::vector<std::wstring> refused = {L"\\\\server\\printer",
                                         L"Proof, Port",
                                         L"Proof!",
                                         L"a\nb",
                                         L" Proof",
                                         L"Proof ",
                                         L"Proof.",
                                         L".",
                                         L"..",
                                         L"...",
                                         L"nul",
                                         L"COM1.x",
                                         L"LPT\u00B2",
                                         L"conin$",
                                         std::wstring(221, L'p')};
    for (const wchar_t unit : std::wstring_view(L"<>:\"|?*/\\\x1F"))
        refused.push_back(L"a" + std::wstring(1, unit) + L"b");
    for (const std::wstring& name : refused) {
        SCOPED_TRACE(ToUTF8(name));
        EXPECT_THROW(ParseCommandLine({L"install", L"--printer", name}), UsageFailure);
        EXPECT_THROW(ParseCommandLine({L"testpage", L"--printer", name}), UsageFailure);
    }
    for (const wchar_t* name : {L"NUL printer", L"a.b", L"COM", L"B\u00FCro (2) & 50 %"})
        EXPECT_EQ(ParseCommandLine({L"install", L"--printer", name}).printer, name);
}

TEST(CommandLine, HelpTellsWhichCommandTakesAnOption) {
    const std::string help = ToUTF8(GetHelpText());
    EXPECT_THAT(help, testing::HasSubstr("\n  --printer NAME  the printer's name (install, testpage)\n"));
    EXPECT_THAT(help, testing::HasSubstr("\n  uninstall       remove what"));
}

}  // namespace
