// The DLL from outside, through the table that the spooler gets: loading, the port, and what it leaves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "tests/monitor/MonitorLibrary.h"
#include "tests/monitor/ProcessResources.h"
#include "tests/monitor/TraceCapture.h"

#include <objbase.h>

namespace {

using testing::ElementsAre;

constexpr DWORD cUntouched = 4711;

TEST(MonitorDll, TracesItsLoadAndUnload) {
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const struct {
        const char* what;
        DWORD model;
        const char* word;
    } rows[] = {
        {"COM in the same model", COINIT_MULTITHREADED, "CoInitializeEx S_FALSE"},
        {"COM in another model", COINIT_APARTMENTTHREADED, "CoInitializeEx RPC_E_CHANGED_MODE"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        std::thread([&row] {
            ::CoInitializeEx(nullptr, row.model);
            TraceCapture trace;
            {
                const MonitorLibrary library;
                EXPECT_THAT(trace.Take(),
                            ElementsAre("DLLMain", "DLL_PROCESS_ATTACH", row.word,
                                        "GPPPrinterProcessorLayer::Initialize", "InitializePrintMonitor2"));
            }
            EXPECT_THAT(trace.Take(),
                        ElementsAre("DLLMain", "DLL_PROCESS_DETACH", "PPMShutdown", "Done detach"));
        }).join();
    }
}

TEST(MonitorDll, LoadsAnewAfterItWasUnloaded) {
    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE(round);
        {
            MonitorLibrary library;
            ASSERT_TRUE(library.Open());
            EXPECT_TRUE(library.Print(L"again.txt", std::to_string(round)));
        }
        EXPECT_EQ(::GetModuleHandleW(L"QuillonPortMonitor64.dll"), nullptr) << "something holds it";
        EXPECT_EQ(ReadFileBytes(GetJobPath(L"again.ps")), std::to_string(round));
    }
}

TEST(MonitorDll, LeavesNothingBehindWhenItIsUnloaded) {
    constexpr std::size_t cLoads = 30;
    constexpr std::size_t cRunTimeRest = 4096;  // bytes, of thread-local storage and the like
    // The system's own library would leave a mutex behind each time that nobody uses it any more.
    const HMODULE spooler = ::LoadLibraryW(L"winspool.drv");
    const auto load = [] {
        MonitorLibrary library;
        EXPECT_TRUE(library.Open());
        EXPECT_TRUE(library.Print(L"load.txt", "x"));
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

TEST(MonitorDll, CarriesItsVersion) {
    const MonitorLibrary library;
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(library.GetModule(), path, MAX_PATH);
    std::vector<BYTE> data(::GetFileVersionInfoSizeW(path, nullptr));
    ASSERT_TRUE(::GetFileVersionInfoW(path, 0, static_cast<DWORD>(data.size()), data.data()));
    const auto query = [&data](const wchar_t* name) {
        void* value = nullptr;
        UINT length = 0;
        const std::wstring block = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
        if (!::VerQueryValueW(data.data(), block.c_str(), &value, &length)) return std::wstring();
        return std::wstring(static_cast<const wchar_t*>(value));
    };
    EXPECT_EQ(query(L"FileVersion"), QUILLON_VERSION);
    EXPECT_EQ(query(L"ProductName"), L"Quillon Port Monitor");
    EXPECT_EQ(query(L"OriginalFilename"), L"QuillonPortMonitor64.dll");
    void* fixed = nullptr;
    UINT length = 0;
    ASSERT_TRUE(::VerQueryValueW(data.data(), L"\\", &fixed, &length));
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
    EXPECT_EQ(std::to_wstring(HIWORD(info.dwFileVersionMS)) + L"." +
                  std::to_wstring(LOWORD(info.dwFileVersionMS)) + L"." +
                  std::to_wstring(HIWORD(info.dwFileVersionLS)),
              QUILLON_VERSION);
}

TEST(MonitorDll, RefusesTheConfigurationChannel) {
    const MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    TraceCapture trace;
    HANDLE channel = &channel;
    ::SetLastError(cUntouched);
    EXPECT_FALSE(table.pfnXcvOpenPort(nullptr, L"XcvPort", 1, &channel));
    EXPECT_EQ(::GetLastError(), 1u);
    EXPECT_EQ(channel, nullptr);

    ::SetLastError(cUntouched);
    BYTE output = 0xEE;
    DWORD needed = cUntouched;
    EXPECT_EQ(table.pfnXcvDataPort(nullptr, L"MonitorUI", nullptr, 0, &output, 1, &needed), 1u);
    EXPECT_EQ(::GetLastError(), 1u);
    EXPECT_EQ(output, 0xEE);
    EXPECT_EQ(needed, cUntouched);

    ::SetLastError(cUntouched);
    EXPECT_FALSE(table.pfnXcvClosePort(nullptr));
    EXPECT_EQ(::GetLastError(), 1u);
    EXPECT_THAT(trace.Take(), ElementsAre("PPMOpenPort", "PPMDataPort", "PPMClosePort"));
}

TEST(MonitorDll, ListsThePortInTheSpoolersRecords) {
    const MonitorLibrary library;
    TraceCapture trace;
    alignas(8) BYTE buffer[140];
    DWORD needed = 0;
    DWORD returned = 0;
    ::SetLastError(cUntouched);
    ASSERT_TRUE(library.GetTable().pfnEnumPorts(nullptr, nullptr, 2, buffer, 140, &needed, &returned));
    EXPECT_EQ(::GetLastError(), cUntouched);
    EXPECT_EQ(needed, 140u);
    EXPECT_EQ(returned, 1u);
    const auto& port = *reinterpret_cast<const PORT_INFO_2W*>(buffer);
    EXPECT_EQ(std::wstring(port.pPortName), L"QuillonPDFPort:");
    EXPECT_EQ(std::wstring(port.pMonitorName), L"Quillon Port Monitor");
    EXPECT_EQ(std::wstring(port.pDescription), L"Quillon PDF Port");
    EXPECT_EQ(port.fPortType, static_cast<DWORD>(PORT_TYPE_WRITE));
    EXPECT_EQ(reinterpret_cast<const BYTE*>(port.pDescription) - buffer, 32);
    EXPECT_EQ(reinterpret_cast<const BYTE*>(port.pMonitorName) - buffer, 66);
    EXPECT_EQ(reinterpret_cast<const BYTE*>(port.pPortName) - buffer, 108);

    ASSERT_TRUE(library.GetTable().pfnEnumPorts(nullptr, nullptr, 1, buffer, 40, &needed, &returned));
    EXPECT_EQ(std::wstring(reinterpret_cast<const PORT_INFO_1W*>(buffer)->pName), L"QuillonPDFPort:");

    const struct {
        DWORD level;
        DWORD size;
        DWORD lastError;
    } refusals[] = {{1, 39, 122}, {2, 139, 122}, {3, 140, 124}, {0, 140, 124}};
    for (const auto& row : refusals) {
        SCOPED_TRACE(row.level);
        EXPECT_FALSE(library.GetTable().pfnEnumPorts(nullptr, nullptr, row.level, buffer, row.size, &needed,
                                                     &returned));
        EXPECT_EQ(::GetLastError(), row.lastError);
    }
    EXPECT_THAT(trace.Take(), ElementsAre("PPMEnumPorts", "PPMEnumPorts: Received request for Level 2 info",
                                          "PPMEnumPorts", "PPMEnumPorts: Received request for Level 1 info",
                                          "PPMEnumPorts", "PPMEnumPorts: Received request for Level 1 info",
                                          "PPMEnumPorts", "PPMEnumPorts: Received request for Level 2 info",
                                          "PPMEnumPorts", "PPMEnumPorts"));
}

TEST(MonitorDll, OpensAndClosesThePort) {
    MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    TraceCapture trace;
    EXPECT_FALSE(library.Open(L"quillonpdfport:"));
    EXPECT_EQ(::GetLastError(), 1796u);
    EXPECT_FALSE(table.pfnOpenPort(nullptr, nullptr, &library.mPort));
    EXPECT_EQ(::GetLastError(), 87u);
    ::SetLastError(cUntouched);
    EXPECT_TRUE(library.Open());
    EXPECT_EQ(::GetLastError(), cUntouched);
    const HANDLE port = library.mPort;
    EXPECT_FALSE(library.Open());
    EXPECT_EQ(::GetLastError(), 170u);
    EXPECT_FALSE(table.pfnClosePort(nullptr));
    EXPECT_EQ(::GetLastError(), 6u);
    EXPECT_FALSE(table.pfnClosePort(&library));
    EXPECT_EQ(::GetLastError(), 6u);
    EXPECT_TRUE(table.pfnClosePort(port));
    EXPECT_FALSE(table.pfnClosePort(port));
    EXPECT_EQ(::GetLastError(), 6u);
    EXPECT_FALSE(table.pfnClosePort(nullptr)) << "closed port, null handle";
    EXPECT_EQ(::GetLastError(), 6u);
    EXPECT_THAT(trace.Take(),
                ElementsAre("PPMOpenPort", "PPMOpenPort", "PPMOpenPort", "PPMOpenPort", "PPMClosePort",
                            "PPMClosePort", "PPMClosePort", "PPMClosePort", "PPMClosePort"));
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

TEST(MonitorDll, IsNotToldOfThreads) {
    const MonitorLibrary library;
    TraceCapture trace;
    std::thread([] {}).join();
    EXPECT_THAT(trace.Take(), testing::IsEmpty());
}

}  // namespace
