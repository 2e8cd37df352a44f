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

constexpr DWORD cFirstNumbers = 2000;
constexpr DWORD cNextNumbers = 16;

struct Job {
    std::wstring printer;
    DWORD id = 0;
};

/// The highest number above `low`, up to `high`, of a job of that document name; 0 when there is none. A null
/// name fits every job.
DWORD FindJob(std::wstring printer, LPCWSTR document, DWORD low, DWORD high) {
    HANDLE opened = nullptr;
    if (!::OpenPrinterW(printer.data(), &opened, nullptr)) return 0;
    const PWin32ScopedHandle<PWin32PrinterHandle> handle(opened);
    for (DWORD id = high; id > low; --id) {
        alignas(JOB_INFO_1W) BYTE block[8192];
        DWORD needed = 0;
        if (!::GetJobW(handle.Get(), id, 1, block, sizeof block, &needed)) continue;
        const LPCWSTR name = reinterpret_cast<const JOB_INFO_1W*>(block)->pDocument;
        if (document == nullptr || name == nullptr || ::lstrcmpW(document, name) == 0) return id;
    }
    return 0;
}

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

/// The job that is being printed on the port; without one, the port's first printer and the number 0.
Job FindJobOnPort(const std::wstring& port, LPCWSTR document) {
    static std::atomic<DWORD> sLast = 0;
    const DWORD last = sLast;
    Job found;
    for (const auto& [low, high] : {std::pair(last, last + cNextNumbers), {0, cFirstNumbers}}) {
        if (found.id != 0) break;
        for (const std::wstring& printer : PrintersOnPort(port)) {
            const DWORD id = FindJob(printer, document, low, high);
            if (found.printer.empty() || id > found.id) found = {printer, id};
        }
    }
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
    const LONG failure =
        ::RegQueryValueExW(key, L"RealDriver", nullptr, nullptr, reinterpret_cast<BYTE*>(name), &size);
    return failure == 0 ? name : L"";
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
