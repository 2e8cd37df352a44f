#include "tools/quillonctl/CommandLine.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

using Arguments = std::vector<std::wstring>;

CommandLine Line(Command command, std::wstring printer = {}, std::wstring driver = {}, std::wstring ppd = {},
                 std::wstring library = {}) {
    return {command, std::move(printer), std::move(driver), std::move(ppd), std::move(library), {}};
}

TEST(CommandLine, ReadsACommandAndItsOptionsInAnyOrder) {
    const std::tuple<const char*, Arguments, CommandLine> rows[] = {
        {"a command alone", {L"install"}, Line(Command::Install)},
        {"uninstall", {L"uninstall"}, Line(Command::Uninstall)},
        {"status", {L"status"}, Line(Command::Status)},
        {"jobs", {L"jobs"}, Line(Command::Jobs)},
        {"testpage", {L"testpage"}, Line(Command::TestPage)},
        {"testpage with a printer", {L"testpage", L"--printer", L"A B"}, Line(Command::TestPage, L"A B")},
        {"every option of install",
         {L"install", L"--dll", L"C:\\x.dll", L"--ppd", L"p.ppd", L"--printer", L"P", L"--driver", L"D, x"},
         Line(Command::Install, L"P", L"D, x", L"p.ppd", L"C:\\x.dll")},
        {"a value joined to its option", {L"install", L"--driver=-x"}, Line(Command::Install, L"", L"-x")},
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
    const std::tuple<Arguments, const char*> rows[] = {
        {Arguments(), "No command is given."},
        {{L"remove"}, "'remove' is not a command."},
        {{L"instal"}, "'instal' is not a command. Did you mean 'install'?"},
        {{L"Status"}, "'Status' is not a command. Did you mean 'status'?"},
        {{L""}, "'' is not a command."},
        {{L"--printer", L"x"}, "'--printer' is not an option of quillonctl."},
        {{L"install", L"--force"}, "'--force' is not an option of install."},
        {{L"install", L"--drivr=x"}, "'--drivr' is not an option of install. Did you mean '--driver'?"},
        {{L"install", L"-printer", L"x"}, "-printer"},
        {{L"install", L"status"}, "status"},
        {{L"status", L"--printer", L"x"}, "'--printer' is not an option of status."},
        {{L"testpage", L"--driver", L"x"}, "'--driver' is not an option of testpage."},
        {{L"install", L"--printer"}, "--printer: 1 required NAME missing"},
        {{L"install", L"--ppd", L"--driver", L"x"}, "--ppd: needs a value behind it"},
        {{L"install", L"--driver", L""}, "--driver: needs a value behind it"},
        {{L"install", L"--ppd", L"a", L"--ppd", L"a"}, "--ppd"},
    };
    for (const auto& [arguments, named] : rows) {
        SCOPED_TRACE(named);
        try {
            ParseCommandLine(arguments);
            ADD_FAILURE() << "accepted";
        } catch (const UsageFailure& failure) {
            const std::string text = ToUTF8(failure.GetText());
            EXPECT_THAT(text, testing::HasSubstr(named));
            EXPECT_THAT(text, testing::EndsWith(" --help tells more."));
            EXPECT_EQ(std::ranges::count(text, '\n'), 1);
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

TEST(CommandLine, HelpComesInWhateverWayItIsAskedFor) {
    const std::tuple<Arguments, const char*> rows[] = {
        {{L"--help"}, "Exit codes:"},
        {{L"-h"}, "Exit codes:"},
        {{L"help"}, "uninstall"},
        {{L"/?"}, "testpage"},
        {{L"instal", L"--help"}, "Exit codes:"},
        {{L"help", L"install"}, "--driver NAME"},
        {{L"install", L"--printer", L"--help"}, "quillonctl install"},
        {{L"testpage", L"/?"}, "--printer NAME"},
        {{L"--version"}, "quillonctl 0."},
    };
    for (const auto& [arguments, part] : rows) {
        const CommandLine result = ParseCommandLine(arguments);
        EXPECT_EQ(result.command, Command::ShowPage);
        EXPECT_THAT(ToUTF8(result.page), testing::AllOf(testing::HasSubstr(part), testing::EndsWith("\n")));
    }
}

}  // namespace
