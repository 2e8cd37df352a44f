#pragma once

#include <optional>

/// What the program was started with.
struct Options {
    bool json = false;
    bool once = false;
    bool anywhere = false;  // job files need not lie below the spooler's job folder

    /// Nothing when an argument is not known, or help is asked for: print GetHelpText then.
    /// `arguments` begins with the program's name.
    static std::optional<Options> Parse(int count, const wchar_t* const* arguments);
    static const wchar_t* GetHelpText();
};
