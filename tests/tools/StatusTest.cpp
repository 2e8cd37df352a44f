// What status tells: the facts, whom the monitor tells of jobs, and what keeps it from that.
#include <regex>

#include "tests/WindowsTesting.h"
#include "tests/ipc/RawSegment.h"
#include "tools/console/Console.h"
#include "tools/quillonctl/Listeners.h"
#include "tools/quillonctl/MessagingCheck.h"
#include "tools/quillonctl/Status.h"

#include <sddl.h>

namespace {

StatusFacts MakeReadyFacts() {
    StatusFacts facts;
    facts.registeredLibrary.value = L"QuillonPortMonitor64.dll";
    facts.library.value = {L"C:\\windows\\system32\\QuillonPortMonitor64.dll", true, L"0.1.0.0"};
    facts.portFound.value = true;
    facts.printers.value = {{L"Quillon PDF", {L"QuillonPDFPort:"}, L"Some PS"}};
    facts.listeners.value = {{1, 4711, true}};
    facts.jobFolder.value = {L"C:\\Temp\\", 1536};
    facts.pages.value = {{L"quillon pdf", L"2026-11-22 09:12:45 UTC"}};
    return facts;
}

TEST(StatusFacts, IsCompleteWithWhatAJobNeedsAndReadyWithAPageOfEachPrinter) {
    using Facts = StatusFacts;
    const std::tuple<const char*, void (*)(Facts&), bool> rows[] = {
        {"everything", [](Facts&) {}, true},
        {"no forwarding monitor", [](Facts& f) { f.lacksForwarding = true; }, false},
        {"no listener", [](Facts& f) { f.listeners.value.clear(); }, true},
        {"listeners unknown", [](Facts& f) { f.listeners.problem = L"x"; }, true},
        {"job folder unknown", [](Facts& f) { f.jobFolder.problem = L"x"; }, true},
        {"no version", [](Facts& f) { f.library.value.version.reset(); }, true},
        {"not registered", [](Facts& f) { f.registeredLibrary.value.reset(); }, false},
        {"registration unknown", [](Facts& f) { f.registeredLibrary.problem = L"x"; }, false},
        {"library missing", [](Facts& f) { f.library.value.exists = false; }, false},
        {"library unknown", [](Facts& f) { f.library.problem = L"x"; }, false},
        {"port missing", [](Facts& f) { f.portFound.value = false; }, false},
        {"port unknown", [](Facts& f) { f.portFound.problem = L"x"; }, false},
        {"no printer", [](Facts& f) { f.printers.value.clear(); }, false},
        {"printers unknown", [](Facts& f) { f.printers.problem = L"x"; }, false}};
    for (const auto& [what, change, complete] : rows) {
        SCOPED_TRACE(what);
        StatusFacts facts = MakeReadyFacts();
        change(facts);
        EXPECT_EQ(facts.IsComplete(), complete);
        EXPECT_EQ(facts.IsReady(), complete);
        facts.pages.value.clear();
        EXPECT_FALSE(facts.IsReady());
    }
}

TEST(StatusFacts, ShowsEachFactInItsRow) {
    StatusFacts facts = MakeReadyFacts();
    facts.printers.value.push_back({L"B\u00FCro", {L"QuillonPDFPort:"}, L"Other PS"});
    // The last two are told by nobody.
    facts.listeners.value = {
        {1, 4711},         {2, 99, false}, {0, 12}, {-1, 13}, {1, 14, true, L"printerprocessorwin.exe"},
        {1, 15, true, L""}};
    EXPECT_EQ(ToUTF8(facts.Format()),
              "Monitor:     registered, QuillonPortMonitor64.dll\n"
              "Library:     C:\\windows\\system32\\QuillonPortMonitor64.dll, version 0.1.0.0\n"
              "Port:        QuillonPDFPort: is known to the print spooler\n"
              "Printers:    Quillon PDF (driver Some PS), last page seen to arrive 2026-11-22 09:12:45 UTC\n"
              "             B\xC3\xBCro (driver Other PS)\n"
              "Listeners:   session 1: process 4711\n"
              "             session 2: process 99, no longer listening\n"
              "             session 0: process 12\n"
              "             all sessions: process 13\n"
              "             session 1: process 14, not told: the program's name is printerprocessorwin.exe\n"
              "             session 1: process 15, not told: the program's name is unknown\n"
              "Job folder:  C:\\Temp\\, 1.5 KB free\n"
              "In place, but no page has been seen to arrive yet on 'B\xC3\xBCro'.\n"
              "'quillonctl testpage --printer NAME' tries it.\n");
    facts.printers.value.pop_back();
    EXPECT_THAT(ToUTF8(facts.Format()), testing::EndsWith(" free\nReady to print.\n"));
    facts.lacksForwarding = true;
    EXPECT_THAT(ToUTF8(facts.Format()), testing::HasSubstr("\nNot ready to print.\nWine's spooler keeps "));
}

TEST(StatusFacts, NamesWhatIsMissingOrUnknown) {
    StatusFacts facts;
    facts.library.value = {L"C:\\x.dll", false, std::nullopt};
    facts.listeners.problem = L"No.\nStart it.";
    facts.jobFolder.value = {L"C:\\Temp\\", 0};
    EXPECT_EQ(ToUTF8(facts.Format()),
              "Monitor:     not registered\n"
              "Library:     C:\\x.dll is missing\n"
              "Port:        QuillonPDFPort: is missing\n"
              "Printers:    none on the port\n"
              "Listeners:   unknown: No.\n"
              "             Start it.\n"
              "Job folder:  C:\\Temp\\, 0 bytes free\n"
              "Not ready to print.\n'quillonctl doctor' tells what to do.\n");
}

TEST(StatusFacts, IsOneJsonObject) {
    StatusFacts facts = MakeReadyFacts();
    facts.listeners.value = {{-1, 14, true, L""}};
    facts.portFound.problem = L"No \"spooler\".\nStart it.";
    // Without the line ends and what stands before each line.
    const std::string json = std::regex_replace(ToUTF8(facts.FormatAsJson()), std::regex("\n *"), "");
    EXPECT_EQ(json, R"({"complete": false,"ready": false,"lacksForwardingMonitor": false,)"
                    R"("monitor": "QuillonPortMonitor64.dll",)"
                    R"("library": {"path": "C:\\windows\\system32\\QuillonPortMonitor64.dll","exists": true,)"
                    R"("version": "0.1.0.0"},"port": {"problem": "No \"spooler\".\nStart it."},)"
                    R"("printers": [{"name": "Quillon PDF","driver": "Some PS",)"
                    R"("pageSeen": "2026-11-22 09:12:45 UTC"}],)"
                    R"("listeners": [{"session": null,"process": 14,"listening": true,"told": false,)"
                    R"("otherProgram": null}],"jobFolder": {"path": "C:\\Temp\\","freeBytes": 1536}})");
}

TEST(FormatByteCount, TakesTheLargestUnitAndCutsTheRest) {
    ForEachRow<2>(
        {"0 -> 0 bytes", "1023 -> 1023 bytes", "1024 -> 1.0 KB", "1535 -> 1.4 KB", "1536 -> 1.5 KB",
         "1048575 -> 1023.9 KB", "1048576 -> 1.0 MB", "1073741823 -> 1023.9 MB", "1073741824 -> 1.0 GB",
         "1099511627776 -> 1.0 TB", "1152921504606846975 -> 1023.9 PB", "18446744073709551615 -> 15.9 EB"},
        [](auto bytes, auto text) {
            EXPECT_EQ(ToUTF8(FormatByteCount(std::strtoull(bytes.data(), nullptr, 10))), text);
        });
}

using KernelHandle = PWin32ScopedHandle<PWin32KernelHandle>;

const char cLock[] = "Global\\QulShLGIPCTest_PP";
const char cSegment[] = "QulShDGIPCTest_PP";

std::string FindObstacle() {
    return ToUTF8(MessagingCheck::FindObstacle(GIPCMessageQueueMgr::cTest));
}

TEST(MessagingCheck, NamesALockThatIsHeldOrKeptFromOthersOrNoLockAtAll) {
    EXPECT_EQ(FindObstacle(), "") << "nothing is there yet";
    {
        const KernelHandle lock(::CreateMutexA(nullptr, TRUE, cLock));
        std::string found;
        std::thread([&] { found = FindObstacle(); }).join();
        EXPECT_THAT(found, testing::StartsWith(std::string(cLock) + " has been held by another program"));
        ::ReleaseMutex(lock.Get());
        EXPECT_EQ(FindObstacle(), "") << "and it was given back";
    }
    {
        const KernelHandle event(::CreateEventA(nullptr, TRUE, FALSE, cLock));
        EXPECT_THAT(FindObstacle(), testing::HasSubstr("another kind"));
    }
    SECURITY_ATTRIBUTES nobody{sizeof nobody, nullptr, FALSE};
    ASSERT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorA(
        "D:(A;;RC;;;WD)", SDDL_REVISION_1, &nobody.lpSecurityDescriptor, nullptr));
    const PWin32ScopedHandle<PWin32LocalBlock> descriptor(nobody.lpSecurityDescriptor);
    const KernelHandle lock(::CreateMutexA(&nobody, FALSE, cLock));
    EXPECT_THAT(FindObstacle(), testing::MatchesRegex(".* belongs to .+, who shuts others out."));
}

TEST(MessagingCheck, NamesASegmentOfAnotherSize) {
    const auto segment = RawSegment::Make("Global\\", cSegment, 8208);
    segment->SetWord(0, 8208);
    EXPECT_EQ(FindObstacle(), "");
    segment->SetWord(0, 8204);
    EXPECT_THAT(FindObstacle(), testing::StartsWith("Global\\QulShDGIPCTest_PP has room for 8200 bytes"));
    segment->SetWord(0, 100000);
    EXPECT_THAT(FindObstacle(), testing::HasSubstr("cannot be used"));
}

TEST(Listeners, AProcessIsListedOnceUnderItsOwnSession) {
    // Each registration is a session, a process and a number, each listener a session and a process.
    using Found = std::vector<std::pair<long, long>>;
    const std::tuple<const char*, GTable<GIPCQueueAddress>, Found> rows[] = {
        {"nobody", {}, {}},
        {"its session's registry alone", {{2, 10, 5}}, {{2, 10}}},
        {"the shared one first", {{-1, 10, 5}, {2, 10, 6}}, {{2, 10}}},
        {"the shared one last", {{2, 10, 6}, {-1, 10, 5}}, {{2, 10}}},
        {"the shared one as that of session 0", {{0, 10, 5}, {1, 10, 6}}, {{1, 10}}},
        {"session 0 itself", {{-1, 10, 5}, {0, 10, 5}}, {{0, 10}}},
        {"the shared one alone", {{-1, 10, 5}}, {{-1, 10}}},
        {"twice in one registry", {{1, 10, 5}, {1, 10, 6}}, {{1, 10}}},
        {"three", {{0, 30, 1}, {0, 10, 2}, {0, 20, 3}, {1, 10, 4}, {2, 20, 5}}, {{0, 30}, {1, 10}, {2, 20}}}};
    for (const auto& [what, registrations, expected] : rows) {
        Found found;
        for (const Listener& listener : Listeners::Merge(registrations))
            found.emplace_back(listener.session, listener.processID);
        EXPECT_EQ(found, expected) << what;
    }
}

}  // namespace
