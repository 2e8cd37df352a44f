// ForwardingMonitor: a port monitor for tests under Wine that stands between the spooler and the real one.
//
// Wine's spooler hands StartDocPort neither the printer's name nor the job's number, and initialises and
// unloads the monitor anew for every job; Windows does the opposite in both. This monitor finds the two
// missing values, stays loaded, and passes every other call on unchanged. It is registered as the monitor's
// "Driver"; the value "RealDriver" of the same registry key names the DLL that it forwards to.
//
// A job is recognised by its document name, among the numbers that follow the last one's or else the first
// 2000, so two jobs of one name that are printed on the port at the same time can be mistaken for each other.
#include <atomic>
#include <string>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <winspool.h>

#include <winsplp.h>

namespace {

// Job numbers from behind the first to the second.
struct Range {
    DWORD behind, last;
};

constexpr Range cFirstNumbers = {0, 2000};
constexpr DWORD cNextNumbers = 16;

struct Job {
    std::wstring printer;
    DWORD id = 0;
};

class Printer {
public:
    explicit Printer(std::wstring name) : mName(std::move(name)) {
        HANDLE handle = nullptr;
        if (::OpenPrinterW(mName.data(), &handle, nullptr)) mHandle.Reset(handle);
    }

    /// The highest number of a job of that document name, 0 when there is none. A null name fits every job.
    DWORD FindJob(LPCWSTR document, const Range& numbers) const {
        for (DWORD id = numbers.last; mHandle && id > numbers.behind; --id) {
            if (IsJob(id, document)) return id;
        }
        return 0;
    }

private:
    bool IsJob(DWORD id, LPCWSTR document) const {
        alignas(JOB_INFO_1W) BYTE block[8192];
        DWORD needed = 0;
        if (!::GetJobW(mHandle.Get(), id, 1, block, sizeof block, &needed)) return false;
        const LPCWSTR name = reinterpret_cast<const JOB_INFO_1W*>(block)->pDocument;
        return document == nullptr || name == nullptr || ::lstrcmpW(document, name) == 0;
    }

    std::wstring mName;
    PWin32ScopedHandle<PWin32PrinterHandle> mHandle;
};

std::vector<std::wstring> PrintersOnPort(const std::wstring& port) {
    DWORD needed = 0;
    DWORD count = 0;
    ::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &needed, &count);
    std::vector<BYTE> block(needed);
    std::vector<std::wstring> names;
    if (!::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, block.data(), needed, &needed, &count)) return names;
    const auto* printers = reinterpret_cast<const PRINTER_INFO_2W*>(block.data());
    for (DWORD i = 0; i < count; ++i) {
        if (::lstrcmpiW(printers[i].pPortName, port.c_str()) == 0)
            names.emplace_back(printers[i].pPrinterName);
    }
    return names;
}

Job FindJobAmong(const std::vector<std::wstring>& printers, LPCWSTR document, const Range& numbers) {
    Job found;
    for (const std::wstring& name : printers) {
        const DWORD id = Printer(name).FindJob(document, numbers);
        if (found.printer.empty() || id > found.id) found = {name, id};
    }
    return found;
}

/// The job that is being printed on the port; without one, the port's first printer and the number 0.
Job FindJobOnPort(const std::wstring& port, LPCWSTR document) {
    static std::atomic<DWORD> sLast = 0;
    const std::vector<std::wstring> printers = PrintersOnPort(port);
    Job found = FindJobAmong(printers, document, {sLast, sLast + cNextNumbers});
    if (found.id == 0) found = FindJobAmong(printers, document, cFirstNumbers);
    if (found.id != 0) sLast = found.id;
    return found;
}

/// Never destroyed: the module stays loaded until its process ends.
MONITOR2* sReal = nullptr;
MONITOR2 sTable = {};
HANDLE sMonitor = nullptr;
std::wstring& sPort = *new std::wstring;

BOOL WINAPI ForwardOpenPort(HANDLE monitor, LPWSTR name, HANDLE* port) {
    sPort = name != nullptr ? name : L"";
    return sReal->pfnOpenPort(monitor, name, port);
}

BOOL WINAPI ForwardStartDocPort(HANDLE port, LPWSTR printer, DWORD id, DWORD level, BYTE* info) {
    if (printer != nullptr) return sReal->pfnStartDocPort(port, printer, id, level, info);
    const auto* document = reinterpret_cast<const DOC_INFO_1W*>(info);
    Job job = FindJobOnPort(sPort, document != nullptr ? document->pDocName : nullptr);
    return sReal->pfnStartDocPort(port, job.printer.empty() ? nullptr : job.printer.data(),
                                  id != 0 ? id : job.id, level, info);
}

// Wine shuts the monitor down after every job, Windows only when the spooler stops.
void WINAPI IgnoreShutdown(HANDLE) {}

void StayLoaded() {
    HMODULE self = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         reinterpret_cast<LPCWSTR>(&IgnoreShutdown), &self);
}

std::wstring RealDriver(const MONITORINIT* init) {
    wchar_t name[MAX_PATH] = {};
    DWORD size = sizeof name - sizeof name[0];
    const auto key = static_cast<HKEY>(init->hckRegistryRoot);
    if (::RegQueryValueExW(key, L"RealDriver", nullptr, nullptr, reinterpret_cast<BYTE*>(name), &size) != 0) {
        return {};
    }
    return name;
}

bool LoadReal(MONITORINIT* init) {
    using Initialize = MONITOR2*(WINAPI*)(MONITORINIT*, HANDLE*);
    const HMODULE module = ::LoadLibraryW(RealDriver(init).c_str());
    if (module == nullptr) return false;
    const FARPROC entry = ::GetProcAddress(module, "InitializePrintMonitor2");
    const auto initialize = reinterpret_cast<Initialize>(reinterpret_cast<void*>(entry));
    sReal = initialize != nullptr ? initialize(init, &sMonitor) : nullptr;
    if (sReal == nullptr) return false;
    ::CopyMemory(&sTable, sReal, sReal->cbSize < sizeof sTable ? sReal->cbSize : sizeof sTable);
    sTable.pfnOpenPort = &ForwardOpenPort;
    sTable.pfnStartDocPort = &ForwardStartDocPort;
    sTable.pfnShutdown = &IgnoreShutdown;
    StayLoaded();
    return true;
}

}  // namespace

extern "C" __declspec(dllexport) MONITOR2* WINAPI
    InitializePrintMonitor2(MONITORINIT* init, HANDLE* monitor) {
    if (sReal == nullptr && !LoadReal(init)) return nullptr;
    *monitor = sMonitor;
    return &sTable;
}
