#include "tools/quillonctl/Diagnosis.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/console/Arguments.h"
#include "tools/console/Console.h"
#include "tools/quillonctl/MonitorRegistry.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"

#include <winspool.h>

namespace {

using State = Finding::State;

constexpr const wchar_t* cRestart = L"Restart the spooler: net stop spooler, then net start spooler.";

/// Takes what one check finds.
class Report {
public:
    Report(std::vector<Finding>& findings, const wchar_t* check) : mFindings(findings), mCheck(check) {}
    void Good(std::wstring text) { mFindings.push_back({mCheck, State::cGood, std::move(text), {}}); }
    void Note(std::wstring text, std::wstring remedy) {
        mFindings.push_back({mCheck, State::cNote, std::move(text), std::move(remedy)});
    }
    void Fault(std::wstring text, std::wstring remedy) {
        mFindings.push_back({mCheck, State::cFault, std::move(text), std::move(remedy)});
    }
    /// Whether the answer can be judged; else that is the finding.
    template <class T>
    bool Knows(const Answer<T>& answer) {
        if (!answer.IsKnown())
            Fault(L"This cannot be found out: " + answer.problem, L"See to that first, then ask again.");
        return answer.IsKnown();
    }

private:
    std::vector<Finding>& mFindings;
    const wchar_t* mCheck;
};

void CheckSpooler(const DoctorFacts& facts, Report& report) {
    if (facts.isWine || !report.Knows(facts.spooler)) return;
    const DoctorFacts::Service& service = facts.spooler.value;
    if (service.isRunning) return report.Good(L"runs");
    if (!service.isDisabled)
        return report.Fault(L"The print spooler does not run.", L"Run: net start spooler");
    report.Fault(L"The print spooler is disabled.",
                 L"Run: sc config spooler start= auto, then net start spooler.");
}

void CheckMonitor(const DoctorFacts& facts, Report& report) {
    const auto& library = facts.status.registeredLibrary;
    if (!report.Knows(library)) return;
    if (!library.value)
        return report.Fault(L"The port monitor is not registered.", L"Run: quillonctl install");
    if (!facts.status.lacksForwarding) return report.Good(L"registered, " + *library.value);
    report.Fault(L"Nothing can be printed through Wine's spooler.", MonitorRegistry::cForwardingAdvice);
}

void CheckLibrary(const DoctorFacts& facts, Report& report) {
    if (!report.Knows(facts.status.library)) return;
    const StatusFacts::Library& library = facts.status.library.value;
    if (!library.exists) return report.Fault(library.path + L" is missing.", L"Run: quillonctl install");
    if (!facts.libraryFault)
        return report.Good(library.path + L", version " + library.version.value_or(L"?"));
    report.Fault(library.path + L" is not the monitor's library. " + *facts.libraryFault,
                 L"Remove it, then install the 64-bit library: quillonctl install --dll FILE");
}

void CheckLoaded(const DoctorFacts& facts, Report& report) {
    const bool isInPlace = facts.status.registeredLibrary.value && facts.status.library.value.exists;
    const bool isRunning = !facts.spooler.IsKnown() || facts.spooler.value.isRunning;
    if (facts.isWine || !isInPlace || !isRunning || !report.Knows(facts.loaded)) return;
    switch (facts.loaded.value) {
        case LoadedLibrary::State::cSame:
            return report.Good(L"the spooler has loaded what lies on the disk");
        case LoadedLibrary::State::cOther:
            return report.Fault(L"The spooler still uses another library than the one on the disk.",
                                cRestart);
        default:
            return report.Fault(L"The spooler has not loaded the library, though it is registered.",
                                cRestart);
    }
}

void CheckPort(const DoctorFacts& facts, Report& report) {
    if (!report.Knows(facts.status.portFound)) return;
    if (facts.status.portFound.value) return report.Good(std::wstring(Product::cPortName) + L" is known");
    report.Fault(
        L"The spooler does not know the port " + std::wstring(Product::cPortName),
        std::wstring(cRestart) + L" Should it stay away: quillonctl uninstall, then quillonctl install.");
}

// What keeps a printer from printing, and the entry of its queue's menu that does so; null where there is
// none.
const wchar_t* FindObstacle(const PrinterInfo& printer, const wchar_t*& menuEntry) {
    menuEntry = nullptr;
    if ((printer.status & PRINTER_STATUS_PAUSED) != 0) {
        menuEntry = L"Pause Printing";
        return L"is paused";
    }
    if ((printer.attributes & PRINTER_ATTRIBUTE_WORK_OFFLINE) != 0) {
        menuEntry = L"Use Printer Offline";
        return L"is offline";
    }
    if ((printer.status & PRINTER_STATUS_PENDING_DELETION) != 0) return L"is being deleted";
    if ((printer.status & (PRINTER_STATUS_OFFLINE | PRINTER_STATUS_NOT_AVAILABLE)) != 0) return L"is offline";
    return (printer.status & PRINTER_STATUS_ERROR) != 0 ? L"reports an error" : nullptr;
}

void CheckPrinters(const DoctorFacts& facts, Report& report) {
    if (!report.Knows(facts.status.printers)) return;
    if (facts.status.printers.value.empty())
        report.Fault(L"No printer is on the port.", L"Run: quillonctl install");
    for (const PrinterInfo& printer : facts.status.printers.value) {
        const wchar_t* menuEntry = nullptr;
        const wchar_t* const obstacle = FindObstacle(printer, menuEntry);
        const std::wstring name = L'\'' + printer.name + L'\'';
        if (obstacle == nullptr) {
            report.Good(name + L" accepts jobs");
            continue;
        }
        const std::wstring queue =
            L"Open its queue (rundll32 printui.dll,PrintUIEntry /o /n \"" + printer.name + L"\")";
        report.Fault(L"The printer " + name + L' ' + obstacle + L'.',
                     menuEntry != nullptr ? queue + L" and untick \"" + menuEntry + L"\" in its menu."
                                          : queue + L" and delete the jobs that have failed. " + cRestart);
    }
}

void CheckQueue(const DoctorFacts& facts, Report& report) {
    constexpr long long cLongSeconds = 120;
    if (facts.isWine || !report.Knows(facts.jobs)) return;
    const auto& jobs = facts.jobs.value;
    for (const DoctorFacts::Job& waiting : jobs) {
        if (waiting.job.seconds < cLongSeconds) continue;
        const std::wstring state = waiting.job.state.empty() ? L"" : L" (" + waiting.job.state + L')';
        report.Fault(
            L"'" + MakePrintable(waiting.job.document) + L"' of " + waiting.job.user + L" waits on '" +
                waiting.printer + L"' for " + std::to_wstring(waiting.job.seconds / 60) + L" min" + state +
                L'.',
            L"Resume or delete it in the printer's queue. One that is \"being printed\" for so long: "
            L"restart the spooler.");
    }
    const auto isLong = [](const DoctorFacts::Job& waiting) { return waiting.job.seconds >= cLongSeconds; };
    if (std::ranges::none_of(jobs, isLong)) report.Good(L"no job waits for long");
}

void CheckPages(const DoctorFacts& facts, Report& report) {
    if (!report.Knows(facts.status.pages)) return;
    for (const PrinterInfo& printer : facts.status.printers.value) {
        const std::wstring page = facts.status.GetPageOf(printer.name);
        if (!page.empty()) {
            report.Good(L"a page on '" + printer.name + L"' was seen to arrive " + page);
        } else {
            report.Note(L"No page was seen to arrive on '" + printer.name + L"' yet.",
                        L"Try one: quillonctl testpage --printer \"" + printer.name + L"\"");
        }
    }
}

void CheckListeners(const DoctorFacts& facts, Report& report) {
    if (!facts.messagingObstacle.empty() || !report.Knows(facts.status.listeners)) return;
    const auto& listeners = facts.status.listeners.value;
    const auto told = std::ranges::count_if(listeners, &Listener::IsTold);
    for (const Listener& listener : listeners) {
        if (!listener.isListening || listener.IsTold()) continue;
        const std::wstring name = listener.otherProgram->empty() ? L"another name" : *listener.otherProgram;
        report.Fault(L"Process " + std::to_wstring(listener.processID) + L" (" + name +
                         L") listens, and is not told of jobs.",
                     L"Rename its program file to exactly PrinterProcessorWin.exe: that name is looked for.");
    }
    for (const long process : facts.silentReceivers.value) {
        report.Fault(
            L"Process " + std::to_wstring(process) + L" (PrinterProcessorWin.exe) runs, and does not listen.",
            L"It may be starting, or hang: start it anew. Another program should not have that name.");
    }
    if (told > 0) return report.Good(std::to_wstring(told) + L" told of jobs");
    report.Fault(
        L"Nobody is told of jobs. They are written all the same.",
        L"Start the processing application, in any session. PrinterProcessorWin --pending hands out what "
        L"was missed.");
}

void CheckMessaging(const DoctorFacts& facts, Report& report) {
    if (facts.messagingObstacle.empty()) return report.Good(L"nothing blocks it");
    report.Fault(L"Nobody can be told of jobs: " + facts.messagingObstacle,
                 L"End the program that is in the way, or log its user off; they are written all the same.");
}

void CheckJobFolder(const DoctorFacts& facts, Report& report) {
    constexpr unsigned long long cLittleRoom = 100ULL << 20;
    if (!report.Knows(facts.status.jobFolder)) return;
    const StatusFacts::JobFolder& folder = facts.status.jobFolder.value;
    if (!facts.folderFault.empty()) {
        report.Fault(
            L"No file can be made in " + folder.path + L": " + facts.folderFault,
            L"The folder must be there and the system must be allowed to write in it. It is the machine's "
            L"TMP, or else TEMP.");
    } else if (folder.freeBytes < cLittleRoom) {
        report.Fault(folder.path + L" has only " + FormatByteCount(folder.freeBytes) + L" free.",
                     L"Make room on that disk. Old job files go with: quillonctl clean --older 7d");
    } else {
        report.Good(folder.path + L", " + FormatByteCount(folder.freeBytes) + L" free");
    }
}

void CheckPolicies(const DoctorFacts& facts, Report& report) {
    if (!report.Knows(facts.policies)) return;
    for (const PrintPolicy& policy : facts.policies.value) report.Fault(policy.effect, policy.remedy);
    if (facts.policies.value.empty())
        report.Good(L"protected print mode is off, and no policy is in the way");
}

constexpr struct {
    const wchar_t* name;
    void (*check)(const DoctorFacts& facts, Report& report);
} cChecks[] = {
    {L"Spooler", CheckSpooler}, {L"Monitor", CheckMonitor},     {L"Library", CheckLibrary},
    {L"Loaded", CheckLoaded},   {L"Port", CheckPort},           {L"Printer", CheckPrinters},
    {L"Queue", CheckQueue},     {L"Policy", CheckPolicies},     {L"Job folder", CheckJobFolder},
    {L"Page", CheckPages},      {L"Messaging", CheckMessaging}, {L"Listener", CheckListeners},
};

const wchar_t* GetMark(State state) {
    if (state == State::cGood) return L"good";
    return state == State::cNote ? L"note" : L"FAULT";
}

// Further lines stand under the first.
std::wstring Indent(const std::wstring& text, std::size_t column) {
    std::wstring indented;
    for (const wchar_t unit : text) {
        indented += unit;
        if (unit == L'\n') indented.append(column, L' ');
    }
    return indented + L'\n';
}

}  // namespace

Diagnosis::Diagnosis(const DoctorFacts& facts) {
    for (const auto& row : cChecks) {
        Report report(mFindings, row.name);
        row.check(facts, report);
    }
}

bool Diagnosis::IsWell() const {
    return std::ranges::find(mFindings, State::cFault, &Finding::state) == mFindings.end();
}

std::wstring Diagnosis::Format() const {
    constexpr std::size_t cMarkUnits = 7;
    constexpr std::size_t cColumnUnits = cMarkUnits + 12;
    std::wstring text;
    for (const Finding& finding : mFindings) {
        std::wstring row = GetMark(finding.state);
        row.resize(cMarkUnits, L' ');
        row += finding.check;
        row.resize(cColumnUnits, L' ');
        text += row + Indent(finding.text, cColumnUnits);
        if (!finding.remedy.empty())
            text += std::wstring(cColumnUnits, L' ') + L"-> " + Indent(finding.remedy, cColumnUnits + 3);
    }
    const auto faults = std::ranges::count(mFindings, State::cFault, &Finding::state);
    if (faults == 0) return text + L"All is well.\n";
    return text +
           (faults == 1 ? L"1 fault was found.\n" : std::to_wstring(faults) + L" faults were found.\n");
}

std::wstring Diagnosis::FormatAsJson() const {
    using Json = nlohmann::ordered_json;
    static constexpr const char* cStates[] = {"good", "note", "fault"};
    Json list = Json::array();
    for (const Finding& finding : mFindings) {
        list.push_back({{"check", ToUTF8(finding.check)},
                        {"state", cStates[static_cast<std::size_t>(finding.state)]},
                        {"text", ToUTF8(finding.text)},
                        {"remedy", ToUTF8(finding.remedy)}});
    }
    return FromUTF8(Json{{"well", IsWell()}, {"findings", list}}.dump(2) + '\n');
}
