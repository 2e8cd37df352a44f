#include <string>
#include <vector>

#include "framework/GFrameworkScope.h"
#include "framework/core/errors/GException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/CommandLine.h"
#include "tools/quillonctl/Installation.h"
#include "tools/quillonctl/JobList.h"
#include "tools/quillonctl/Removal.h"
#include "tools/quillonctl/Status.h"
#include "tools/quillonctl/TestPage.h"

namespace {

enum ExitCode { cDone = 0, cFailed = 1, cWrongUsage = 2 };

ExitCode ShowStatus() {
    const StatusFacts facts = StatusFacts::Gather();
    Console::Write(facts.Format());
    return facts.IsReady() ? cDone : cFailed;
}

ExitCode Run(const CommandLine& wishes) {
    switch (wishes.command) {
        case Command::cShowPage:
            Console::Write(wishes.page);
            break;
        case Command::cInstall:
            Installation(wishes).Run();
            break;
        case Command::cUninstall:
            Removal::Run();
            break;
        case Command::cStatus:
            return ShowStatus();
        case Command::cJobs:
            Console::Write(JobList::Gather(SpoolerHost::GetJobFolder()).Format());
            break;
        case Command::cTestPage:
            TestPage::Print(wishes.printer);
            break;
    }
    return cDone;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    try {
        const GFrameworkScope framework;
        return Run(ParseCommandLine(std::vector<std::wstring>(arguments + (count > 0), arguments + count)));
    } catch (const UsageFailure& failure) {
        Console::WriteError(failure.GetText() + L'\n');
        return cWrongUsage;
    } catch (const Failure& failure) {
        Console::WriteError(failure.GetText() + L'\n');
    } catch (const GException& failure) {
        Console::WriteError(std::wstring(AsWide(failure.GetFullDescription())) + L'\n');
    } catch (const std::exception&) {
        Console::WriteError(L"Memory ran out.\n");
    }
    return cFailed;
}
