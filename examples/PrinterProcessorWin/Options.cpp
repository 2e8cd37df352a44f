#include "examples/PrinterProcessorWin/Options.h"

#include <CLI/CLI.hpp>

#include "tools/console/Arguments.h"
#include "tools/machine/Failure.h"

Options Options::Read(const std::vector<std::wstring>& arguments) {
    Options options;
    CLI::App app("Waits for printed jobs and writes what it is told about each. Ctrl-C ends it.",
                 "PrinterProcessorWin");
    app.set_version_flag("--version", "PrinterProcessorWin " QUILLON_VERSION, "the version of this program");
    app.add_flag("--json", options.json, "one JSON object a line instead of readable lines");
    app.add_flag("--once", options.once, "end after the first job");
    app.add_flag("--anywhere", options.anywhere,
                 "take job files that do not lie below the spooler's job folder, too");
    app.add_flag("--pending", options.pending,
                 "first hand out the jobs that nobody has been handed: the .ps files in the\n"
                 "job folder that are not called \"... (taken N-N).ps\", oldest first");
    std::string run;
    CLI::Option* const hasRun =
        app.add_option("--run", run, "run a program for each job")->type_name("COMMAND");
    app.add_option("--jobs", options.jobs, "run so many at a time, while others wait in order")
        ->type_name("N")
        ->needs(hasRun)
        ->check(CLI::Range(1U, cMaxJobs));
    app.footer(
        "COMMAND is a program and its arguments, in which these stand for the job and for folders:\n"
        "  %JobPath% %JobName% %UserName% %PrinterName% %PortName% %CopyCount% %Unique ID% %Date%\n"
        "  %Time% %Desktop% %My Documents% %Program Files% %Temp% %System Disk%; %% is a percent sign.\n"
        "Exit codes: 0 ended, 1 failed (with --once also when the program did), 2 wrong command line.");
    if (auto page = Arguments::Read(app, arguments)) options.page = *page;
    options.run = FromUTF8(run);
    if (hasRun->count() > 0 && options.run.empty()) throw UsageFailure(L"--run needs a program.");
    return options;
}
