#pragma once

#include <string>
#include <vector>

/// What the program was started with.
struct Options {
    bool json = false;
    bool once = false;
    bool anywhere = false;  // job files need not lie below the spooler's job folder
    std::wstring page;      // help or version, to be shown instead; ends in a line end

    /// Throws a UsageFailure when an argument is not known. `arguments` stand behind the program's name.
    static Options Read(const std::vector<std::wstring>& arguments);
};
