// What a spooler does to the DLL in days, in minutes.

#include <gmock/gmock.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "tests/monitor/ListenerProcess.h"
#include "tests/monitor/MonitorLibrary.h"
#include "tests/monitor/ProcessResources.h"

namespace {

// Far below one for each of hundreds of rounds: a lock gets an event the first time that a thread must wait
// for it, and a run-time library keeps memory for later.
constexpr std::size_t cHandleSlack = 8;
constexpr std::size_t cHeapSlack = 64 * 1024;

void ExpectNothingKept(const ProcessResources& before, const ProcessResources& after) {
    EXPECT_LE(after.mHandles, before.mHandles + cHandleSlack);
    EXPECT_LE(after.mHeapBytes, before.mHeapBytes + cHeapSlack);
}

TEST(MonitorSoak, PrintsAThousandJobsAndTellsOfEachOnce) {
    constexpr int cJobs = 1000;
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    ListenerProcess listener(L"listen");
    ASSERT_TRUE(library.Print(L"job 0", "warm"));
    const ProcessResources before = ProcessResources::Count();
    std::vector<std::wstring> expected = {L"job 0.ps"};
    for (int job = 1; job <= cJobs; ++job) {
        const std::wstring title = L"job " + std::to_wstring(job);
        const std::string data = MakeData(20000 + job, job);
        ASSERT_TRUE(library.Print(title.c_str(), data)) << job;
        ASSERT_TRUE(ReadFileBytes(GetJobPath(title + L".ps")) == data) << job;
        ASSERT_TRUE(::DeleteFileW(GetJobPath(title + L".ps").c_str())) << job;
        expected.push_back(title + L".ps");
    }
    expected.shrink_to_fit();
    ExpectNothingKept(before, ProcessResources::Count());
    EXPECT_EQ(listener.Finish(), 0u);
    EXPECT_EQ(listener.GetJobs(), expected);
}

TEST(MonitorSoak, WritesThreeHundredMegabytes) {
    constexpr std::size_t cBlock = 1 << 20;
    constexpr int cBlocks = 300;
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    ASSERT_TRUE(library.Start(L"large.bin"));
    for (int block = 0; block < cBlocks; ++block) ASSERT_TRUE(library.Write(MakeData(cBlock, block)));
    ASSERT_TRUE(library.End());
    const std::wstring path = GetJobPath(L"large.ps");
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    std::string content(cBlock, '\0');
    DWORD count = 0;
    for (int block = 0; block < cBlocks; ++block) {
        ASSERT_TRUE(::ReadFile(file, content.data(), cBlock, &count, nullptr));
        ASSERT_TRUE(count == cBlock && content == MakeData(cBlock, block)) << block;
    }
    EXPECT_TRUE(::ReadFile(file, content.data(), 1, &count, nullptr));
    EXPECT_EQ(count, 0u);
    ::CloseHandle(file);
    ::DeleteFileW(path.c_str());
}

/// One thread prints as a spooler does; the others call whatever a spooler, or a mistaken one, may call.
class Crowd {
public:
    Crowd(MonitorLibrary& library, ULONGLONG end) : mLibrary(library), mEnd(end) {}

    void Print() {
        for (int job = 0; ::GetTickCount64() < mEnd; ++job) {
            const std::string data = MakeData(50000, job);
            if (!mLibrary.Start(L"crowd.bin")) ++mWrong;
            for (std::size_t at = 0; at < data.size(); at += 4096) {
                if (!mLibrary.Write(data.substr(at, 4096))) ++mWrong;
            }
            if (!mLibrary.End()) ++mWrong;
            if (ReadFileBytes(GetJobPath(L"crowd.ps")) != data) ++mWrong;
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
            ++mCalls;
        }
    }

    std::atomic<int> mWrong{0};
    std::atomic<int> mCalls{0};
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
    std::printf("%d jobs, %d rounds of other calls\n", crowd.mJobs, crowd.mCalls.load());
}

TEST(MonitorSoak, StandsEightThreadsForAMinute) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    RunCrowd(library, 3000);
    const ProcessResources before = ProcessResources::Count();
    RunCrowd(library, 60000);
    ExpectNothingKept(before, ProcessResources::Count());
}

TEST(MonitorSoak, KeepsNothingForThreadsThatComeAndGo) {
    MonitorLibrary library;
    ASSERT_TRUE(library.Open());
    const auto oneThread = [&library] {
        std::thread([&library] {
            library.Print(L"thread.txt", "x");
            // A failure makes the library throw and catch on this thread.
            library.Start(L"thread.txt", 7, L"no|printer");
        }).join();
    };
    for (int i = 0; i < 20; ++i) oneThread();
    const ProcessResources before = ProcessResources::Count();
    for (int i = 0; i < 500; ++i) oneThread();
    ExpectNothingKept(before, ProcessResources::Count());
}

}  // namespace
