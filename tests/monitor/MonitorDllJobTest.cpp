// Whole jobs through the DLL's table.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/monitor/MonitorLibrary.h"
#include "tests/monitor/TraceCapture.h"

namespace {

using testing::ElementsAre;

constexpr DWORD cUntouched = 4711;

class MonitorDllJob : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(mLibrary.Open()); }

    MonitorLibrary mLibrary;
};

/// Bytes in which no block of any size repeats soon.
std::string MakeData(std::size_t size) {
    std::string data;
    data.reserve(size + 16);
    for (std::uint32_t state = 1; data.size() < size; state = state * 1103515245 + 12345) {
        data += static_cast<char>(state >> 16);
    }
    return data;
}

/// Puts a file at `path` that takes no bytes, as on a full disk. False where that cannot be had.
bool LinkToFullDevice(const std::wstring& path) {
    // Only the host's own tool can make the link, which the Windows side then takes for a file.
    using ToHostPath = char*(CDECL*)(const wchar_t*);
    const FARPROC entry = ::GetProcAddress(::GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name");
    if (entry == nullptr) return false;
    const std::string host = reinterpret_cast<ToHostPath>(reinterpret_cast<void*>(entry))(path.c_str());
    std::wstring command = L"ln -s /dev/full \"" + std::wstring(host.begin(), host.end()) + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(L"Z:\\bin\\ln", command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                          &startup, &process)) {
        return false;
    }
    const auto takesWriter = [&path] {
        const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        if (file != INVALID_HANDLE_VALUE) ::CloseHandle(file);
        return file != INVALID_HANDLE_VALUE;
    };
    for (int attempt = 0; attempt < 500 && !takesWriter(); ++attempt) ::Sleep(10);
    return true;
}

TEST_F(MonitorDllJob, TracesEveryStepOfAJob) {
    TraceCapture trace;
    ::SetLastError(cUntouched);
    EXPECT_TRUE(mLibrary.Start(L"Microsoft Word - Q3 report.docx"));
    EXPECT_TRUE(mLibrary.Write("%!PS"));
    EXPECT_EQ(::GetLastError(), cUntouched);
    EXPECT_FALSE(mLibrary.Write(""));
    EXPECT_EQ(::GetLastError(), cUntouched) << "no data is no error";
    EXPECT_TRUE(mLibrary.End());
    EXPECT_TRUE(mLibrary.End());
    EXPECT_FALSE(mLibrary.Write("late"));
    EXPECT_EQ(::GetLastError(), 3003u);
    EXPECT_THAT(
        trace.Take(),
        ElementsAre("PPMStartDocPort", "Failed to open printer. No handle.",
                    "Microsoft Word - Q3 report.docx", "PPMStartDocPort: StartDoc success", "PPMWritePort",
                    "end PPMWritePort", "PPMWritePort", "PPMWritePort: No Data", "end PPMWritePort",
                    "PPMEndDocPort", "Notification to PrintProcessor failed!", "PPMEndDocPort",
                    "PPMWritePort", "PPMWritePort: write when not started?!?", "end PPMWritePort"));
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"Q3 report.ps")), "%!PS");
    EXPECT_TRUE(IsClosed(GetJobPath(L"Q3 report.ps")));
}

TEST_F(MonitorDllJob, LetsOthersReadButNotWriteTheFileOfARunningJob) {
    ASSERT_TRUE(mLibrary.Start(L"shared.txt"));
    ASSERT_TRUE(mLibrary.Write("so far"));
    const std::wstring path = GetJobPath(L"shared.ps");
    EXPECT_EQ(ReadFileBytes(path), "so far") << "what was reported as written is in the file";
    EXPECT_FALSE(IsClosed(path));
    EXPECT_EQ(::CreateFileW(path.c_str(), GENERIC_WRITE, 7, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_TRUE(mLibrary.End());
    EXPECT_TRUE(IsClosed(path));
}

TEST_F(MonitorDllJob, KeepsEveryByteWhateverTheBlocks) {
    const std::string source = MakeData(3000001);
    for (const std::size_t block : {1u, 7u, 4096u, 65536u, 1048576u}) {
        SCOPED_TRACE(block);
        // Single bytes of a part: every write is a call of the system.
        const std::string data = source.substr(0, block < 100 ? 5000 : source.size());
        ASSERT_TRUE(mLibrary.Start(L"blocks.bin"));
        for (std::size_t at = 0; at < data.size(); at += block) {
            ASSERT_TRUE(mLibrary.Write(data.substr(at, block)));
        }
        ASSERT_TRUE(mLibrary.End());
        EXPECT_TRUE(ReadFileBytes(GetJobPath(L"blocks.ps")) == data);
    }
    EXPECT_TRUE(mLibrary.Start(L"blocks.bin"));
    EXPECT_TRUE(mLibrary.End());
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"blocks.ps")), "") << "a job without data";
}

TEST_F(MonitorDllJob, ReportsAFullDiskAndPrintsOn) {
    ASSERT_TRUE(mLibrary.Print(L"full.txt", "x"));
    const std::wstring path = GetJobPath(L"full.ps");
    ASSERT_TRUE(::DeleteFileW(path.c_str()));
    if (!LinkToFullDevice(path)) GTEST_SKIP() << "there is no full device here";
    ASSERT_TRUE(mLibrary.Start(L"full.txt"));
    DWORD written = cUntouched;
    for (int round = 0; round < 2; ++round) {
        ::SetLastError(cUntouched);
        EXPECT_FALSE(mLibrary.Write(std::string(5000, 'x'), written));
        EXPECT_EQ(::GetLastError(), 39u);
        EXPECT_LT(written, 5000u);
    }
    EXPECT_TRUE(mLibrary.End());
    EXPECT_TRUE(mLibrary.Print(L"next.txt", "all well"));
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"next.ps")), "all well");
}

TEST_F(MonitorDllJob, RefusesWhatIsNoJobOfThisPort) {
    const MONITOR2& table = mLibrary.GetTable();
    BYTE data[] = {'x'};
    DWORD written = cUntouched;
    ASSERT_TRUE(mLibrary.Start(L"one.txt", 5));
    EXPECT_FALSE(mLibrary.Start(L"two.txt", 6));
    EXPECT_EQ(::GetLastError(), 170u);
    EXPECT_FALSE(table.pfnWritePort(nullptr, data, 1, &written));
    EXPECT_EQ(::GetLastError(), 6u);
    EXPECT_EQ(written, 0u);
    EXPECT_FALSE(table.pfnWritePort(&written, data, 1, &written));
    EXPECT_EQ(::GetLastError(), 6u);
    EXPECT_FALSE(table.pfnWritePort(mLibrary.mPort, nullptr, 1, &written));
    EXPECT_TRUE(table.pfnWritePort(mLibrary.mPort, data, 1, nullptr)) << "nobody asks for the count";
    EXPECT_FALSE(table.pfnEndDocPort(nullptr));
    EXPECT_EQ(::GetLastError(), 6u);
    EXPECT_TRUE(mLibrary.End());
    EXPECT_EQ(ReadFileBytes(GetJobPath(L"one.ps")), "x");
}

TEST_F(MonitorDllJob, RefusesADocumentWithoutInformation) {
    const MONITOR2& table = mLibrary.GetTable();
    wchar_t printer[] = L"Proof";
    DOC_INFO_1W info = {};
    EXPECT_FALSE(table.pfnStartDocPort(mLibrary.mPort, printer, 1, 1, nullptr));
    EXPECT_EQ(::GetLastError(), 87u);
    EXPECT_FALSE(table.pfnStartDocPort(mLibrary.mPort, printer, 1, 1, reinterpret_cast<BYTE*>(&info)));
    EXPECT_EQ(::GetLastError(), 87u);
    EXPECT_FALSE(table.pfnStartDocPort(mLibrary.mPort, printer, 1, 2, nullptr));
    EXPECT_EQ(::GetLastError(), 87u);
    EXPECT_TRUE(mLibrary.Print(L"named.txt", "x"));
}

TEST_F(MonitorDllJob, PrintsTitlesThatAreNoFileNames) {
    const struct {
        const wchar_t* title;
        const wchar_t* file;
    } rows[] = {
        {L"C:\\Users\\anna\\letter.rtf", L"C__Users_anna_letter.ps"},
        {L"..\\..\\..\\evil.dll", L".._.._.._evil.ps"},
        {L"report:stream", L"report_stream.ps"},
        {L"NUL", L"_NUL.ps"},
        {L"\x65E5\x672C\x8A9E.txt", L"\x65E5\x672C\x8A9E.ps"},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(mLibrary.Print(row.title, "x"));
        EXPECT_EQ(ReadFileBytes(GetJobPath(row.file)), "x");
    }
    EXPECT_TRUE(mLibrary.Print(std::wstring(300, L'x').c_str(), "long"));
    EXPECT_EQ(ReadFileBytes(L"\\\\?\\" + GetJobPath(std::wstring(251, L'x') + L".ps")), "long");
}

TEST_F(MonitorDllJob, PrintsOneAfterTheOther) {
    for (int job = 0; job < 30; ++job) {
        const std::wstring title = L"job " + std::to_wstring(job % 7);
        ASSERT_TRUE(mLibrary.Print(title.c_str(), MakeData(1000 + job)));
        ASSERT_TRUE(ReadFileBytes(GetJobPath(title + L".ps")) == MakeData(1000 + job));
    }
}

TEST_F(MonitorDllJob, TakesCallsFromManyThreads) {
    constexpr int cThreads = 8;
    constexpr int cWrites = 200;
    ASSERT_TRUE(mLibrary.Start(L"threads.bin"));
    std::atomic<int> refused{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < cThreads; ++thread) {
        threads.emplace_back([&, thread] {
            const std::string block(100, static_cast<char>('a' + thread));
            BYTE ports[140];
            DWORD needed = 0;
            DWORD returned = 0;
            for (int i = 0; i < cWrites; ++i) {
                if (!mLibrary.Write(block)) ++refused;
                if (!mLibrary.GetTable().pfnEnumPorts(nullptr, nullptr, 2, ports, 140, &needed, &returned)) {
                    ++refused;
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(mLibrary.End());
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

}  // namespace
