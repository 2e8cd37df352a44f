#include <string>
#include <vector>

#include "framework/GFrameworkScope.h"
#include "framework/core/errors/GException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/Cleaning.h"
#include "tools/quillonctl/CommandLine.h"
#include "tools/quillonctl/Diagnosis.h"
#include "tools/quillonctl/Installation.h"
#include "tools/quillonctl/JobList.h"
#include "tools/quillonctl/PageTrial.h"
#include "tools/quillonctl/Removal.h"
#include "tools/quillonctl/Status.h"
#include "tools/quillonctl/TraceSwitch.h"

namespace {

enum ExitCode { cDone = 0, cFailed = 1, cWrongUsage = 2 };

ExitCode ShowStatus(bool json) {
    const StatusFacts facts = StatusFacts::Gather();
    Console::Write(json ? facts.FormatAsJson() : facts.Format());
    return facts.IsComplete() ? cDone : cFailed;
}

ExitCode Diagnose(bool json) {
    const Diagnosis diagnosis(DoctorFacts::Gather());
    Console::Write(json ? diagnosis.FormatAsJson() : diagnosis.Format());
    return diagnosis.IsWell() ? cDone : cFailed;
}

ExitCode Clean(const CommandLine& wishes) {
    std::vector<std::wstring> printers = {wishes.printer};
    if (wishes.printer.empty()) {
        printers.clear();
        for (const PrinterInfo& printer : Printers::GetOnOurPort()) printers.push_back(printer.name);
    }
    const Cleaning cleaning =
        Cleaning::Run(SpoolerHost::GetJobFolder(), printers, wishes.age, wishes.isDryRun);
    Console::Write(cleaning.Format());
    return cleaning.IsDone() ? cDone : cFailed;
}

void SwitchTrace(bool isOn) {
    const std::wstring folder = TraceSwitch::GetFolder();
    const bool hasChanged = isOn ? TraceSwitch::On(folder) : TraceSwitch::Off(folder);
    std::wstring text =
        std::wstring(L"The trace log is ") + (isOn ? L"on" : L"off") + (hasChanged ? L".\n" : L" already.\n");
    if (isOn) text += L"Configuration: " + folder + L'\\' + TraceSwitch::cConfiguration + L'\n';
    text += L"Log:           " + folder + L'\\' + TraceSwitch::cLog +
            L"\nThis takes effect when the library is loaded: " +
            (SpoolerHost::IsWine() ? L"under Wine, by each program that prints.\n"
                                   : L"net stop spooler, then net start spooler.\n");
    Console::Write(text);
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
            return ShowStatus(wishes.json);
        case Command::cJobs:
            Console::Write(JobList::Gather(SpoolerHost::GetJobFolder()).Format());
            break;
        case Command::cTestPage:
            return PageTrial::Run(wishes.printer, wishes.seconds) ? cDone : cFailed;
        case Command::cDoctor:
            return Diagnose(wishes.json);
        case Command::cClean:
            return Clean(wishes);
        case Command::cTrace:
            SwitchTrace(wishes.isOn);
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
