#include "tools/console/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>
#include <utility>

#include "platform/win32/base/PWin32Api.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"

namespace {

const char cHelp[] = "--help";

// Letters to insert, remove or replace.
std::size_t GetDistance(const std::string& one, const std::string& other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t replaced = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

std::vector<std::string> GetCommandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    return names;
}

std::vector<std::string> GetOptionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
}

// The command among the arguments, or the program itself.
const CLI::App& FindApp(const CLI::App& app, const std::vector<std::string>& arguments) {
    for (const CLI::App* command : app.get_subcommands({})) {
        if (!arguments.empty() && arguments[0] == command->get_name()) return *command;
    }
    return app;
}

std::string Suggest(const std::string& name, const std::vector<std::string>& known) {
    const std::string nearest = Arguments::FindNearest(name, known);
    return nearest.empty() ? "." : ". Did you mean '" + nearest + "'?";
}

[[noreturn]] void Refuse(const CLI::App& app, const std::string& problem) {
    const CLI::App* const parent = app.get_parent();
    const std::string path = (parent != nullptr ? parent->get_name() + ' ' : "") + app.get_name();
    throw UsageFailure(FromUTF8(problem + '\n' + path + " --help tells more."));
}

std::vector<std::string> Translate(const std::vector<std::wstring>& arguments) {
    std::vector<std::string> translated;
    for (const std::wstring& argument : arguments)
        translated.push_back(argument == L"/?" || argument == L"-h" ? cHelp : ToUTF8(argument));
    if (!translated.empty() && translated[0] == "help") {
        translated.erase(translated.begin());
        translated.resize(std::min<std::size_t>(translated.size(), 1));
        translated.emplace_back(cHelp);
    }
    return translated;
}

// What the library would put less helpfully.
void CheckNames(const CLI::App& app, const std::vector<std::string>& arguments) {
    const std::vector<std::string> commands = GetCommandNames(app);
    if (!commands.empty() && arguments.empty()) Refuse(app, "No command is given.");
    const CLI::App& chosen = FindApp(app, arguments);
    if (!commands.empty() && &chosen == &app && !arguments[0].starts_with('-')) {
        Refuse(app, '\'' + arguments[0] + "' is not a command" + Suggest(arguments[0], commands));
    }
    const std::vector<std::string> options = GetOptionNames(chosen);
    for (const std::string& argument : arguments) {
        const std::string name = argument.substr(0, argument.find('='));
        if (!name.starts_with("--") || std::ranges::find(options, name) != options.end()) continue;
        Refuse(chosen, '\'' + name + "' is not an option of " + chosen.get_name() + Suggest(name, options));
    }
}

}  // namespace

std::optional<std::wstring> Arguments::Read(CLI::App& app, const std::vector<std::wstring>& arguments) {
    std::vector<std::string> translated = Translate(arguments);
    const CLI::App& chosen = FindApp(app, translated);
    if (std::ranges::find(translated, cHelp) != translated.end())
        return FromUTF8(chosen.help(&chosen == &app ? "" : app.get_name()));
    CheckNames(app, translated);
    try {
        std::ranges::reverse(translated);  // the library takes them from the end
        app.parse(translated);
        return std::nullopt;
    } catch (const CLI::CallForVersion& version) {
        return FromUTF8(version.what() + std::string("\n"));
    } catch (const CLI::ParseError& problem) {
        Refuse(chosen, problem.what());
    }
}

std::string Arguments::FindNearest(const std::string& name, const std::vector<std::string>& known) {
    constexpr std::size_t cMaxDistance = 2;
    const auto distance = [&](const std::string& other) { return GetDistance(name, other); };
    const auto nearest = std::ranges::min_element(known, {}, distance);
    return nearest != known.end() && distance(*nearest) <= cMaxDistance ? *nearest : std::string();
}

std::wstring FromUTF8(const std::string& bytes) {
    if (bytes.empty()) return {};
    const auto length = static_cast<int>(bytes.size());
    std::wstring text(bytes.size(), L'\0');  // never more units than bytes
    text.resize(static_cast<std::size_t>(
        ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, text.data(), length)));
    return text;
}
