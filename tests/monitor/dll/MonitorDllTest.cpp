// The DLL from outside, through the table that the spooler gets.

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "tests/ipc/ManagerTestSupport.h"
#include "tests/monitor/dll/MonitorLibrary.h"
#include "tests/monitor/dll/ProcessResources.h"
#include "tests/monitor/dll/TraceCapture.h"
#include "tests/tools/ChildProcess.h"

#include <objbase.h>

namespace {

using testing::ElementsAre;

constexpr DWORD cUntouched = 4711;

/// The last error that a call leaves; cUntouched, too, when it succeeds. A wrong pairing of the two is 0.
template <class Call>
DWORD ErrorOf(Call call) {
    ::SetLastError(cUntouched);
    const bool succeeded = call();
    const DWORD lastError = ::GetLastError();
    return succeeded == (lastError == cUntouched) ? lastError : 0;
}

TEST(MonitorDll, TracesItsLoadAndUnload) {
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const std::tuple<DWORD, const char*> rows[] = {
        {COINIT_MULTITHREADED, "CoInitializeEx S_FALSE"},
        {COINIT_APARTMENTTHREADED, "CoInitializeEx RPC_E_CHANGED_MODE"},
    };
    for (const auto& [model, word] : rows) {
        SCOPED_TRACE(word);
        std::thread([&] {
            ::CoInitializeEx(nullptr, model);
            TraceCapture trace;
            {
                const MonitorLibrary library;
                EXPECT_THAT(trace.Take(),
                            ElementsAre("DLLMain", "DLL_PROCESS_ATTACH", word,
                                        "GPPPrinterProcessorLayer::Initialize", "InitializePrintMonitor2"));
            }
            EXPECT_THAT(trace.Take(),
                        ElementsAre("DLLMain", "DLL_PROCESS_DETACH", "PPMShutdown", "Done detach"));
        }).join();
    }
}

TEST(MonitorDll, LeavesNothingBehindWhenItIsUnloaded) {
    constexpr std::size_t cLoads = 30;
    constexpr std::size_t cRunTimeRest = 4096;  // bytes, of thread-local storage and the like
    // The system's own library would leave a mutex behind each time that nobody uses it any more.
    const HMODULE spooler = ::LoadLibraryW(L"winspool.drv");
    const auto load = [] {
        {
            MonitorLibrary library;
            EXPECT_TRUE(library.Open());
            EXPECT_TRUE(library.Print(L"load.txt", "x"));
        }
        EXPECT_EQ(::GetModuleHandleW(L"QuillonPortMonitor64.dll"), nullptr) << "something holds it";
        EXPECT_EQ(ReadFileBytes(GetJobPath(L"load.ps")), "x");
    };
    for (int i = 0; i < 5; ++i) load();
    const ProcessResources before = ProcessResources::Count();
    for (std::size_t i = 0; i < cLoads; ++i) load();
    const ProcessResources after = ProcessResources::Count();
    EXPECT_LE(after.mHandles, before.mHandles);
    EXPECT_LE(after.mHeapBytes, before.mHeapBytes + cLoads * cRunTimeRest);
    ::FreeLibrary(spooler);
}

TEST(MonitorDll, EndsWithItsProcess) {
    const std::wstring output = GetTestFolder() + L"trace.txt";
    const ChildProcess program(L"monitor_dll_tests.exe --end-with-library", output, L"NUL");
    EXPECT_EQ(program.WaitForExitCode(), 23);
    EXPECT_THAT(ReadFileBytes(output),
                testing::EndsWith("DLLMain\nDLL_PROCESS_DETACH\nPPMShutdown\nDone detach\n"));
}

TEST(MonitorDll, AnswersOtherCallsOfItsEntryPointWithItsNameOnly) {
    using Entry = BOOL(WINAPI*)(HINSTANCE, DWORD, LPVOID);
    const MonitorLibrary library;
    const auto entry =
        reinterpret_cast<Entry>(reinterpret_cast<void*>(::GetProcAddress(library.GetModule(), "DllMain")));
    ASSERT_NE(entry, nullptr);
    TraceCapture before;
    std::thread([] {}).join();
    EXPECT_THAT(before.Take(), testing::IsEmpty()) << "the system does not tell it of threads";
    for (const DWORD reason : {DLL_THREAD_ATTACH, DLL_THREAD_DETACH, 99}) {
        TraceCapture trace;
        EXPECT_TRUE(entry(library.GetModule(), reason, nullptr));
        EXPECT_THAT(trace.Take(), ElementsAre("DLLMain"));
    }
}

TEST(MonitorDll, FillsElevenSlotsOfItsTable) {
    const MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    EXPECT_EQ(table.cbSize, 152u);
    EXPECT_EQ(library.GetMonitorHandle(), library.GetInit());
    std::string slots;
    for (std::size_t offset = 8; offset < 152; offset += 8) {
        const void* slot = nullptr;
        std::memcpy(&slot, reinterpret_cast<const char*>(&table) + offset, sizeof slot);
        slots += slot != nullptr ? 'x' : '-';
    }
    EXPECT_EQ(slots, "xx-xxxxx------xxxx");
}

/// The texts of a version resource beside this program, and its number, as "name|product|text|number".
std::wstring VersionOf(const wchar_t* file) {
    std::vector<BYTE> data(::GetFileVersionInfoSizeW(file, nullptr));
    if (!::GetFileVersionInfoW(file, 0, static_cast<DWORD>(data.size()), data.data())) return L"none";
    const auto query = [&data](const std::wstring& block) {
        void* value = nullptr;
        UINT length = 0;
        return ::VerQueryValueW(data.data(), block.c_str(), &value, &length) ? value : nullptr;
    };
    std::wstring texts;
    for (const wchar_t* name : {L"OriginalFilename", L"ProductName", L"FileVersion"}) {
        const void* const text = query(std::wstring(L"\\StringFileInfo\\040904B0\\") + name);
        texts += std::wstring(text != nullptr ? static_cast<const wchar_t*>(text) : L"none") + L"|";
    }
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(query(L"\\"));
    return texts + std::to_wstring(HIWORD(info.dwFileVersionMS)) + L"." +
           std::to_wstring(LOWORD(info.dwFileVersionMS)) + L"." +
           std::to_wstring(HIWORD(info.dwFileVersionLS));
}

TEST(MonitorDll, CarriesItsVersionAsTheProgramsDo) {
    for (const wchar_t* file : {L"QuillonPortMonitor64.dll", L"quillonctl.exe", L"PrinterProcessorWin.exe"})
        EXPECT_EQ(VersionOf(file),
                  std::wstring(file) + L"|Quillon Port Monitor|" QUILLON_VERSION L"|" QUILLON_VERSION);
}

TEST(MonitorDll, RefusesTheConfigurationChannel) {
    const MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    TraceCapture trace;
    HANDLE channel = &channel;
    BYTE output = 0xEE;
    DWORD needed = cUntouched;
    EXPECT_EQ(ErrorOf([&] { return table.pfnXcvOpenPort(nullptr, L"XcvPort", 1, &channel); }), 1u);
    EXPECT_EQ(channel, nullptr);
    EXPECT_EQ(ErrorOf([&] {
                  return table.pfnXcvDataPort(nullptr, L"MonitorUI", nullptr, 0, &output, 1, &needed) != 1;
              }),
              1u);
    EXPECT_EQ(output, 0xEE);
    EXPECT_EQ(needed, cUntouched);
    EXPECT_EQ(ErrorOf([&] { return table.pfnXcvClosePort(nullptr); }), 1u);
    EXPECT_THAT(trace.Take(), ElementsAre("PPMOpenPort", "PPMDataPort", "PPMClosePort"));
}

TEST(MonitorDll, ListsThePortInTheSpoolersRecords) {
    const MonitorLibrary library;
    TraceCapture trace;
    alignas(8) BYTE buffer[140];
    DWORD needed = 0;
    DWORD returned = 0;
    const auto enumerate = [&](DWORD level, DWORD size) {
        return ErrorOf([&] {
            return library.GetTable().pfnEnumPorts(nullptr, nullptr, level, buffer, size, &needed, &returned);
        });
    };
    EXPECT_EQ(enumerate(2, 140), cUntouched);
    const auto& port = *reinterpret_cast<const PORT_INFO_2W*>(buffer);
    EXPECT_EQ(std::wstring(port.pPortName), L"QuillonPDFPort:");
    EXPECT_EQ(std::wstring(port.pMonitorName), L"Quillon Port Monitor");
    EXPECT_EQ(std::wstring(port.pDescription), L"Quillon PDF Port");
    EXPECT_EQ(port.fPortType, static_cast<DWORD>(PORT_TYPE_WRITE));
    EXPECT_EQ(enumerate(1, 40), cUntouched);
    EXPECT_EQ(std::wstring(reinterpret_cast<const PORT_INFO_1W*>(buffer)->pName), L"QuillonPDFPort:");
    EXPECT_EQ(enumerate(2, 139), 122u);
    EXPECT_EQ(needed, 140u);
    EXPECT_EQ(returned, 0u);
    EXPECT_THAT(trace.Take(), ElementsAre("PPMEnumPorts", "PPMEnumPorts: Received request for Level 2 info",
                                          "PPMEnumPorts", "PPMEnumPorts: Received request for Level 1 info",
                                          "PPMEnumPorts", "PPMEnumPorts: Received request for Level 2 info"));
}

TEST(MonitorDll, AnswersEachCallbackWithItsOutcomeAndError) {
    MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    BYTE data[] = {'x'};
    DWORD written = cUntouched;
    TraceCapture trace;
    EXPECT_EQ(ErrorOf([&] { return library.Open(nullptr); }), 87u);
    EXPECT_EQ(ErrorOf([&] { return table.pfnClosePort(nullptr); }), 6u) << "closed port, null handle";
    EXPECT_EQ(ErrorOf([&] { return library.Open(); }), cUntouched);
    EXPECT_EQ(ErrorOf([&] { return library.Start(nullptr); }), 87u);
    for (const DWORD level : {1, 2})
        EXPECT_EQ(ErrorOf([&] { return table.pfnStartDocPort(library.mPort, nullptr, 1, level, nullptr); }),
                  87u);
    EXPECT_EQ(ErrorOf([&] { return library.Start(L"one.txt"); }), cUntouched);
    EXPECT_EQ(ErrorOf([&] { return table.pfnWritePort(&written, data, 1, &written); }), 6u);
    EXPECT_EQ(written, 0u);
    EXPECT_TRUE(table.pfnWritePort(library.mPort, data, 1, nullptr)) << "nobody asks for the count";
    EXPECT_EQ(ErrorOf([&] { return table.pfnEndDocPort(nullptr); }), 6u);
    EXPECT_EQ(ErrorOf([&] { return table.pfnEndDocPort(library.mPort); }), cUntouched);
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"one.ps")), "x");
    EXPECT_EQ(ErrorOf([&] { return table.pfnClosePort(library.mPort); }), cUntouched);
    const std::vector<std::string> words = trace.Take();
    EXPECT_EQ(std::count(words.begin(), words.end(), "PPMOpenPort"), 2);
    EXPECT_EQ(std::count(words.begin(), words.end(), "PPMClosePort"), 2);
}

TEST(MonitorDll, HasNothingToRead) {
    MonitorLibrary library;
    TraceCapture trace;
    BYTE buffer = 0xEE;
    DWORD count = cUntouched;
    EXPECT_TRUE(library.GetTable().pfnReadPort(nullptr, &buffer, 1, &count));
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(buffer, 0xEE);
    EXPECT_FALSE(library.GetTable().pfnReadPort(nullptr, &buffer, 1, nullptr));
    EXPECT_THAT(trace.Take(), ElementsAre("PPMReadPort", "PPMReadPort"));
}

TEST(MonitorDll, WorksOnAfterShutdown) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    ASSERT_TRUE(library.Start(L"cut off.txt"));
    TraceCapture trace;
    library.GetTable().pfnShutdown(nullptr);
    library.GetTable().pfnShutdown(nullptr);
    EXPECT_THAT(trace.Take(), ElementsAre("PPMShutdown", "PPMShutdown"));
    EXPECT_FALSE(library.Write("x"));
    EXPECT_EQ(::GetLastError(), 3003u);
    EXPECT_FALSE(IsClosed(GetJobPath(L"cut off.ps"))) << "shutting down closes no job file";
    ASSERT_TRUE(library.Open());
    EXPECT_TRUE(library.Print(L"after.txt", "all well"));
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"after.ps")), "all well");
}

TEST(MonitorDll, TracesEveryStepOfAJob) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    const std::wstring path = GetJobPath(L"Q3 report.ps");
    TraceCapture trace;
    ::SetLastError(cUntouched);
    EXPECT_TRUE(library.Start(L"Microsoft Word - Q3 report.docx"));
    EXPECT_TRUE(library.Write("%!PS"));
    EXPECT_EQ(ReadFileBytes(path), "%!PS") << "what was reported as written is in the file";
    EXPECT_FALSE(IsClosed(path));
    ::SetLastError(cUntouched);
    EXPECT_FALSE(library.Write(""));
    EXPECT_EQ(::GetLastError(), cUntouched) << "no data is no error";
    EXPECT_TRUE(library.End());
    EXPECT_TRUE(library.End());
    EXPECT_FALSE(library.Write("late"));
    EXPECT_EQ(::GetLastError(), 3003u);
    EXPECT_THAT(
        trace.Take(),
        ElementsAre("PPMStartDocPort", "Failed to open printer. No handle.",
                    "Microsoft Word - Q3 report.docx", "PPMStartDocPort: StartDoc success", "PPMWritePort",
                    "end PPMWritePort", "PPMWritePort", "PPMWritePort: No Data", "end PPMWritePort",
                    "PPMEndDocPort", "Notification to PrintProcessor failed!", "PPMEndDocPort",
                    "PPMWritePort", "PPMWritePort: write when not started?!?", "end PPMWritePort"));
    EXPECT_EQ(ReadFileBytes(path), "%!PS");
    EXPECT_TRUE(IsClosed(path));
}

TEST(MonitorDll, PrintsTitlesThatMakeLongPaths) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    EXPECT_TRUE(library.Print(std::wstring(300, L'x').c_str(), "long"));
    EXPECT_EQ(ReadFileBytes(L"\\\\?\\" + GetJobPath(std::wstring(251, L'x') + L".ps")), "long");
}

TEST(MonitorDll, TakesCallsFromManyThreads) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    constexpr int cThreads = 8;
    constexpr int cWrites = 200;
    ASSERT_TRUE(library.Start(L"threads.bin"));
    std::atomic<int> refused{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < cThreads; ++thread) {
        threads.emplace_back([&, thread] {
            const std::string block(100, static_cast<char>('a' + thread));
            for (int i = 0; i < cWrites; ++i) refused += library.Write(block) ? 0 : 1;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(library.End());
    EXPECT_EQ(refused, 0);
    const std::string content = ReadFileBytes(GetJobPath(L"threads.ps"));
    ASSERT_EQ(content.size(), 100u * cThreads * cWrites);
    for (std::size_t at = 0; at < content.size(); at += 100) {
        ASSERT_EQ(content.substr(at, 100), std::string(100, content[at])) << "blocks stay whole";
    }
    for (int thread = 0; thread < cThreads; ++thread) {
        EXPECT_EQ(std::count(content.begin(), content.end(), 'a' + thread), 100 * cWrites);
    }
}

TEST(MonitorDll, PrintsWithoutTheHandOffAndStartsItWithALaterJob) {
    auto kept = std::make_unique<MutexHog>(GShMemID("GIPC_PP"));
    TraceCapture trace;
    MonitorLibrary library;
    EXPECT_THAT(trace.Take(), ElementsAre("DLLMain", "DLL_PROCESS_ATTACH", testing::_,
                                          "GPPPrinterProcessorLayer::Initialize",
                                          "Failed in DLL_PROCESS_ATTACH", "InitializePrintMonitor2"));
    const std::string notStarted = "GPPPrinterProcessorLayer could not be started";
    ASSERT_TRUE(library.Open());
    EXPECT_TRUE(library.Print(L"without.txt", "x"));
    EXPECT_THAT(trace.Take(), testing::Contains(notStarted));
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"without.ps")), "x");
    kept.reset();
    EXPECT_TRUE(library.Print(L"with.txt", "x"));
    EXPECT_THAT(trace.Take(), testing::Not(testing::Contains(notStarted)));
}

}  // namespace
