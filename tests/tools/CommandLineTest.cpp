// What is read from the command line, and written to the console.
#include <sstream>

#include "tests/WindowsTesting.h"
#include "tools/console/Arguments.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/CommandLine.h"

namespace {

/// Each argument ends at a bar, the last one at the end of the line as well.
CommandLine Parse(std::string_view line) {
    std::vector<std::wstring> arguments;
    std::istringstream stream{std::string(line)};
    for (std::string argument; std::getline(stream, argument, '|');) arguments.push_back(FromUTF8(argument));
    return ParseCommandLine(arguments);
}

/// The command's number and what was asked for: texts, seconds, age and switches.
std::string TextOf(const CommandLine& line) {
    std::ostringstream text;
    text << static_cast<int>(line.command);
    for (const auto& value : {line.printer, line.driver, line.ppd, line.library})
        text << '|' << ToUTF8(value);
    text << '|' << line.seconds << '|' << line.age << '|' << line.json << line.isDryRun << line.isOn;
    return text.str();
}

TEST(CommandLine, ReadsACommandAndItsOptionsInAnyOrder) {
    ForEachRow<2>(
        {"install -> 1|||||30|0|000", "uninstall -> 2|||||30|0|000", "status -> 3|||||30|0|000",
         "status|--json -> 3|||||30|0|100", "jobs -> 4|||||30|0|000", "doctor|--json -> 6|||||30|0|100",
         "testpage|--printer|A B -> 5|A B||||30|0|000", "testpage|--wait=3600 -> 5|||||3600|0|000",
         "install|--dll|C:\\x.dll|--ppd|p.ppd|--printer|P|--driver|D, x -> 1|P|D, x|p.ppd|C:\\x.dll|30|0|000",
         "install|--driver=-x -> 1||-x|||30|0|000", "trace|on -> 8|||||30|0|001",
         "trace|off -> 8|||||30|0|000", "clean|--dry-run|--older|7d|--printer=P -> 7|P||||30|604800|010",
         "clean|--older=12h -> 7|||||30|43200|000", "clean|--older|30 min -> 7|||||30|1800|000"},
        [](auto line, auto expected) { EXPECT_EQ(TextOf(Parse(line)), expected); });
}

TEST(CommandLine, RefusesWhatItDoesNotKnowAndNamesIt) {
    const auto isRefused = [](auto line, auto named) {
        try {
            Parse(line);
            ADD_FAILURE() << "accepted";
        } catch (const UsageFailure& failure) {
            const std::string text = ToUTF8(failure.GetText());
            EXPECT_THAT(text, testing::HasSubstr(std::string(named)));
            EXPECT_THAT(text, testing::EndsWith(" --help tells more."));
            EXPECT_EQ(std::ranges::count(text, '\n'), 1);
        }
    };
    ForEachRow<2>(
        {" -> No command is given.", "remove -> 'remove' is not a command.", "| -> '' is not a command.",
         "instal -> 'instal' is not a command. Did you mean 'install'?",
         "Status -> 'Status' is not a command. Did you mean 'status'?",
         "--printer|x -> '--printer' is not an option of quillonctl.",
         "install|--force -> '--force' is not an option of install.",
         "install|--drivr=x -> '--drivr' is not an option of install. Did you mean '--driver'?",
         "status|--printer|x -> '--printer' is not an option of status.",
         "testpage|--driver|x -> '--driver' is not an option of testpage.",
         "jobs|--json=x -> '--json' is not an option of jobs.",
         "install|--printer -> --printer: 1 required NAME missing",
         "install|--ppd|--driver|x -> --ppd: needs a value behind it",
         "install|--driver|| -> --driver: needs a value behind it"},
        isRefused);
    ForEachRow<2>(
        {"install|-printer|x -> -printer", "install|status -> status", "install|--ppd|a|--ppd|a -> --ppd",
         "testpage|--wait|3601 -> --wait: ", "testpage|--wait=-1 -> --wait: ", "testpage|--wait=x -> --wait",
         "clean -> --older is required", "clean|--older|7 -> --older", "clean|--older=-7d -> --older",
         "clean|--older|7 weeks -> --older", "clean|--older|99999999999999999999d -> --older",
         "trace -> state is required", "trace|maybe -> state", "trace|on|off -> off"},
        isRefused);
}

TEST(CommandLine, RefusesPrinterNamesThatCannotPrintOrLeaveTheFolder) {
    std::vector<std::wstring> refused = {L"\\\\server\\printer", L"Proof, Port", L"Proof!", L"a\nb",
                                         L" Proof", L"Proof ", L"Proof.", L".", L"..", L"...",
                                         // Devices, and a name that is too long.
                                         L"nul", L"COM1.x", L"LPT\u00B2", L"conin$", std::wstring(221, L'p')};
    for (const wchar_t unit : L"<>:\"|?*/\\\x1F"sv) refused.push_back(L"a" + std::wstring(1, unit) + L"b");
    for (const std::wstring& name : refused) {
        SCOPED_TRACE(ToUTF8(name));
        EXPECT_THROW(ParseCommandLine({L"install", L"--printer", name}), UsageFailure);
        EXPECT_THROW(ParseCommandLine({L"testpage", L"--printer", name}), UsageFailure);
    }
    for (const std::wstring& name :
         {L"NUL printer"s, L"a.b"s, L"COM"s, L"B\u00FCro (2) & 50 %"s, std::wstring(220, L'p')})
        EXPECT_EQ(ParseCommandLine({L"install", L"--printer", name}).printer, name);
}

TEST(CommandLine, HelpComesInWhateverWayItIsAskedFor) {
    ForEachRow<2>({"--help -> Exit codes:", "-h -> Exit codes:", "help -> uninstall", "/? -> testpage",
                   "instal|--help -> Exit codes:", "help|install -> --driver NAME",
                   "install|--printer|--help -> quillonctl install", "testpage|/? -> --printer NAME",
                   "--version -> quillonctl 0."},
                  [](auto line, auto part) {
                      const CommandLine result = Parse(line);
                      EXPECT_EQ(result.command, Command::cShowPage);
                      EXPECT_THAT(ToUTF8(result.page), testing::HasSubstr(std::string(part)));
                      EXPECT_THAT(ToUTF8(result.page), testing::EndsWith("\n"));
                  });
}

using FileHandle = PWin32ScopedHandle<PWin32FileHandle>;

/// What `write` tells while the process's standard output goes to a file.
bool WriteTo(const std::wstring& path, DWORD access, const std::function<bool()>& write) {
    constexpr DWORD cShare = FILE_SHARE_READ | FILE_SHARE_WRITE;
    const FileHandle file(::CreateFileW(path.c_str(), access, cShare, nullptr, OPEN_ALWAYS, 0, nullptr));
    const HANDLE before = ::GetStdHandle(STD_OUTPUT_HANDLE);
    ::SetStdHandle(STD_OUTPUT_HANDLE, file.Get());
    const bool isDone = write();
    ::SetStdHandle(STD_OUTPUT_HANDLE, before);
    return isDone;
}

TEST(Console, WritesUTF8WithBareLineFeedsToAFileAndTellsWhenItCannot) {
    const TestFolder folder;
    const std::wstring path = folder.Standard("out");
    const std::wstring beyondABlock(3'000'001, L'x');
    EXPECT_TRUE(WriteTo(path, GENERIC_WRITE, [&] {
        return Console::Write(L"K\u00F6ln \u20AC \U0001F600\n") && Console::Write(L"") &&
               Console::Write(beyondABlock);
    }));
    EXPECT_FALSE(WriteTo(path, GENERIC_READ, [] { return Console::Write(L"x"); }));
    EXPECT_EQ(folder.Take("out"), "K\u00F6ln \u20AC \U0001F600\n" + std::string(3'000'001, 'x'));
}

TEST(ToUTF8, ReplacesUnpairedSurrogates) {
    EXPECT_EQ(ToUTF8(L""), "");
    EXPECT_EQ(ToUTF8(std::wstring{L'\0', L'a', L'\u00E4', L'\u20AC'}), std::string("\0a\u00E4\u20AC", 7));
    EXPECT_EQ(ToUTF8(L"\U00010000"), "\U00010000");
    EXPECT_EQ(ToUTF8(std::wstring{wchar_t(0xD83D), L'x', wchar_t(0xDE00)}), "\uFFFDx\uFFFD");
}

TEST(Failure, NamesActionReasonNumberAndWhatCanBeDone) {
    const std::string text = ToUTF8(SystemFailure(L"Opening it", ERROR_FILE_NOT_FOUND).GetText());
    EXPECT_THAT(text, testing::StartsWith("Opening it failed: "));
    EXPECT_THAT(text, testing::EndsWith("(error 2)"));
    EXPECT_THAT(ToUTF8(DescribeSystemError(ERROR_ACCESS_DENIED)),
                testing::EndsWith("(error 5)\nRun this from an administrator's command prompt."));
    EXPECT_THAT(ToUTF8(DescribeSystemError(RPC_S_SERVER_UNAVAILABLE)),
                testing::HasSubstr("net start spooler"));
    EXPECT_EQ(ToUTF8(DescribeSystemError(0x2FFFFFFF)), "(error 805306367)") << "one without a text";
}

}  // namespace
