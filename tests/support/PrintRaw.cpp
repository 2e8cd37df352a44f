// PrintRaw: sends the bytes of files to a printer unchanged, each file as one RAW job.
//
//     PrintRaw.exe <printer> <document name> <file> [<document name> <file> ...]
//
// All jobs come from one process, one after the other. The exit code is 1 as soon as one is refused. At the
// end it tells how long the slowest job took.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <winspool.h>

namespace {

constexpr std::streamsize cBlockSize = 64 * 1024;

/// Sends one job; false as soon as anything is refused.
bool Print(HANDLE printer, wchar_t* document, std::istream& file) {
    wchar_t raw[] = L"RAW";
    DOC_INFO_1W info = {document, nullptr, raw};
    if (::StartDocPrinterW(printer, 1, reinterpret_cast<BYTE*>(&info)) == 0) return false;
    std::vector<char> block(cBlockSize);
    bool sent = true;
    while (sent && (file.read(block.data(), cBlockSize), file.gcount() > 0)) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(file.gcount());
        sent = ::WritePrinter(printer, block.data(), count, &written) && written == count;
    }
    return ::EndDocPrinter(printer) && sent;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 4 || argc % 2 != 0) {
        std::fputs("usage: PrintRaw <printer> <document name> <file> [<document name> <file> ...]\n", stderr);
        return 2;
    }
    HANDLE opened = nullptr;
    if (!::OpenPrinterW(argv[1], &opened, nullptr)) {
        std::fprintf(stderr, "PrintRaw: there is no printer %ls\n", argv[1]);
        return 1;
    }
    const PWin32ScopedHandle<PWin32PrinterHandle> printer(opened);
    unsigned long long slowest = 0;
    for (int i = 2; i + 1 < argc; i += 2) {
        const unsigned long long start = ::GetTickCount64();
        std::ifstream file(std::filesystem::path(argv[i + 1]), std::ios::binary);
        if (!file || !Print(printer.Get(), argv[i], file)) {
            std::fprintf(stderr, "PrintRaw: %ls was not printed (error %lu)\n", argv[i + 1],
                         ::GetLastError());
            return 1;
        }
        slowest = std::max(slowest, ::GetTickCount64() - start);
    }
    std::printf("slowest job: %llu ms\n", slowest);
    return 0;
}
