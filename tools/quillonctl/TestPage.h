#pragma once

#include <string>

/// TestPage: prints one page with a frame, text and a scale of grays.
class TestPage {
public:
    /// Prints on the printer of that name, which must be on our port; an empty name means the usual
    /// printer, or else the first one on the port. Throws a Failure when there is no such printer or
    /// the page cannot be printed.
    static void Print(const std::wstring& printer);
};
