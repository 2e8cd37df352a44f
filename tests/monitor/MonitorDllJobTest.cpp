// Whole jobs through the DLL's table.

#include <gmock/gmock.h>

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

/// Stands in for a call that a module imports from the system, for as long as it lives.
class ReplacedImport {
public:
    ReplacedImport(HMODULE module, const char* name, void* replacement) : mSlot(FindSlot(module, name)) {
        if (mSlot != nullptr) mOriginal = Exchange(replacement);
    }
    ReplacedImport(const ReplacedImport&) = delete;
    ReplacedImport& operator=(const ReplacedImport&) = delete;
    ~ReplacedImport() {
        if (mSlot != nullptr) Exchange(mOriginal);
    }
    bool IsInPlace() const { return mSlot != nullptr; }

private:
    static void** FindSlot(HMODULE module, const char* name) {
        auto* const base = reinterpret_cast<BYTE*>(module);
        const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const DWORD imports =
            headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
        auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports);
        for (; library->Name != 0; ++library) {
            const auto* names = reinterpret_cast<const ULONGLONG*>(base + library->OriginalFirstThunk);
            auto* slots = reinterpret_cast<void**>(base + library->FirstThunk);
            for (; *names != 0; ++names, ++slots) {
                const char* const imported = reinterpret_cast<const char*>(base + *names + sizeof(WORD));
                if (!IMAGE_SNAP_BY_ORDINAL64(*names) && std::string(imported) == name) return slots;
            }
        }
        return nullptr;
    }
    void* Exchange(void* target) {
        DWORD protection = 0;
        ::VirtualProtect(mSlot, sizeof target, PAGE_READWRITE, &protection);
        std::swap(*mSlot, target);
        ::VirtualProtect(mSlot, sizeof target, protection, &protection);
        return target;
    }

    void** mSlot;
    void* mOriginal = nullptr;
};

/// A disk with room for some bytes more. The write that crosses its end is cut short, the next one fails; or
/// it fails at once, as Windows does it.
struct FullDisk {
    static inline DWORD sRoom = 0;
    static inline bool sCutsShort = false;

    static BOOL WINAPI Write(HANDLE file, const void* data, DWORD size, DWORD* written, OVERLAPPED* place) {
        const DWORD taken = size <= sRoom ? size : sCutsShort ? sRoom : 0;
        *written = 0;
        if (taken == 0) {
            ::SetLastError(ERROR_DISK_FULL);
            return FALSE;
        }
        sRoom -= taken;
        return ::WriteFile(file, data, taken, written, place);
    }
};

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
    const struct {
        const char* what;
        bool cutsShort;
        DWORD written;
        const char* content;
    } rows[] = {{"refused", false, 0, "1234"}, {"cut short", true, 6, "1234abcdef"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        ASSERT_TRUE(mLibrary.Start(L"full.txt"));
        {
            FullDisk::sRoom = 10;
            FullDisk::sCutsShort = row.cutsShort;
            const ReplacedImport disk(mLibrary.GetModule(), "WriteFile",
                                      reinterpret_cast<void*>(&FullDisk::Write));
            ASSERT_TRUE(disk.IsInPlace());
            EXPECT_TRUE(mLibrary.Write("1234"));
            DWORD written = cUntouched;
            EXPECT_FALSE(mLibrary.Write("abcdefgh", written));
            EXPECT_EQ(::GetLastError(), 39u);
            EXPECT_EQ(written, row.written);
            FullDisk::sRoom = 0;
            EXPECT_FALSE(mLibrary.Write("more", written));
            EXPECT_EQ(::GetLastError(), 39u);
            EXPECT_EQ(written, 0u);
        }
        EXPECT_TRUE(mLibrary.End());
        EXPECT_EQ(ReadFileBytes(GetJobPath(L"full.ps")), row.content);
        EXPECT_TRUE(mLibrary.Print(L"next.txt", "all well"));
        EXPECT_EQ(ReadFileBytes(GetJobPath(L"next.ps")), "all well");
    }
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
    wchar_t printer[] = L"Proof";
    DOC_INFO_1W info = {};
    const auto start = [&](DWORD level, void* record) {
        return mLibrary.GetTable().pfnStartDocPort(mLibrary.mPort, printer, 1, level,
                                                   static_cast<BYTE*>(record));
    };
    for (const bool started : {start(1, nullptr) != 0, start(1, &info) != 0, start(2, nullptr) != 0}) {
        EXPECT_FALSE(started);
        EXPECT_EQ(::GetLastError(), 87u);
    }
    EXPECT_TRUE(mLibrary.Print(L"named.txt", "x"));
}

TEST_F(MonitorDllJob, PrintsTitlesThatAreNoFileNames) {
    EXPECT_TRUE(mLibrary.Print(L"..\\..\\NUL:\x65E5.dll", "x"));
    EXPECT_EQ(ReadFileBytes(GetJobPath(L".._.._NUL_\x65E5.ps")), "x");
    EXPECT_TRUE(mLibrary.Print(std::wstring(300, L'x').c_str(), "long"));
    EXPECT_EQ(ReadFileBytes(L"\\\\?\\" + GetJobPath(std::wstring(251, L'x') + L".ps")), "long");
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
            for (int i = 0; i < cWrites; ++i) refused += mLibrary.Write(block) ? 0 : 1;
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
