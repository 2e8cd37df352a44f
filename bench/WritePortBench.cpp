// What writing to the port costs beyond writing the same bytes to a file.
//
//     WritePortBench.exe <path of QuillonPortMonitor64.dll>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Rounds.h"
#include "bench/SpoolerPort.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

namespace {

constexpr int cRounds = 31;
constexpr int cWrites = 50;

class PlainFile {
public:
    PlainFile() {
        wchar_t folder[MAX_PATH];
        ::GetTempPathW(MAX_PATH, folder);
        mPath = std::wstring(folder) + L"WritePortBench.tmp";
        mFile.Reset(::CreateFileW(mPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    }
    ~PlainFile() {
        mFile = {};
        ::DeleteFileW(mPath.c_str());
    }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    /// The file's write, and the two lines that each callback sends to a debugger.
    bool Write(const std::vector<BYTE>& block) {
        DWORD written = 0;
        ::OutputDebugStringW(L"PPMWritePort");
        const auto size = static_cast<DWORD>(block.size());
        const bool done = ::WriteFile(mFile.Get(), block.data(), size, &written, nullptr) && written == size;
        ::OutputDebugStringW(L"end PPMWritePort");
        return done;
    }

private:
    std::wstring mPath;
    PWin32ScopedHandle<PWin32FileHandle> mFile;
};

/// False when a write failed, which would make the figures worthless.
bool Compare(SpoolerPort& port, std::size_t blockSize) {
    std::vector<BYTE> block(blockSize, 'x');
    PlainFile file;
    bool good = port.Start();
    const std::vector<double> times = Rounds(cRounds, cWrites)
                                          .Measure({{"port",
                                                     [&] {
                                                         for (int i = 0; i < cWrites; ++i)
                                                             good = port.Write(block) && good;
                                                     }},
                                                    {"file", [&] {
                                                         for (int i = 0; i < cWrites; ++i)
                                                             good = file.Write(block) && good;
                                                     }}});
    port.End();
    std::printf("%6u bytes: port %8.2f us, plain file and debug output %8.2f us, difference %6.2f us\n",
                static_cast<unsigned>(blockSize), times[0], times[1], times[0] - times[1]);
    return good;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    SpoolerPort port(argc == 2 ? argv[1] : L"QuillonPortMonitor64.dll");
    if (!port.IsOpen()) {
        std::fputs("WritePortBench: the port cannot be opened\n", stderr);
        return 1;
    }
    const bool good = Compare(port, 4096) && Compare(port, 65536);
    if (!good) std::fputs("WritePortBench: a write failed\n", stderr);
    return good ? 0 : 1;
}
