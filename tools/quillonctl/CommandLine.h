#pragma once

#include <string>
#include <vector>

enum class Command { cShowPage, cInstall, cUninstall, cStatus, cJobs, cTestPage, cDoctor, cClean, cTrace };

/// CommandLine: what the administrator asked for. A text that was not given is empty; none that was
/// given is.
struct CommandLine {
    Command command = Command::cShowPage;
    std::wstring printer;
    std::wstring driver;
    std::wstring ppd;
    std::wstring library;
    long seconds = 30;  // to wait for the job file
    bool json = false;
    long long age = 0;  // seconds
    bool isDryRun = false;
    bool isOn = false;
    std::wstring page;  // help or version, to be shown; ends in a line end
};

/// Reads the arguments behind the program's name: one command, then its options in any order, each
/// once. Throws a UsageFailure which names the argument at fault; nothing is guessed or shortened.
CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments);
