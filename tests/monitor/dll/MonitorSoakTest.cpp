// What a spooler does to the DLL in days, in minutes.

#include <atomic>

#include "tests/monitor/dll/MonitorLibrary.h"
#include "tests/monitor/dll/ProcessResources.h"
#include "tests/tools/ChildProcess.h"

namespace {

// Far below one for each of hundreds of rounds: a lock gets an event the first time that a thread must wait
// for it, and a run-time library keeps memory for later.
constexpr std::size_t cHandleSlack = 8;
constexpr std::size_t cHeapSlack = 64 * 1024;

void ExpectNothingKept(const ProcessResources& before, const ProcessResources& after) {
    EXPECT_LE(after.mHandles, before.mHandles + cHandleSlack);
    EXPECT_LE(after.mHeapBytes, before.mHeapBytes + cHeapSlack);
}

/// Prints until the time has come; the number of jobs.
int PrintUntil(ULONGLONG end, MonitorLibrary& library, std::atomic<int>& wrong) {
    int job = 0;
    for (; ::GetTickCount64() < end; ++job) {
        std::mt19937 random(static_cast<unsigned>(job));
        std::string data(50000, '\0');
        for (char& byte : data) byte = static_cast<char>(random());
        wrong += !library.Start(L"crowd.bin");
        for (std::size_t at = 0; at < data.size(); at += 4096) wrong += !library.Write(data.substr(at, 4096));
        wrong += !library.End();
        wrong += GetTestFolder().ContentOf("crowd.ps") != data;
    }
    return job;
}

/// Calls whatever a spooler, or a mistaken one, may call beside a job.
void DisturbUntil(ULONGLONG end, const MonitorLibrary& library, std::atomic<int>& wrong) {
    const MONITOR2& table = library.GetTable();
    while (::GetTickCount64() < end) {
        BYTE buffer[140];
        DWORD needed = 0, count = 0;
        HANDLE port = nullptr;
        wrong += !table.pfnEnumPorts(nullptr, nullptr, 2, buffer, 140, &needed, &count);
        wrong += table.pfnEnumPorts(nullptr, nullptr, 3, buffer, 140, &needed, &count);
        wrong += table.pfnOpenPort(nullptr, const_cast<wchar_t*>(MonitorLibrary::cPortName), &port);
        wrong += table.pfnClosePort(&port);
        wrong += table.pfnWritePort(&port, buffer, 140, &count);
        wrong += table.pfnWritePort(library.mPort, nullptr, 140, &count);
        wrong += !table.pfnReadPort(library.mPort, buffer, 140, &count);
    }
}

void RunCrowd(MonitorLibrary& library, ULONGLONG milliseconds) {
    const ULONGLONG end = ::GetTickCount64() + milliseconds;
    std::atomic<int> wrong{0};
    std::vector<std::thread> others;
    for (int i = 0; i < 7; ++i) others.emplace_back([&] { DisturbUntil(end, library, wrong); });
    EXPECT_GT(PrintUntil(end, library, wrong), 0);
    for (std::thread& thread : others) thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(MonitorSoak, StandsEightThreadsForAMinute) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    RunCrowd(library, 3000);
    const ProcessResources before = ProcessResources::Count();
    RunCrowd(library, 60000);
    ExpectNothingKept(before, ProcessResources::Count());
}

TEST(MonitorSoak, KeepsNothingOfJobsNorForThreadsThatComeAndGo) {
    MonitorLibrary library;
    const ChildProcess listener(L"PrinterProcessorWin.exe", L"NUL", L"NUL");
    // The listener looks into each file for a moment, so the next job takes another one.
    const auto oneThread = [&library](int job) {
        std::thread([&library, job] {
            EXPECT_TRUE(library.Print((L"thread " + std::to_wstring(job)).c_str(), "x"));
            // A failure makes the library throw and catch on this thread.
            EXPECT_FALSE(library.Start(L"thread.txt", 7, std::wstring(40000, L'p').c_str()));
        }).join();
    };
    for (int i = 0; i < 20; ++i) oneThread(i);
    const ProcessResources before = ProcessResources::Count();
    for (int i = 0; i < 300; ++i) oneThread(i % 20);
    ExpectNothingKept(before, ProcessResources::Count());
}

}  // namespace
