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

/// One thread prints as a spooler does; the others call whatever a spooler, or a mistaken one, may call.
class Crowd {
public:
    Crowd(MonitorLibrary& library, ULONGLONG end) : mLibrary(library), mEnd(end) {}

    void Print() {
        for (int job = 0; ::GetTickCount64() < mEnd; ++job) {
            std::mt19937 random(static_cast<unsigned>(job));
            std::string data(50000, '\0');
            for (char& byte : data) byte = static_cast<char>(random());
            if (!mLibrary.Start(L"crowd.bin")) ++mWrong;
            for (std::size_t at = 0; at < data.size(); at += 4096) {
                if (!mLibrary.Write(data.substr(at, 4096))) ++mWrong;
            }
            if (!mLibrary.End()) ++mWrong;
            if (GetTestFolder().ContentOf("crowd.ps") != data) ++mWrong;
            ++mJobs;
        }
    }
    void Disturb() {
        const MONITOR2& table = mLibrary.GetTable();
        while (::GetTickCount64() < mEnd) {
            BYTE buffer[140];
            DWORD needed = 0;
            DWORD count = 0;
            HANDLE port = nullptr;
            if (!table.pfnEnumPorts(nullptr, nullptr, 2, buffer, 140, &needed, &count)) ++mWrong;
            if (table.pfnEnumPorts(nullptr, nullptr, 3, buffer, 140, &needed, &count)) ++mWrong;
            if (table.pfnOpenPort(nullptr, const_cast<wchar_t*>(MonitorLibrary::cPortName), &port)) ++mWrong;
            if (table.pfnClosePort(&port)) ++mWrong;
            if (table.pfnWritePort(&port, buffer, 140, &count)) ++mWrong;
            if (table.pfnWritePort(mLibrary.mPort, nullptr, 140, &count)) ++mWrong;
            if (!table.pfnReadPort(mLibrary.mPort, buffer, 140, &count)) ++mWrong;
        }
    }

    std::atomic<int> mWrong{0};
    int mJobs = 0;

private:
    MonitorLibrary& mLibrary;
    ULONGLONG mEnd;
};

void RunCrowd(MonitorLibrary& library, ULONGLONG milliseconds) {
    Crowd crowd(library, ::GetTickCount64() + milliseconds);
    std::vector<std::thread> threads;
    threads.emplace_back([&crowd] { crowd.Print(); });
    for (int i = 0; i < 7; ++i) threads.emplace_back([&crowd] { crowd.Disturb(); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(crowd.mWrong, 0);
    EXPECT_GT(crowd.mJobs, 0);
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
    ASSERT_TRUE(library.Open());
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
