// PrintRaw: sends the bytes of files to a printer unchanged, each file as one RAW job.
//
//     PrintRaw.exe <printer> <document name> <file> [<document name> <file> ...]
//
// All jobs come from one process, one after the other. The exit code is 1 as soon as one is refused.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/win32/base/PWin32Api.h"

#include <winspool.h>

namespace {

constexpr std::size_t cBlockSize = 64 * 1024;

struct CloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

class Printer {
public:
    explicit Printer(wchar_t* name) {
        if (!::OpenPrinterW(name, &mHandle, nullptr)) mHandle = nullptr;
    }
    ~Printer() {
        if (mHandle != nullptr) ::ClosePrinter(mHandle);
    }
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    bool IsOpen() const noexcept { return mHandle != nullptr; }

    bool Print(wchar_t* document, std::FILE* file) const {
        wchar_t raw[] = L"RAW";
        DOC_INFO_1W info = {document, nullptr, raw};
        if (::StartDocPrinterW(mHandle, 1, reinterpret_cast<BYTE*>(&info)) == 0) return false;
        const bool sent = Send(file);
        return ::EndDocPrinter(mHandle) && sent;
    }

private:
    bool Send(std::FILE* file) const {
        std::vector<char> block(cBlockSize);
        for (;;) {
            const std::size_t count = std::fread(block.data(), 1, block.size(), file);
            if (count == 0) return std::ferror(file) == 0;
            DWORD written = 0;
            if (!::WritePrinter(mHandle, block.data(), static_cast<DWORD>(count), &written)) return false;
            if (written != count) return false;
        }
    }

    HANDLE mHandle = nullptr;
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
    for (int i = 2; i + 1 < argc; i += 2) {
        const std::unique_ptr<std::FILE, CloseFile> file(::_wfopen(argv[i + 1], L"rb"));
        if (!file || !printer.Print(argv[i], file.get())) {
            std::fprintf(stderr, "PrintRaw: %ls was not printed (error %lu)\n", argv[i + 1],
                         ::GetLastError());
            return 1;
        }
    }
    return 0;
}
