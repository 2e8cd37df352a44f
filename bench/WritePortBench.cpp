// What writing to the port costs beyond writing the same bytes to a file.
//
//     WritePortBench.exe <path of QuillonPortMonitor64.dll>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Comparison.h"
#include "bench/SpoolerPort.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

namespace {

constexpr int cWrites = 50;
// A call is to cost two microseconds above the file's, which takes some twenty to fifty. On a busy machine
// others come in between more often the more calls there are.
constexpr Limits cLimits = {1.1, 1.4};

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

    bool WriteAlone(const std::vector<BYTE>& block) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(block.size());
        return ::WriteFile(mFile.Get(), block.data(), size, &written, nullptr) && written == size;
    }

    /// The file's write, and the two lines that each callback sends to a debugger.
    bool Write(const std::vector<BYTE>& block) {
        ::OutputDebugStringW(L"PPMWritePort");
        const bool done = WriteAlone(block);
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
    Comparison::Run(
        {.what = "write to the port", .size = static_cast<long>(blockSize), .count = cWrites, .unit = "us"},
        [&] {
            for (int i = 0; i < cWrites; ++i) good = port.Write(block) && good;
        },
        {{"file and debug output", cLimits,
          [&] {
              for (int i = 0; i < cWrites; ++i) good = file.Write(block) && good;
          }},
         {"file alone", {0, 0}, [&] {
              for (int i = 0; i < cWrites; ++i) good = file.WriteAlone(block) && good;
          }}});
    good = port.End() && good;
    return good;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    SpoolerPort port(argc == 2 ? argv[1] : L"QuillonPortMonitor64.dll");
    if (!port.IsOpen()) {
        std::fputs("WritePortBench: the port cannot be opened\n", stderr);
        return 1;
    }
    bool good = true;
    for (const std::size_t size : {512, 4096, 16384, 65536}) good = Compare(port, size) && good;
    if (!good) std::fputs("WritePortBench: a write failed\n", stderr);
    return good ? 0 : 1;
}
