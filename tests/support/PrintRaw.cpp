// PrintRaw: sends the bytes of files to a printer unchanged, each file as one RAW job.
//
//     PrintRaw.exe <printer> <document name> <file> [<document name> <file> ...]
//
// All jobs come from one process, one after the other. The exit code is 1 as soon as one is refused. At the
// end it tells how long the slowest job took.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <winspool.h>

namespace {

constexpr std::size_t cBlockSize = 64 * 1024;

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

class Printer {
public:
    explicit Printer(wchar_t* name) {
        HANDLE handle = nullptr;
        if (::OpenPrinterW(name, &handle, nullptr)) mHandle.Reset(handle);
    }

    bool IsOpen() const noexcept { return static_cast<bool>(mHandle); }

    bool Print(wchar_t* document, std::FILE* file) const {
        wchar_t raw[] = L"RAW";
        DOC_INFO_1W info = {document, nullptr, raw};
        if (::StartDocPrinterW(mHandle.Get(), 1, reinterpret_cast<BYTE*>(&info)) == 0) return false;
        const bool sent = Send(file);
        return ::EndDocPrinter(mHandle.Get()) && sent;
    }

private:
    bool Send(std::FILE* file) const {
        std::vector<char> block(cBlockSize);
        for (;;) {
            const std::size_t count = std::fread(block.data(), 1, block.size(), file);
            if (count == 0) return std::ferror(file) == 0;
            DWORD written = 0;
            if (!::WritePrinter(mHandle.Get(), block.data(), static_cast<DWORD>(count), &written))
                return false;
            if (written != count) return false;
        }
    }

    PWin32ScopedHandle<PWin32PrinterHandle> mHandle;
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 4 || argc % 2 != 0) {
        std::fputs("usage: PrintRaw <printer> <document name> <file> [<document name> <file> ...]\n", stderr);
        return 2;
    }
    const Printer printer(argv[1]);
    if (!printer.IsOpen()) {
        std::fprintf(stderr, "PrintRaw: there is no printer %ls\n", argv[1]);
        return 1;
    }
    unsigned long long slowest = 0;
    for (int i = 2; i + 1 < argc; i += 2) {
        const unsigned long long start = ::GetTickCount64();
        const std::unique_ptr<std::FILE, CloseFile> file(::_wfopen(argv[i + 1], L"rb"));
        if (!file || !printer.Print(argv[i], file.get())) {
            std::fprintf(stderr, "PrintRaw: %ls was not printed (error %lu)\n", argv[i + 1],
                         ::GetLastError());
            return 1;
        }
        slowest = std::max(slowest, ::GetTickCount64() - start);
    }
    std::printf("slowest job: %llu ms\n", slowest);
    return 0;
}
