#include "tools/quillonctl/CommandLine.h"

#include <CLI/CLI.hpp>
#include <map>
#include <utility>

#include "framework/core/paths/GPathName.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Arguments.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

bool IsFolderName(const std::wstring& name) {
    const GString wanted = FromWide(name);
    GString valid = wanted;
    GPathName::CreateValidFileName(valid, -1, '_');
    return valid == wanted;
}

// The spooler reads more into some names: a comma separates the name from what is asked of it. And a
// printer's jobs go to a folder of its name, which must be one, and below the job folder.
void CheckPrinterName(const std::wstring& name) {
    constexpr std::size_t cMaxPrinterNameUnits = 220;
    if (name.empty()) return;
    if (name.find_first_of(L",!") != std::wstring::npos) {
        throw UsageFailure(L"A printer's name must not contain a comma or an exclamation mark.");
    }
    if (name.front() == L' ') throw UsageFailure(L"A printer's name must not begin with a blank.");
    if (name.size() > cMaxPrinterNameUnits) throw UsageFailure(L"The printer's name is too long.");
    if (!IsFolderName(name)) {
        throw UsageFailure(
            L"A printer's name must be one that a folder can have: without \\ / : * ? \" < > |, not that of "
            L"a device such as NUL, no dot at either end, no blank at the end.");
    }
}

constexpr long cMaxSeconds = 3600;

/// The options' values as the library gives them, in UTF-8.
struct Values {
    std::string printer;
    std::string driver;
    std::string ppd;
    std::string library;
    std::string state;
};

// A value that looks like an option is a forgotten value, far more often than a name.
std::string CheckValue(const std::string& value) {
    return value.empty() || value.starts_with("--") ? "needs a value behind it" : "";
}

void AddOption(CLI::App& command, const char* name, const char* valueName, std::string& value,
               const char* help) {
    command.add_option(name, value, help)->type_name(valueName)->check(CLI::Validator(CheckValue, ""));
}

void AddFlag(CLI::App& command, const char* name, bool& value, const char* help) {
    command.add_flag(name, value, help)->multi_option_policy(CLI::MultiOptionPolicy::Throw);
}

// Opened while the options are read, so that it also gets what is wrong with their values.
void AddLogOption(CLI::App& command) {
    const auto open = [](const std::string& path) {
        if (!Console::CopyTo(FromUTF8(path)))
            throw UsageFailure(L"The file " + FromUTF8(path) + L" of --log cannot be written.");
    };
    command.add_option_function<std::string>("--log", open, "also append what is told to this file")
        ->type_name("FILE")
        ->check(CLI::Validator(CheckValue, ""));
}

CLI::App& AddCommand(CLI::App& app, CommandLine& result, Command command, const char* name,
                     const char* help) {
    CLI::App* const added = app.add_subcommand(name, help);
    added->callback([&result, command] { result.command = command; });
    return *added;
}

void DescribeUpkeep(CLI::App& app, CommandLine& result, Values& values) {
    const std::map<std::string, long long> units = {{"d", 86400}, {"h", 3600}, {"min", 60}};
    CLI::App& doctor = AddCommand(app, result, Command::cDoctor, "doctor",
                                  "find out why no job arrives, and what to do; 0 when all is well");
    AddFlag(doctor, "--json", result.json, "one JSON object, for programs");
    CLI::App& clean = AddCommand(app, result, Command::cClean, "clean", "remove old job files");
    clean.add_option("--older", result.age, "those that were written that long ago, as in 7d, 12h or 30min")
        ->type_name("AGE")
        ->required()
        ->transform(CLI::AsNumberWithUnit(units, CLI::AsNumberWithUnit::UNIT_REQUIRED).description(""))
        ->check(CLI::Validator(CLI::NonNegativeNumber).description(""));
    AddOption(clean, "--printer", "NAME", values.printer,
              "those of a printer that may be gone; else of all on the port");
    AddFlag(clean, "--dry-run", result.isDryRun, "tell what would be removed, and remove nothing");
    CLI::App& trace =
        AddCommand(app, result, Command::cTrace, "trace", "switch the monitor's trace log on or off");
    trace.add_option("state", values.state, "on or off")
        ->type_name("")
        ->required()
        ->check(CLI::IsMember({"on", "off"}).description(""));
}

void Describe(CLI::App& app, CommandLine& result, Values& values) {
    app.require_subcommand(1);
    app.set_version_flag("--version", "quillonctl " QUILLON_VERSION, "the version of this program");
    app.footer(
        "Exit codes: 0 done, 1 failed (status, doctor: something is wrong), 2 wrong command line.\n"
        "'quillonctl help COMMAND' tells a command's options.");
    CLI::App& install = AddCommand(app, result, Command::cInstall, "install",
                                   "install the port monitor and a printer on its port");
    AddOption(install, "--printer", "NAME", values.printer, "the printer's name");
    AddOption(install, "--driver", "NAME", values.driver, "the PostScript driver of the new printer");
    AddOption(install, "--ppd", "FILE", values.ppd, "under Wine: make the driver from this description");
    AddOption(install, "--dll", "FILE", values.library,
              "the monitor's library, else the one beside this program");
    AddLogOption(install);
    AddLogOption(AddCommand(app, result, Command::cUninstall, "uninstall",
                            "remove what install has added, and nothing else"));
    CLI::App& status = AddCommand(app, result, Command::cStatus, "status",
                                  "tell what is installed; 0 when jobs can be printed");
    AddFlag(status, "--json", result.json, "one JSON object, for programs");
    AddCommand(app, result, Command::cJobs, "jobs", "list the job files and what they say of themselves");
    CLI::App& page =
        AddCommand(app, result, Command::cTestPage, "testpage", "print a page and wait for its job file");
    AddOption(page, "--printer", "NAME", values.printer, "the printer's name");
    page.add_option("--wait", result.seconds, "how long to wait for the file; 0: do not")
        ->type_name("SECONDS")
        ->check(CLI::Range(0L, cMaxSeconds).description(""))
        ->capture_default_str();
    DescribeUpkeep(app, result, values);
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments) {
    CommandLine result;
    Values values;
    CLI::App app("Installs, checks and removes Quillon Port Monitor. Needs an administrator's rights.",
                 "quillonctl");
    Describe(app, result, values);
    if (auto page = Arguments::Read(app, arguments)) {
        result.page = std::move(*page);
        return result;
    }
    result.printer = FromUTF8(values.printer);
    result.driver = FromUTF8(values.driver);
    result.ppd = FromUTF8(values.ppd);
    result.library = FromUTF8(values.library);
    result.isOn = values.state == "on";
    CheckPrinterName(result.printer);
    return result;
}
