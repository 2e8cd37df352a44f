#include "examples/PrinterProcessorWin/Options.h"

#include <string_view>

std::optional<Options> Options::Parse(int count, const wchar_t* const* arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::wstring_view argument = arguments[i];
        if (argument == L"--json") {
            options.json = true;
        } else if (argument == L"--once") {
            options.once = true;
        } else if (argument == L"--anywhere") {
            options.anywhere = true;
        } else {
            return std::nullopt;
        }
    }
    return options;
}

const wchar_t* Options::GetHelpText() {
    return L"PrinterProcessorWin [--json] [--once] [--anywhere]\n"
           L"Waits for printed jobs and writes what it is told about each. Ctrl-C ends it.\n\n"
           L"  --json      one JSON object a line instead of readable lines\n"
           L"  --once      end after the first job\n"
           L"  --anywhere  take job files that do not lie below the spooler's job folder, too\n\n"
           L"Exit codes: 0 ended, 1 failed, 2 wrong command line.\n";
}
