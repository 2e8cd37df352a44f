#pragma once

#include <string>

/// TestPage: one page with a frame, text and a scale of grays, as it has been printed.
struct TestPage {
    std::wstring printer;
    std::wstring title;     // no other document of this machine has it
    unsigned long job = 0;  // its number at the spooler

    /// Prints on the printer of that name, which must be on our port; an empty name means the usual
    /// printer, or else the first one on the port. Throws a Failure when there is no such printer or
    /// the page cannot be printed.
    static TestPage Print(const std::wstring& printer);
};
