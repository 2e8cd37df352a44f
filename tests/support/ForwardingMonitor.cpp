// ForwardingMonitor: a port monitor for tests under Wine that stands between the spooler and the real one.
//
// Wine's spooler hands StartDocPort neither the printer's name nor the job's number, and initialises and
// unloads the monitor anew for every job; Windows does the opposite in both. This monitor finds the two
// missing values, stays loaded, and passes every other call on unchanged. It is registered as the monitor's
// "Driver"; the value "RealDriver" of the same registry key names the DLL that it forwards to.
//
// A job is recognised by its document name among the first 2000 job numbers, so two jobs of one name that
// are printed on the port at the same time can be mistaken for each other.
#include <string>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <winspool.h>

#include <winsplp.h>

namespace {

constexpr DWORD cHighestJobId = 2000;

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
    DWORD FindJob(LPCWSTR document) const {
        for (DWORD id = cHighestJobId; mHandle && id > 0; --id) {
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

/// The job that is being printed on the port; without one, the port's first printer and the number 0.
Job FindJobOnPort(const std::wstring& port, LPCWSTR document) {
    Job found;
    for (const std::wstring& name : PrintersOnPort(port)) {
        const DWORD id = Printer(name).FindJob(document);
        if (found.printer.empty() || id > found.id) found = {name, id};
    }
    return found;
}

class Forwarder {
public:
    /// The table for the spooler, or null when the real monitor cannot be had.
    MONITOR2* Attach(MONITORINIT* init, HANDLE* monitor) {
        if (mReal == nullptr && !LoadReal(init)) return nullptr;
        *monitor = mMonitor;
        return &mTable;
    }
    BOOL OpenPort(HANDLE monitor, LPWSTR name, HANDLE* port) {
        mPort = name != nullptr ? name : L"";
        return mReal->pfnOpenPort(monitor, name, port);
    }
    BOOL StartDocument(HANDLE port, LPWSTR printer, DWORD id, DWORD level, BYTE* info) {
        if (printer != nullptr) return mReal->pfnStartDocPort(port, printer, id, level, info);
        const auto* document = reinterpret_cast<const DOC_INFO_1W*>(info);
        Job job = FindJobOnPort(mPort, document != nullptr ? document->pDocName : nullptr);
        return mReal->pfnStartDocPort(port, job.printer.empty() ? nullptr : job.printer.data(),
                                      id != 0 ? id : job.id, level, info);
    }

private:
    bool LoadReal(MONITORINIT* init);

    MONITOR2* mReal = nullptr;
    MONITOR2 mTable = {};
    HANDLE mMonitor = nullptr;
    std::wstring mPort;
};

/// Never destroyed: the module stays loaded until its process ends.
Forwarder& TheForwarder() {
    static Forwarder& forwarder = *new Forwarder;
    return forwarder;
}

BOOL WINAPI ForwardOpenPort(HANDLE monitor, LPWSTR name, HANDLE* port) {
    return TheForwarder().OpenPort(monitor, name, port);
}

BOOL WINAPI ForwardStartDocPort(HANDLE port, LPWSTR printer, DWORD id, DWORD level, BYTE* info) {
    return TheForwarder().StartDocument(port, printer, id, level, info);
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

bool Forwarder::LoadReal(MONITORINIT* init) {
    using Initialize = MONITOR2*(WINAPI*)(MONITORINIT*, HANDLE*);
    const HMODULE module = ::LoadLibraryW(RealDriver(init).c_str());
    if (module == nullptr) return false;
    const FARPROC entry = ::GetProcAddress(module, "InitializePrintMonitor2");
    const auto initialize = reinterpret_cast<Initialize>(reinterpret_cast<void*>(entry));
    mReal = initialize != nullptr ? initialize(init, &mMonitor) : nullptr;
    if (mReal == nullptr) return false;
    ::CopyMemory(&mTable, mReal, mReal->cbSize < sizeof mTable ? mReal->cbSize : sizeof mTable);
    mTable.pfnOpenPort = &ForwardOpenPort;
    mTable.pfnStartDocPort = &ForwardStartDocPort;
    mTable.pfnShutdown = &IgnoreShutdown;
    StayLoaded();
    return true;
}

}  // namespace

extern "C" __declspec(dllexport) MONITOR2* WINAPI
    InitializePrintMonitor2(MONITORINIT* init, HANDLE* monitor) {
    return TheForwarder().Attach(init, monitor);
}
