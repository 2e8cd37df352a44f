#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Arguments: the command line of a program, in UTF-16, read by a CLI::App, whose texts are UTF-8.
///
/// `help`, `help COMMAND` and `/?` mean the same as `--help`, alone and behind a command.
class Arguments {
public:
    /// Reads the arguments behind the program's name into what `app` was given. Returns a page to show,
    /// ending in a line end, where help or the version is asked for. Throws a UsageFailure which names the
    /// argument at fault, and the command or option that it comes close to.
    static std::optional<std::wstring> Read(CLI::App& app, const std::vector<std::wstring>& arguments);

    /// The one that is meant by a misspelt name: at most two letters are missing, too many, wrong or swapped.
    /// Empty when none comes close.
    static std::string FindNearest(const std::string& name, const std::vector<std::string>& known);
};

/// UTF-8 as UTF-16; what is not well-formed becomes U+FFFD.
std::wstring FromUTF8(const std::string& bytes);
