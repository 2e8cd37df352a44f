// How long the end of a job takes with applications that listen, and when they hear of it.
//
//     JobEndBench.exe <path of QuillonPortMonitor64.dll> [path of another build of it]
//
// The applications are copies of this program under the name that the monitor looks for. Their only argument
// says how they listen: "sample" is the loop of the sample, "wake" waits for the event, "poll" looks every
// 100 ms, "never" takes nothing.
#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "bench/Comparison.h"
#include "bench/SpoolerPort.h"
#include "framework/GFrameworkScope.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/system/GProcessInfo.h"
#include "monitor/handoff/GPPHandOffScope.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "receiver/JobListener.h"

namespace {

constexpr std::size_t cJobBytes = 4096;

double GetMilliseconds() {
    LARGE_INTEGER count, frequency;
    ::QueryPerformanceCounter(&count);
    ::QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) * 1000.0 / static_cast<double>(frequency.QuadPart);
}

/// What this program and the applications know together.
struct Shared {
    volatile LONG mListening;
    volatile LONG mHeard;
    volatile double mLastHeard;
};

Shared& GetShared() {
    static const HANDLE sMapping = ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                        sizeof(Shared), L"Global\\JobEndBench");
    static auto* const sShared =
        static_cast<Shared*>(::MapViewOfFile(sMapping, FILE_MAP_ALL_ACCESS, 0, 0, 0));
    return *sShared;
}

void Hear() {
    GetShared().mLastHeard = GetMilliseconds();
    ::InterlockedIncrement(&GetShared().mHeard);
}

class Receiver : public GIPCReceiver {
public:
    Receiver() : GIPCReceiver(GPPIPCManager::GetInstance()) { Register(GPPJobRecord::cMessageType); }
    void HandleIPCMessage(const GIPCMessage&) override { Hear(); }
};

[[noreturn]] void ListenAsTheSample() {
    const GFrameworkScope framework;
    JobListener listener([](const GPPJobRecord&) { Hear(); }, [](const std::wstring&) {});
    while (!listener.IsListening()) listener.Tick();
    ::InterlockedIncrement(&GetShared().mListening);
    for (;; listener.Wait(100, {})) listener.Tick();
}

[[noreturn]] void Listen(const std::wstring& how) {
    if (how == L"sample") ListenAsTheSample();
    const GPPHandOffScope handOff;
    const Receiver receiver;
    ::InterlockedIncrement(&GetShared().mListening);
    for (;;) {
        if (how != L"never") GBasicSignals::DevoteTimeToRepeaters();
        if (how == L"wake") {
            GPPIPCManager::GetInstance()->WaitForMessages(1000);
        } else {
            ::Sleep(100);
        }
    }
}

/// Copies of this program that listen, until the object goes.
class Applications {
public:
    Applications(const std::wstring& program, int sample, int wake, int poll, int never) {
        GetShared().mListening = 0;
        for (int i = 0; i < sample; ++i) Start(L'"' + program + L"\" sample");
        for (int i = 0; i < wake; ++i) Start(L'"' + program + L"\" wake");
        for (int i = 0; i < poll; ++i) Start(L'"' + program + L"\" poll");
        for (int i = 0; i < never; ++i) Start(L'"' + program + L"\" never");
        const LONG all = sample + wake + poll + never;
        for (int wait = 0; GetShared().mListening < all && wait < 6000; ++wait) ::Sleep(10);
        mAllListen = GetShared().mListening == all;
    }
    ~Applications() {
        for (const auto& process : mProcesses) ::TerminateProcess(process.Get(), 0);
        for (const auto& process : mProcesses) ::WaitForSingleObject(process.Get(), INFINITE);
    }
    Applications(const Applications&) = delete;
    Applications& operator=(const Applications&) = delete;

    bool AllListen() const { return mAllListen; }

private:
    void Start(std::wstring commandLine) {
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION info = {};
        if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                              &startup, &info))
            return;
        const PWin32ScopedHandle<PWin32KernelHandle> thread(info.hThread);
        mProcesses.emplace_back(info.hProcess);
    }

    std::vector<PWin32ScopedHandle<PWin32KernelHandle>> mProcesses;
    bool mAllListen = false;
};

/// How long the notification looks for its targets, before any of them is sent anything.
double MeasureLookUp() {
    const GFrameworkScope framework;
    GTable<std::int32_t> processIDs;
    std::vector<double> times;
    for (int round = 0; round < 5; ++round) {
        const double start = GetMilliseconds();
        GProcessInfo::GetInstance()->GetProcessIDs(GString("PrinterProcessorWin.exe"), processIDs, false);
        times.push_back(GetMilliseconds() - start);
    }
    return Rounds::Median(times);
}

/// Applications, the jobs that they are told of, and what that may take, in milliseconds; 0 for no limit.
struct Row {
    const char* what;
    int sample, wake, poll, never, jobs;
    double endLimit, heardLimit, allLimit;
    int CountListeners() const { return sample + wake + poll; }
};

constexpr Row cRows[] = {{"nobody", 0, 0, 0, 0, 31, 0, 0, 0},
                         {"the sample", 1, 0, 0, 0, 31, 10, 5, 0},
                         {"one that waits", 0, 1, 0, 0, 31, 10, 5, 0},
                         {"one that waits, 1,000 jobs", 0, 1, 0, 0, 1000, 0, 0, 30000},
                         {"one that looks every 100 ms", 0, 0, 1, 0, 31, 130, 0, 0},
                         {"50 that wait", 0, 50, 0, 0, 31, 150, 0, 0},
                         {"200 that wait", 0, 200, 0, 0, 5, 0, 0, 0},
                         {"200, of which 50 take nothing", 0, 150, 0, 50, 3, 3300, 0, 0}};

/// There is no peer for the end of a job, but there are limits. A busy machine may be three times as slow; a
/// sleep that comes back is thirty times.
void Report(const std::string& what, double limit, double milliseconds) {
    if (limit == 0) return;
    Comparison::Report({.what = what, .unit = "ms"}, "the limit", {1.0, limit > 1000 ? 1.5 : 3.0},
                       milliseconds, limit, milliseconds / limit);
}

/// Times of so many jobs; false when one was not written, ended, or heard of by all listeners.
bool Run(SpoolerPort& port, const Row& row, std::vector<double>& ends, std::vector<double>& heard) {
    std::vector<BYTE> block(cJobBytes, 'x');
    GetShared().mLastHeard = 0;
    bool good = true;
    for (int job = 0; job < row.jobs; ++job) {
        GetShared().mHeard = 0;
        good = port.Start() && port.Write(block) && good;
        const double start = GetMilliseconds();
        good = port.End() && good;
        ends.push_back(GetMilliseconds() - start);
        for (int wait = 0; GetShared().mHeard < row.CountListeners() && wait < 500; ++wait) ::Sleep(10);
        good = good && GetShared().mHeard == row.CountListeners();
        heard.push_back(std::max(GetShared().mLastHeard - start, 0.0));
    }
    return good;
}

bool RunAndReport(SpoolerPort& port, const std::wstring& program, const Row& row) {
    const Applications applications(program, row.sample, row.wake, row.poll, row.never);
    if (!applications.AllListen()) return false;
    std::vector<double> ends, heard;
    const double begin = GetMilliseconds();
    const bool good = Run(port, row, ends, heard);
    const std::string what = row.what;
    Report(what + ": all", row.allLimit, GetMilliseconds() - begin);
    Report(what + ": end", row.endLimit, Rounds::Median(ends));
    Report(what + ": heard", row.heardLimit, Rounds::Median(heard));
    static double sAlone = 0;
    if (row.CountListeners() == 0) {
        sAlone = Rounds::Median(ends);
    } else {
        const double end = Rounds::Median(ends);
        Comparison::Report({.what = what + ": end", .unit = "ms"}, "nobody listens", {0, 0}, end, sAlone,
                           end / sAlone);
    }
    if (row.wake == 200) {
        const double lookUp = MeasureLookUp();
        Comparison::Report({.what = what + ": end", .unit = "ms"}, "finding them", {0, 0},
                           Rounds::Median(ends), lookUp, Rounds::Median(ends) / lookUp);
    }
    return good;
}

/// `all`: also what takes minutes where every application is waited for by itself, and for 300 ms at least.
bool RunAll(const wchar_t* library, const std::wstring& program, bool all) {
    SpoolerPort port(library);
    if (!port.IsOpen()) return false;
    bool good = true;
    for (const Row& row : cRows) {
        if (!all && (row.jobs > 100 || row.never > 0)) continue;
        good = RunAndReport(port, program, row) && good;
    }
    return good;
}

/// This program under the name that the monitor looks for.
std::wstring CopyAsApplication() {
    wchar_t folder[MAX_PATH], own[MAX_PATH];
    ::GetTempPathW(MAX_PATH, folder);
    ::GetModuleFileNameW(nullptr, own, MAX_PATH);
    std::wstring copy = std::wstring(folder) + L"PrinterProcessorWin.exe";
    ::CopyFileW(own, copy.c_str(), FALSE);
    return copy;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (std::wcsstr(argv[0], L"PrinterProcessorWin") != nullptr && argc == 2) Listen(argv[1]);
    const std::wstring program = CopyAsApplication();
    bool good = RunAll(argc > 1 ? argv[1] : L"QuillonPortMonitor64.dll", program, true);
    if (argc > 2) good = RunAll(argv[2], program, false) && good;
    ::DeleteFileW(program.c_str());
    if (!good) std::fputs("JobEndBench: a job was not written or not heard of\n", stderr);
    return good ? 0 : 1;
}
