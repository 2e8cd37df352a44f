#pragma once

#include <string>
#include <vector>

enum class Command { Help, Version, Install, Uninstall, Status, TestPage };

/// CommandLine: what the administrator asked for. A text that was not given is empty; none that was
/// given is.
struct CommandLine {
    Command command = Command::Help;
    std::wstring printer;
    std::wstring driver;
    std::wstring ppd;
    std::wstring library;
};

/// Reads the arguments behind the program's name: one command, then its options in any order, each
/// once. Throws a UsageFailure which names the argument at fault; nothing is guessed or shortened.
CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments);

/// The page that --help prints, ending in a line end.
std::wstring GetHelpText();
