#include "tools/quillonctl/CommandLine.h"

#include <algorithm>

#include "framework/core/paths/GPathName.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"

namespace {

struct CommandRow {
    Command command;
    const wchar_t* name;
    const wchar_t* help;
};

constexpr CommandRow cCommands[] = {
    {Command::Install, L"install", L"install the port monitor and a printer on its port"},
    {Command::Uninstall, L"uninstall", L"remove what install has added, and nothing else"},
    {Command::Status, L"status", L"tell what is installed; 0 when jobs can be printed"},
    {Command::TestPage, L"testpage", L"print a page on a printer of the port"},
};

struct OptionRow {
    const wchar_t* name;
    const wchar_t* valueName;
    std::wstring CommandLine::*value;
    std::vector<Command> commands;
    const wchar_t* help;
};

const std::vector<OptionRow>& GetOptions() {
    static const std::vector<OptionRow> sOptions = {
        {L"--printer",
         L"NAME",
         &CommandLine::printer,
         {Command::Install, Command::TestPage},
         L"the printer's name"},
        {L"--driver",
         L"NAME",
         &CommandLine::driver,
         {Command::Install},
         L"the PostScript driver of the new printer"},
        {L"--ppd",
         L"FILE",
         &CommandLine::ppd,
         {Command::Install},
         L"under Wine: make the driver from this description"},
        {L"--dll",
         L"FILE",
         &CommandLine::library,
         {Command::Install},
         L"the monitor's library, else the one beside this program"},
    };
    return sOptions;
}

bool IsHelpWish(const std::wstring& argument) {
    return argument == L"--help" || argument == L"-h";
}

const CommandRow& FindCommand(const std::wstring& name) {
    for (const CommandRow& row : cCommands) {
        if (name == row.name) return row;
    }
    throw UsageFailure(L"'" + name + L"' is not a command.");
}

const OptionRow& FindOption(const CommandRow& command, const std::wstring& name) {
    for (const OptionRow& row : GetOptions()) {
        if (name != row.name) continue;
        if (std::ranges::find(row.commands, command.command) != row.commands.end()) return row;
        throw UsageFailure(L"'" + name + L"' does not go with " + command.name + L".");
    }
    throw UsageFailure(L"'" + name + L"' is not an option of " + command.name + L".");
}

bool IsFolderName(const std::wstring& name) {
    const GString wanted = FromWide(name.data(), static_cast<long>(name.size()));
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

void TakeOption(CommandLine& result, const OptionRow& option, const std::wstring* value) {
    const std::wstring name = option.name;
    if (!(result.*option.value).empty()) throw UsageFailure(L"'" + name + L"' is given twice.");
    // A value that looks like an option is a forgotten value, far more often than a name.
    if (value == nullptr || value->empty() || value->starts_with(L"--")) {
        throw UsageFailure(L"'" + name + L"' needs a " + option.valueName + L" behind it.");
    }
    result.*option.value = *value;
}

std::wstring Pad(std::wstring text, std::size_t width) {
    text.resize(std::max(text.size() + 1, width), L' ');
    return text;
}

std::wstring GetOptionHelp(const OptionRow& option) {
    std::wstring commands;
    for (const CommandRow& row : cCommands) {
        if (std::ranges::find(option.commands, row.command) == option.commands.end()) continue;
        commands += (commands.empty() ? L"" : L", ") + std::wstring(row.name);
    }
    const std::wstring form = L"  " + std::wstring(option.name) + L' ' + option.valueName;
    return Pad(form, 18) + option.help + L" (" + commands + L")\n";
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments) {
    CommandLine result;
    if (arguments.empty()) throw UsageFailure(L"No command is given.");
    // Help is given wherever it is asked for, also behind half a command.
    if (std::ranges::any_of(arguments, IsHelpWish)) return result;
    if (arguments[0] == L"--version" && arguments.size() == 1) {
        result.command = Command::Version;
        return result;
    }
    const CommandRow& command = FindCommand(arguments[0]);
    result.command = command.command;
    for (std::size_t i = 1; i < arguments.size(); i += 2) {
        const OptionRow& option = FindOption(command, arguments[i]);
        TakeOption(result, option, i + 1 < arguments.size() ? &arguments[i + 1] : nullptr);
    }
    CheckPrinterName(result.printer);
    return result;
}

std::wstring GetHelpText() {
    std::wstring help =
        L"quillonctl COMMAND [OPTION VALUE]...\n"
        L"Installs, checks and removes Quillon Port Monitor. Needs an administrator's rights.\n\n"
        L"Commands:\n";
    for (const CommandRow& row : cCommands) {
        help += Pad(L"  " + std::wstring(row.name), 18) + row.help + L'\n';
    }
    help += L"\nOptions:\n";
    for (const OptionRow& row : GetOptions()) help += GetOptionHelp(row);
    help += L"  --help          this page\n  --version       the version of this program\n";
    return help + L"\nExit codes: 0 done, 1 failed (status: not ready to print), 2 wrong command line.\n";
}
