// The DLL from outside, through the table that the spooler gets: loading, the port, and what it leaves.

#include <gmock/gmock.h>

#include <cstring>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "tests/monitor/MonitorLibrary.h"
#include "tests/monitor/ProcessResources.h"
#include "tests/monitor/TraceCapture.h"

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
    const std::vector<std::string> words = TraceOfRun(L"--end-with-library");
    ASSERT_GE(words.size(), 4u);
    EXPECT_THAT(std::vector<std::string>(words.end() - 4, words.end()),
                ElementsAre("DLLMain", "DLL_PROCESS_DETACH", "PPMShutdown", "Done detach"));
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
    EXPECT_EQ(needed, 140u);
    EXPECT_EQ(returned, 1u);
    const auto& port = *reinterpret_cast<const PORT_INFO_2W*>(buffer);
    EXPECT_EQ(std::wstring(port.pPortName), L"QuillonPDFPort:");
    EXPECT_EQ(std::wstring(port.pMonitorName), L"Quillon Port Monitor");
    EXPECT_EQ(std::wstring(port.pDescription), L"Quillon PDF Port");
    EXPECT_EQ(port.fPortType, static_cast<DWORD>(PORT_TYPE_WRITE));
    EXPECT_EQ(enumerate(1, 40), cUntouched);
    EXPECT_EQ(std::wstring(reinterpret_cast<const PORT_INFO_1W*>(buffer)->pName), L"QuillonPDFPort:");
    EXPECT_EQ(enumerate(2, 139), 122u);
    EXPECT_EQ(enumerate(3, 140), 124u);
    const std::string call = "PPMEnumPorts";
    const std::string level1 = "PPMEnumPorts: Received request for Level 1 info";
    const std::string level2 = "PPMEnumPorts: Received request for Level 2 info";
    EXPECT_THAT(trace.Take(), ElementsAre(call, level2, call, level1, call, level2, call));
}

TEST(MonitorDll, OpensAndClosesThePort) {
    MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    TraceCapture trace;
    EXPECT_EQ(ErrorOf([&] { return library.Open(L"quillonpdfport:"); }), 1796u);
    EXPECT_EQ(ErrorOf([&] { return library.Open(nullptr); }), 87u);
    EXPECT_EQ(ErrorOf([&] { return library.Open(); }), cUntouched);
    const HANDLE port = library.mPort;
    EXPECT_EQ(ErrorOf([&] { return library.Open(); }), 170u);
    EXPECT_EQ(ErrorOf([&] { return table.pfnClosePort(&library); }), 6u);
    EXPECT_EQ(ErrorOf([&] { return table.pfnClosePort(port); }), cUntouched);
    EXPECT_EQ(ErrorOf([&] { return table.pfnClosePort(nullptr); }), 6u) << "closed port, null handle";
    EXPECT_THAT(trace.Take(), ElementsAre("PPMOpenPort", "PPMOpenPort", "PPMOpenPort", "PPMOpenPort",
                                          "PPMClosePort", "PPMClosePort", "PPMClosePort"));
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

}  // namespace
