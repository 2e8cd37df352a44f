#include "tools/quillonctl/Diagnosis.h"

#include "tests/WindowsTesting.h"
#include "tools/console/Console.h"

#include <winspool.h>

namespace {

using Facts = DoctorFacts;
using State = LoadedLibrary::State;

Facts MakeGoodFacts() {
    Facts facts;
    facts.status.registeredLibrary.value = L"QuillonPortMonitor64.dll";
    facts.status.library.value = {L"C:\\x\\QuillonPortMonitor64.dll", true, L"0.1.0.0"};
    facts.status.portFound.value = true;
    facts.status.printers.value = {{L"P", {L"QuillonPDFPort:"}, L"Some PS"}};
    facts.status.listeners.value = {{1, 4711, true}};
    facts.status.jobFolder.value = {L"C:\\Temp\\", 100ULL << 20};
    facts.status.pages.value = {{L"P", L"yesterday"}};
    facts.spooler.value = {true, false};
    facts.loaded.value = State::cSame;
    facts.jobs.value = {{L"P", {3, L"Letter", L"anna", L"being printed", 119}}};
    return facts;
}

/// What is not good, a line each: check, finding and remedy, with bars between them.
std::string FaultsOf(const Facts& facts) {
    std::string faults;
    const Diagnosis diagnosis(facts);
    for (const Finding& finding : diagnosis.GetFindings()) {
        if (finding.state == Finding::State::cGood) continue;
        std::string row = ToUTF8(finding.check) + '|' + ToUTF8(finding.text) + '|' + ToUTF8(finding.remedy);
        std::ranges::replace(row, '\n', ' ');
        faults += row + '\n';
        EXPECT_FALSE(finding.remedy.empty()) << faults;
    }
    return faults;
}

const PrintPolicy cPolicy = {"", "", L"A policy.", L"Lift it."};
const Listener cStranger = {1, 14, true, L"mine.exe"};

/// What spoils good facts, the fault that is then found, as it begins, and what its remedy names.
const std::tuple<void (*)(Facts&), const char*, const char*> cCauses[] = {
    {[](Facts& f) { f.spooler.value.isRunning = false; }, "Spooler|The print spooler does not run.",
     "net start spooler"},
    {[](Facts& f) { f.spooler.value = Facts::Service(false, true); },
     "Spooler|The print spooler is disabled.", "start= auto"},
    {[](Facts& f) { f.spooler.problem = L"No."; }, "Spooler|This cannot be found out: No.", "See to"},
    {[](Facts& f) { f.status.registeredLibrary.value.reset(); },
     "Monitor|The port monitor is not registered.", "quillonctl install"},
    {[](Facts& f) { f.status.lacksForwarding = true; }, "Monitor|Nothing can be printed", "forwarding"},
    {[](Facts& f) { f.status.library.value.exists = false; },
     "Library|C:\\x\\QuillonPortMonitor64.dll is missing.", "quillonctl install"},
    {[](Facts& f) { f.libraryFault = L"It cannot be loaded."; },
     "Library|C:\\x\\QuillonPortMonitor64.dll is not the monitor's library. It cannot be loaded.", "--dll"},
    {[](Facts& f) { f.loaded.value = State::cOther; }, "Loaded|The spooler still uses another", "net stop"},
    {[](Facts& f) { f.loaded.value = State::cNone; }, "Loaded|The spooler has not loaded", "net stop"},
    {[](Facts& f) { f.status.portFound.value = false; }, "Port|The spooler does not know", "net stop"},
    {[](Facts& f) { f.status.printers.value.clear(); }, "Printer|No printer is on the port.", "install"},
    {[](Facts& f) { f.status.printers.value[0].status = PRINTER_STATUS_PAUSED; },
     "Printer|The printer 'P' is paused.", "untick \"Pause Printing\""},
    {[](Facts& f) { f.status.printers.value[0].attributes = PRINTER_ATTRIBUTE_WORK_OFFLINE; },
     "Printer|The printer 'P' is offline.", "untick \"Use Printer Offline\""},
    {[](Facts& f) { f.status.printers.value[0].status = PRINTER_STATUS_ERROR; },
     "Printer|The printer 'P' reports an error.", "delete the jobs"},
    {[](Facts& f) { f.jobs.value[0].job.seconds = 120; },
     "Queue|'Letter' of anna waits on 'P' for 2 min (being printed).", "Resume or delete"},
    {[](Facts& f) { f.policies.value.push_back(cPolicy); }, "Policy|A policy.", "Lift it."},
    {[](Facts& f) { f.status.jobFolder.problem = L"No."; }, "Job folder|This cannot be found", "See to"},
    {[](Facts& f) { f.folderFault = L"Access denied."; },
     "Job folder|No file can be made in C:\\Temp\\: Access denied.", "TMP"},
    {[](Facts& f) { --f.status.jobFolder.value.freeBytes; }, "Job folder|C:\\Temp\\ has only 99.9 MB free.",
     "quillonctl clean"},
    {[](Facts& f) { f.status.pages.value.clear(); }, "Page|No page was seen to arrive on 'P' yet.",
     "testpage --printer \"P\""},
    {[](Facts& f) { f.messagingObstacle = L"X"; }, "Messaging|Nobody can be told of jobs: X|", "End the"},
    {[](Facts& f) { f.status.listeners.value.clear(); }, "Listener|Nobody is told of jobs.", "--pending"},
    {[](Facts& f) { f.status.listeners.value.push_back(cStranger); },
     "Listener|Process 14 (mine.exe) listens, and is not told", "exactly PrinterProcessorWin.exe"},
    {[](Facts& f) { f.silentReceivers.value = {15}; },
     "Listener|Process 15 (PrinterProcessorWin.exe) runs, and does not listen.", "start it anew"},
};

TEST(Diagnosis, NamesEachCauseAndItsRemedyAndNothingElse) {
    EXPECT_EQ(FaultsOf(MakeGoodFacts()), "");
    EXPECT_EQ(Diagnosis(MakeGoodFacts()).GetFindings().size(), 12u) << "what is good is told, too";
    for (const auto& [change, fault, remedy] : cCauses) {
        SCOPED_TRACE(fault);
        Facts facts = MakeGoodFacts();
        change(facts);
        const std::string faults = FaultsOf(facts);
        EXPECT_THAT(faults, testing::StartsWith(fault));
        EXPECT_THAT(faults, testing::HasSubstr(remedy));
        EXPECT_EQ(std::ranges::count(faults, '\n'), 1);
        // What was not tried is no fault.
        EXPECT_EQ(Diagnosis(facts).IsWell(), faults.starts_with("Page"));
    }
}

TEST(Diagnosis, AsksWineForNoServiceAndNoQueue) {
    Facts facts = MakeGoodFacts();
    facts.isWine = true;
    facts.spooler.problem = facts.loaded.problem = facts.jobs.problem = L"not asked";
    EXPECT_EQ(FaultsOf(facts), "");
    // One that has ended without signing off harms nobody, but is nobody who is told either.
    facts.status.listeners.value[0].isListening = false;
    EXPECT_THAT(FaultsOf(facts), testing::StartsWith("Listener|Nobody is told of jobs."));
}

TEST(Diagnosis, IsShownInRowsAndAsJson) {
    Facts facts = MakeGoodFacts();
    facts.isWine = true;
    facts.status.registeredLibrary.value.reset();
    facts.status.library.problem = L"No.\nStart it.";
    const Diagnosis diagnosis(facts);
    const std::string rows = ToUTF8(diagnosis.Format());
    EXPECT_THAT(rows, testing::StartsWith("FAULT  Monitor     The port monitor is not registered.\n"
                                          "                   -> Run: quillonctl install\n"
                                          "FAULT  Library     This cannot be found out: No.\n"
                                          "                   Start it.\n"
                                          "                   -> See to that first, then ask again.\n"
                                          "good   Port        QuillonPDFPort: is known\n"));
    EXPECT_THAT(rows, testing::EndsWith(" told of jobs\n2 faults were found.\n"));
    EXPECT_THAT(ToUTF8(diagnosis.FormatAsJson()),
                testing::StartsWith("{\n  \"well\": false,\n  \"findings\": [\n    {\n"
                                    "      \"check\": \"Monitor\",\n      \"state\": \"fault\",\n"
                                    "      \"text\": \"The port monitor is not registered.\",\n"
                                    "      \"remedy\": \"Run: quillonctl install\"\n    },\n"));
    EXPECT_THAT(ToUTF8(Diagnosis(MakeGoodFacts()).Format()),
                testing::EndsWith(" told of jobs\nAll is well.\n"));
}

}  // namespace
