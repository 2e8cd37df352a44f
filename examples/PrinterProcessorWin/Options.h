#pragma once

#include <string>
#include <vector>

/// What the program was started with.
struct Options {
    bool json = false;
    bool once = false;
    bool anywhere = false;  // job files need not lie below the spooler's job folder
    bool pending = false;   // jobs that nobody has been handed come first
    std::wstring run;       // the command that is run for each job; empty: none
    unsigned jobs = 1;      // how many of them at a time
    std::wstring page;      // help or version, to be shown instead; ends in a line end

    static constexpr unsigned cMaxJobs = 32;

    /// Throws a UsageFailure when an argument is not known. `arguments` stand behind the program's name.
    static Options Read(const std::vector<std::wstring>& arguments);
};
