#include "tools/quillonctl/CommandLine.h"

#include "tests/Testing.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

using Arguments = std::vector<std::wstring>;

/// The command's number, and printer, driver, description and library by bars.
std::wstring TextOf(const CommandLine& line) {
    return std::to_wstring(static_cast<int>(line.command)) + L"|" + line.printer + L"|" + line.driver + L"|" +
           line.ppd + L"|" + line.library;
}

TEST(CommandLine, ReadsACommandAndItsOptionsInAnyOrder) {
    const std::tuple<Arguments, std::wstring> rows[] = {
        {{L"install"}, L"1||||"},
        {{L"uninstall"}, L"2||||"},
        {{L"status"}, L"3||||"},
        {{L"jobs"}, L"4||||"},
        {{L"testpage", L"--printer", L"A B"}, L"5|A B|||"},
        {{L"install", L"--dll", L"C:\\x.dll", L"--ppd", L"p.ppd", L"--printer", L"P", L"--driver", L"D, x"},
         L"1|P|D, x|p.ppd|C:\\x.dll"},
        {{L"install", L"--driver=-x"}, L"1||-x||"},
        {{L"install", L"--printer", std::wstring(220, L'p')}, L"1|" + std::wstring(220, L'p') + L"|||"}};
    for (const auto& [arguments, expected] : rows) EXPECT_EQ(TextOf(ParseCommandLine(arguments)), expected);
    EXPECT_EQ(ParseCommandLine({L"testpage"}).seconds, 30);
    EXPECT_EQ(ParseCommandLine({L"testpage", L"--wait=3600"}).seconds, 3600);
    EXPECT_FALSE(ParseCommandLine({L"status"}).json);
    EXPECT_TRUE(ParseCommandLine({L"status", L"--json"}).json);
    EXPECT_TRUE(ParseCommandLine({L"doctor", L"--json"}).json);
    EXPECT_TRUE(ParseCommandLine({L"trace", L"on"}).isOn);
    EXPECT_FALSE(ParseCommandLine({L"trace", L"off"}).isOn);
    const CommandLine clean = ParseCommandLine({L"clean", L"--dry-run", L"--older", L"7d", L"--printer=P"});
    EXPECT_TRUE(clean.isDryRun && clean.age == 604800 && clean.printer == L"P");
    EXPECT_EQ(ParseCommandLine({L"clean", L"--older=12h"}).age, 43200);
    EXPECT_EQ(ParseCommandLine({L"clean", L"--older", L"30 min"}).age, 1800);
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
        {{L"testpage", L"--wait", L"3601"}, "--wait: "},
        {{L"testpage", L"--wait=-1"}, "--wait: "},
        {{L"testpage", L"--wait=x"}, "--wait"},
        {{L"clean"}, "--older is required"},
        {{L"clean", L"--older", L"7"}, "--older"},
        {{L"clean", L"--older=-7d"}, "--older"},
        {{L"clean", L"--older", L"7 weeks"}, "--older"},
        {{L"clean", L"--older", L"99999999999999999999d"}, "--older"},
        {{L"trace"}, "state is required"},
        {{L"trace", L"maybe"}, "state"},
        {{L"trace", L"on", L"off"}, "off"},
        {{L"jobs", L"--json=x"}, "'--json' is not an option of jobs."},
        {{L"install", L"--printer"}, "--printer: 1 required NAME missing"},
        {{L"install", L"--ppd", L"--driver", L"x"}, "--ppd: needs a value behind it"},
        {{L"install", L"--driver", L""}, "--driver: needs a value behind it"},
        {{L"install", L"--ppd", L"a", L"--ppd", L"a"}, "--ppd"}};
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
    std::vector<std::wstring> refused = {L"\\\\server\\printer", L"Proof, Port", L"Proof!", L"a\nb",
                                         L" Proof", L"Proof ", L"Proof.", L".", L"..", L"...",
                                         // Devices, and a name that is too long.
                                         L"nul", L"COM1.x", L"LPT\u00B2", L"conin$", std::wstring(221, L'p')};
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
        {{L"--version"}, "quillonctl 0."}};
    for (const auto& [arguments, part] : rows) {
        const CommandLine result = ParseCommandLine(arguments);
        EXPECT_EQ(result.command, Command::cShowPage);
        EXPECT_THAT(ToUTF8(result.page), testing::AllOf(testing::HasSubstr(part), testing::EndsWith("\n")));
    }
}

}  // namespace
