// The DLL from outside, through the table that the spooler gets.

#include "framework/streams/GFileInStream.h"
#include "tests/ipc/IPCTestSupport.h"
#include "tests/monitor/dll/MonitorLibrary.h"
#include "tests/monitor/dll/ProcessResources.h"
#include "tests/monitor/dll/TraceCapture.h"

#include <objbase.h>

namespace {

constexpr DWORD cUntouched = 4711;

/// The last error that a call leaves; cUntouched, too, when it succeeds. A wrong pairing of the two is 0.
template <class Call>
DWORD ErrorOf(Call call) {
    ::SetLastError(cUntouched);
    const bool succeeded = call();
    const DWORD lastError = ::GetLastError();
    return succeeded == (lastError == cUntouched) ? lastError : 0;
}

/// True when nobody else has the job file of that name open.
bool IsClosed(const std::string& fileName) {
    return static_cast<bool>(
        OpenSharing(GetTestFolder().Standard(JobFolder::Job(fileName)), GENERIC_READ, 0));
}

TEST(MonitorDll, TracesItsLoadAndUnload) {
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    for (const DWORD model : {COINIT_MULTITHREADED, COINIT_APARTMENTTHREADED}) {
        std::thread([model] {
            const bool isSame = model == COINIT_MULTITHREADED;
            ::CoInitializeEx(nullptr, model);
            TraceCapture trace;
            {
                const MonitorLibrary library;
                EXPECT_EQ(trace.Take(),
                          (Words{"DLLMain", "DLL_PROCESS_ATTACH",
                                 isSame ? "CoInitializeEx S_FALSE" : "CoInitializeEx RPC_E_CHANGED_MODE",
                                 "GPPPrinterProcessorLayer::Initialize", "InitializePrintMonitor2"}));
            }
            EXPECT_EQ(trace.Take(), (Words{"DLLMain", "DLL_PROCESS_DETACH", "PPMShutdown", "Done detach"}));
        }).join();
    }
}

TEST(MonitorDll, LeavesNothingBehindWhenItIsUnloaded) {
    constexpr std::size_t cLoads = 30;
    constexpr std::size_t cRunTimeRest = 4096;  // bytes, of thread-local storage and the like
    // The system's own library would leave a mutex behind each time that nobody uses it any more.
    const PWin32ScopedHandle<PWin32ModuleHandle> spooler(::LoadLibraryW(L"winspool.drv"));
    const auto load = [] {
        {
            MonitorLibrary library;
            EXPECT_TRUE(library.Print(L"load.txt", "x"));
        }
        EXPECT_EQ(::GetModuleHandleW(L"QuillonPortMonitor64.dll"), nullptr) << "something holds it";
        EXPECT_EQ(GetTestFolder().ContentOf("load.ps"), "x");
    };
    for (int i = 0; i < 5; ++i) load();
    const ProcessResources before = ProcessResources::Count();
    for (std::size_t i = 0; i < cLoads; ++i) load();
    const ProcessResources after = ProcessResources::Count();
    EXPECT_LE(after.mHandles, before.mHandles);
    EXPECT_LE(after.mHeapBytes, before.mHeapBytes + cLoads * cRunTimeRest);
}

TEST(MonitorDllDeathTest, EndsWithItsProcessInAJobWithAnotherThreadInsideACallback) {
    const auto end = [] {
        TraceCapture::EchoToErrors();
        auto* const library = new MonitorLibrary;
        library->Open();
        library->Start(L"unfinished.txt");
        std::thread([library] {
            for (;;) library->Write("more");
        }).detach();
        ::Sleep(50);
        ::ExitProcess(23);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(23), "DLL_PROCESS_DETACH\nPPMShutdown\nDone detach\n$");
}

TEST(MonitorDll, AnswersOtherCallsOfItsEntryPointWithItsNameOnly) {
    using Entry = BOOL(WINAPI*)(HINSTANCE, DWORD, LPVOID);
    const MonitorLibrary library;
    const auto entry = library.Find<Entry>("DllMain");
    TraceCapture before;
    std::thread([] {}).join();
    EXPECT_EQ(before.Take(), Words()) << "the system does not tell it of threads";
    for (const DWORD reason : {DLL_THREAD_ATTACH, DLL_THREAD_DETACH, 99}) {
        TraceCapture trace;
        EXPECT_TRUE(entry(library.GetModule(), reason, nullptr));
        EXPECT_EQ(trace.Take(), (Words{"DLLMain"}));
    }
}

TEST(MonitorDll, FillsElevenSlotsOfItsTable) {
    const MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    EXPECT_EQ(table.cbSize, 152u);
    EXPECT_EQ(library.mMonitor, &library.mInit);
    std::string slots;
    std::array<const void*, 152 / 8> all;
    std::memcpy(&all, &table, sizeof all);
    for (std::size_t slot = 1; slot < all.size(); ++slot) slots += all[slot] != nullptr ? 'x' : '-';
    EXPECT_EQ(slots, "xx-xxxxx------xxxx");
}

TEST(MonitorDll, CarriesItsVersionAsTheProgramsDo) {
    for (const wchar_t* file : {L"QuillonPortMonitor64.dll", L"quillonctl.exe", L"PrinterProcessorWin.exe"}) {
        std::vector<BYTE> data(::GetFileVersionInfoSizeW(file, nullptr));
        ASSERT_TRUE(::GetFileVersionInfoW(file, 0, static_cast<DWORD>(data.size()), data.data()));
        const auto text = [&data](const wchar_t* name) -> std::wstring {
            void* value = nullptr;
            UINT length = 0;
            const std::wstring block = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
            if (!::VerQueryValueW(data.data(), block.c_str(), &value, &length)) return L"none";
            return static_cast<const wchar_t*>(value);
        };
        EXPECT_EQ(text(L"OriginalFilename"), file);
        EXPECT_EQ(text(L"ProductName"), L"Quillon Port Monitor");
        EXPECT_EQ(text(L"FileVersion"), QUILLON_VERSION);
    }
}

TEST(MonitorDll, ListsThePortInTheSpoolersRecordAndHasNothingToConfigureNorToRead) {
    const MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    alignas(8) BYTE record[140];
    DWORD needed = 0, returned = 0;
    const auto list = [&](DWORD size) {
        return table.pfnEnumPorts(nullptr, nullptr, 2, record, size, &needed, &returned);
    };
    EXPECT_EQ(ErrorOf([&] { return list(139); }), 122u);
    EXPECT_EQ(needed, 140u);
    EXPECT_TRUE(list(140));
    EXPECT_EQ(returned, 1u);
    EXPECT_EQ(std::wstring(reinterpret_cast<const PORT_INFO_2W*>(record)->pPortName), L"QuillonPDFPort:");
    TraceCapture trace;
    HANDLE channel = &channel;
    BYTE output = 0xEE;
    DWORD count = cUntouched;
    EXPECT_EQ(ErrorOf([&] { return table.pfnXcvOpenPort(nullptr, L"XcvPort", 1, &channel); }), 1u);
    EXPECT_EQ(channel, nullptr);
    EXPECT_EQ(ErrorOf([&] {
                  return table.pfnXcvDataPort(nullptr, L"MonitorUI", nullptr, 0, &output, 1, &count) != 1;
              }),
              1u);
    EXPECT_EQ(count, cUntouched);
    EXPECT_EQ(ErrorOf([&] { return table.pfnXcvClosePort(nullptr); }), 1u);
    EXPECT_TRUE(table.pfnReadPort(nullptr, &output, 1, &count));
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(output, 0xEE);
    EXPECT_FALSE(table.pfnReadPort(nullptr, &output, 1, nullptr));
    EXPECT_EQ(trace.Take(),
              (Words{"PPMOpenPort", "PPMDataPort", "PPMClosePort", "PPMReadPort", "PPMReadPort"}));
}

// What each callback does is tested with the monitor; here, that it is asked for, answered and traced.
TEST(MonitorDll, TracesEveryStepOfAJobAndAnswersWithItsOutcomeAndError) {
    MonitorLibrary library;
    const MONITOR2& table = library.GetTable();
    BYTE data[] = {'x'};
    DWORD written = cUntouched;
    TraceCapture trace;
    EXPECT_EQ(ErrorOf([&] { return library.Open(nullptr); }), 87u);
    EXPECT_EQ(ErrorOf([&] { return table.pfnClosePort(nullptr); }), 6u);
    EXPECT_EQ(ErrorOf([&] { return library.Open(); }), cUntouched);
    EXPECT_EQ(ErrorOf([&] { return table.pfnStartDocPort(library.mPort, nullptr, 1, 1, nullptr); }), 87u);
    EXPECT_EQ(trace.Take(),
              (Words{"PPMOpenPort", "PPMClosePort", "PPMOpenPort", "PPMStartDocPort", "sDocName is empty!?",
                     "sProcessingJob == false at the end of PPMStartDocPort"}));
    EXPECT_TRUE(library.Start(L"Microsoft Word - Q3 report.docx"));
    EXPECT_EQ(ErrorOf([&] { return table.pfnWritePort(&written, data, 1, &written); }), 6u);
    EXPECT_EQ(written, 0u);
    EXPECT_TRUE(table.pfnWritePort(library.mPort, data, 1, nullptr)) << "nobody asks for the count";
    EXPECT_EQ(GetTestFolder().ContentOf("Q3 report.ps"), "x") << "what is written is in the file";
    EXPECT_FALSE(IsClosed("Q3 report.ps"));
    EXPECT_EQ(ErrorOf([&] { return !library.Write(""); }), cUntouched) << "no data is no error";
    EXPECT_EQ(ErrorOf([&] { return library.End(); }), cUntouched);
    EXPECT_TRUE(IsClosed("Q3 report.ps"));
    EXPECT_EQ(trace.Take(),
              (Words{"PPMStartDocPort", "Failed to open printer. No handle.",
                     "Microsoft Word - Q3 report.docx", "PPMStartDocPort: StartDoc success", "PPMWritePort",
                     "PPMWritePort: invalid port handle?!?", "end PPMWritePort", "PPMWritePort",
                     "end PPMWritePort", "PPMWritePort", "PPMWritePort: No Data", "end PPMWritePort",
                     "PPMEndDocPort", "Notification to PrintProcessor failed!"}));
    EXPECT_EQ(ErrorOf([&] { return table.pfnClosePort(library.mPort); }), cUntouched);
}

TEST(MonitorDll, WorksOnAfterShutdownAndTakesATitleThatMakesALongPath) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    ASSERT_TRUE(library.Start(L"cut off.txt"));
    TraceCapture trace;
    library.GetTable().pfnShutdown(nullptr);
    EXPECT_EQ(trace.Take(), (Words{"PPMShutdown"}));
    EXPECT_FALSE(IsClosed("cut off.ps")) << "shutting down closes no job file";
    ASSERT_TRUE(library.Open());
    EXPECT_TRUE(library.Print(std::wstring(300, L'x').c_str(), "all well"));
    GFileInStream file(GetTestFolder().Portable(JobFolder::Job(std::string(251, 'x') + ".ps")));
    EXPECT_EQ(file.GetLength(), 8);
}

/// The trace log switched on, in the temporary folder of this program, as long as it exists.
class TraceLogOn {
public:
    TraceLogOn() { GetTestFolder().SwitchTraceOn("QuillonPortMonitor64.tpr"); }
    ~TraceLogOn() { std::filesystem::remove_all(mFolder); }
    static std::string Take() {
        return JobFolder::WithoutTimes(GetTestFolder().Take("QuillonDebug/QuillonPortMonitor64.tra"));
    }

    const std::filesystem::path mFolder = GetTestFolder().Standard("QuillonDebug");
};

TEST(MonitorDll, PrintsWithoutTheHandOffAndStartsItWithALaterJobAndSaysSo) {
    const TraceLogOn log;
    auto kept = std::make_unique<MutexHog>(GShMemID("GIPC_PP"));
    const std::string notStarted = "GPPPrinterProcessorLayer could not be started";
    TraceCapture trace;
    MonitorLibrary library;
    EXPECT_THAT(trace.Take(), testing::Contains("Failed in DLL_PROCESS_ATTACH"));
    EXPECT_TRUE(library.Print(L"without.txt", "x"));
    EXPECT_THAT(trace.Take(), testing::Contains(notStarted));
    const std::string said = log.Take();
    EXPECT_THAT(said, testing::StartsWith("\n-JobFailure job 7: Proof: ")) << "there is no such printer";
    EXPECT_THAT(said, testing::EndsWith("\n-Notification job 7: nobody told, in N ms"));
    kept.reset();
    EXPECT_TRUE(library.Print(L"with.txt", "x"));
    EXPECT_THAT(trace.Take(), testing::Not(testing::Contains(notStarted)));
    EXPECT_THAT(
        log.Take().substr(said.size()),
        testing::HasSubstr("\n-Notification of 0 PrinterProcessorWin 0 told, 0 could not be reached\n"));
}

TEST(MonitorDll, PrintsWhenItsTraceLogCannotBeWritten) {
    const TraceLogOn log;
    const std::string name = "QuillonPortMonitor64";
    std::filesystem::create_directories(log.mFolder / (name + ".tra"));
    for (int i = 0; i <= 10; ++i)
        std::filesystem::create_directories(log.mFolder / (name + " (" + std::to_string(i) + ").tra"));
    MonitorLibrary library;
    EXPECT_TRUE(library.Print(L"untraced.txt", "x"));
    EXPECT_EQ(GetTestFolder().ContentOf("untraced.ps"), "x");
}

}  // namespace
