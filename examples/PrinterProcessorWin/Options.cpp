#include "examples/PrinterProcessorWin/Options.h"

#include <CLI/CLI.hpp>

#include "tools/console/Arguments.h"

Options Options::Read(const std::vector<std::wstring>& arguments) {
    Options options;
    CLI::App app("Waits for printed jobs and writes what it is told about each. Ctrl-C ends it.",
                 "PrinterProcessorWin");
    app.set_version_flag("--version", "PrinterProcessorWin " QUILLON_VERSION, "the version of this program");
    app.add_flag("--json", options.json, "one JSON object a line instead of readable lines");
    app.add_flag("--once", options.once, "end after the first job");
    app.add_flag("--anywhere", options.anywhere,
                 "take job files that do not lie below the spooler's job folder, too");
    app.footer("Exit codes: 0 ended, 1 failed, 2 wrong command line.");
    if (auto page = Arguments::Read(app, arguments)) options.page = *page;
    return options;
}
