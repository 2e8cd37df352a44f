// What a whole job takes through the spooler onto our port, beside one through the same spooler into a file.
//
//     SpoolBench.exe <our printer> <path that is the name of a file port>
//
// A second printer like ours is made on that port. See spooler/print.sh, which makes the machine.
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Comparison.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <winspool.h>

namespace {

using PrinterHandle = PWin32ScopedHandle<PWin32PrinterHandle>;

constexpr std::size_t cWrite = 65536;

PrinterHandle Open(std::wstring name) {
    HANDLE opened = nullptr;
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    return PrinterHandle(::OpenPrinterW(name.data(), &opened, &defaults) ? opened : nullptr);
}

/// A printer with the driver of another one, on another port, until the object goes.
class FilePrinter {
public:
    FilePrinter(HANDLE model, std::wstring port) {
        DWORD size = 0;
        ::GetPrinterW(model, 2, nullptr, 0, &size);
        std::vector<BYTE> block(size);
        if (!::GetPrinterW(model, 2, block.data(), size, &size)) return;
        auto info = *reinterpret_cast<const PRINTER_INFO_2W*>(block.data());
        wchar_t name[] = L"Into a file";
        info.pPrinterName = name;
        info.pPortName = port.data();
        mPrinter.Reset(::AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info)));
    }
    ~FilePrinter() {
        if (mPrinter) ::DeletePrinter(mPrinter.Get());
    }
    FilePrinter(const FilePrinter&) = delete;
    FilePrinter& operator=(const FilePrinter&) = delete;

    HANDLE Get() const { return mPrinter.Get(); }

private:
    PrinterHandle mPrinter;
};

bool Print(HANDLE printer, std::size_t size) {
    static std::vector<BYTE> sBlock(cWrite, 'x');
    wchar_t document[] = L"Benchmark", raw[] = L"RAW";
    DOC_INFO_1W info = {document, nullptr, raw};
    if (::StartDocPrinterW(printer, 1, reinterpret_cast<BYTE*>(&info)) == 0) return false;
    bool sent = true;
    for (std::size_t left = size; sent && left > 0;) {
        const auto count = static_cast<DWORD>(left < cWrite ? left : cWrite);
        DWORD written = 0;
        sent = ::WritePrinter(printer, sBlock.data(), count, &written) && written == count;
        left -= count;
    }
    return ::EndDocPrinter(printer) && sent;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const PrinterHandle ours = argc == 3 ? Open(argv[1]) : PrinterHandle(nullptr);
    if (!ours) {
        std::fputs("SpoolBench: there is no such printer\n", stderr);
        return 2;
    }
    const FilePrinter file(ours.Get(), argv[2]);
    const struct {
        std::size_t size;
        int rounds;
    } rows[] = {{4096, 31}, {1 << 20, 15}, {300 << 20, 3}};
    bool good = true;
    for (const auto& row : rows) {
        Comparison::Run(
            {.what = "print a job", .size = static_cast<long>(row.size), .unit = "ms", .rounds = row.rounds},
            [&] { good = Print(ours.Get(), row.size) && good; },
            {{"a file port", {0, 0}, [&] { good = Print(file.Get(), row.size) && good; }}});
    }
    if (!good) std::fputs("SpoolBench: a job was refused\n", stderr);
    return good ? 0 : 1;
}
