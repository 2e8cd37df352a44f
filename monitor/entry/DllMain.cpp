// The module's entry points and the callbacks that it hands to the spooler. The callbacks only turn the
// spooler's types into ours; what they do is in MonitorPort and MonitorJob.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "framework/GBasicFrameworkCoreLayer.h"
#include "framework/system/PSystem.h"
#include "monitor/entry/PWin32MonitorPlatform.h"
#include "monitor/handoff/GPPJobNotification.h"
#include "monitor/handoff/GPPPrinterProcessorLayer.h"
#include "monitor/spooling/MonitorJob.h"
#include "monitor/spooling/MonitorPort.h"
#include "monitor/spooling/MonitorState.h"
#include "monitor/spooling/RunCallback.h"
#include "platform/win32/base/PWin32SpoolerApi.h"

#include <objbase.h>

// Where the module's thread-local storage is described, as the loader finds it.
extern "C" const IMAGE_TLS_DIRECTORY64 _tls_used;

namespace {

/// All of the monitor, from process attach to process detach.
struct Monitor {
    PWin32MonitorPlatform mPlatform;
    MonitorState mState;
    GPPJobNotification mNotifier;
    MonitorPort mPort{mPlatform, mState};
    MonitorJob mJob{mPlatform, mState, mNotifier};
};

// The load must not fail, and the callbacks do not ask whether there is a monitor.
static_assert(std::is_nothrow_default_constructible_v<Monitor>);

/// Plain storage: a static object would be destroyed at process exit, too, when other threads have been
/// killed wherever they were.
union MonitorStorage {
    MonitorStorage() noexcept {}
    ~MonitorStorage() {}
    Monitor mMonitor;
};
MonitorStorage sStorage;

const unsigned short* Units(const wchar_t* text) {
    return reinterpret_cast<const unsigned short*>(text);
}

template <class Body>
BOOL Run(const wchar_t* word, CallbackFailure failure, Body&& body) {
    Monitor& monitor = sStorage.mMonitor;
    return RunCallback(monitor.mPlatform, monitor.mState, word, failure, [&] { return body(monitor); });
}

MonitorJob::Document MakeDocument(DWORD level, const BYTE* info) {
    if (level != MonitorJob::Document::cKnownLevel || info == nullptr) return {level, nullptr};
    return {level, Units(reinterpret_cast<const DOC_INFO_1W*>(info)->pDocName)};
}

// --- The callbacks -------------------------------------------------------------------------------

BOOL WINAPI PPMEnumPorts(HANDLE, LPWSTR, DWORD level, LPBYTE ports, DWORD size, LPDWORD needed,
                         LPDWORD returned) {
    return Run(L"PPMEnumPorts", {MonitorError::cCannotComplete}, [&](Monitor& monitor) {
        return monitor.mPort.Enumerate(level, ports, size, needed, returned);
    });
}

BOOL WINAPI PPMOpenPort(HANDLE, LPWSTR name, PHANDLE handle) {
    return Run(L"PPMOpenPort", {MonitorError::cOutOfMemory},
               [&](Monitor& monitor) { return monitor.mPort.Open(Units(name), handle); });
}

BOOL WINAPI PPMClosePort(HANDLE port) {
    return Run(L"PPMClosePort", {MonitorError::cCannotComplete},
               [&](Monitor& monitor) { return monitor.mPort.Close(port); });
}

BOOL WINAPI PPMStartDocPort(HANDLE, LPWSTR printerName, DWORD jobID, DWORD level, LPBYTE docInfo) {
    return Run(L"PPMStartDocPort", {MonitorError::cInvalidParameter}, [&](Monitor& monitor) {
        return monitor.mJob.Start(Units(printerName), jobID, MakeDocument(level, docInfo));
    });
}

BOOL WINAPI PPMWritePort(HANDLE port, LPBYTE buffer, DWORD size, LPDWORD written) {
    std::uint32_t count = 0;
    const BOOL result = Run(L"PPMWritePort", {MonitorError::cCannotComplete},
                            [&](Monitor& monitor) { return monitor.mJob.Write(port, buffer, size, count); });
    if (written != nullptr) *written = count;
    PSystem::Trace(L"end PPMWritePort");
    return result;
}

BOOL WINAPI PPMReadPort(HANDLE, LPBYTE, DWORD, LPDWORD read) {
    PSystem::Trace(L"PPMReadPort");
    if (read == nullptr) return FALSE;
    *read = 0;
    return TRUE;
}

BOOL WINAPI PPMEndDocPort(HANDLE port) {
    return Run(L"PPMEndDocPort", {}, [&](Monitor& monitor) { return monitor.mJob.End(port); });
}

// The configuration channel is there to refuse, in the trace words of the port's own callbacks.

BOOL WINAPI PPMXcvOpenPort(HANDLE, LPCWSTR, ACCESS_MASK, PHANDLE channel) {
    PSystem::Trace(L"PPMOpenPort");
    if (channel != nullptr) *channel = nullptr;
    ::SetLastError(MonitorError::cInvalidFunction);
    return FALSE;
}

DWORD WINAPI PPMDataPort(HANDLE, LPCWSTR, PBYTE, DWORD, PBYTE, DWORD, PDWORD) {
    PSystem::Trace(L"PPMDataPort");
    ::SetLastError(MonitorError::cInvalidFunction);
    return MonitorError::cInvalidFunction;
}

BOOL WINAPI PPMXcvClosePort(HANDLE) {
    PSystem::Trace(L"PPMClosePort");
    ::SetLastError(MonitorError::cInvalidFunction);
    return FALSE;
}

void WINAPI PPMShutdown(HANDLE) {
    PSystem::Trace(L"PPMShutdown");
    sStorage.mMonitor.mPort.Reset();
}

// The table ends with pfnShutdown. Newer headers declare more members, so its size is no sizeof.
constexpr DWORD cTableSize = offsetof(MONITOR2, pfnSendRecvBidiDataFromPort);
static_assert(cTableSize == 152);
static_assert(cTableSize == offsetof(MONITOR2, pfnShutdown) + sizeof(MONITOR2::pfnShutdown));

constexpr MONITOR2 MakeTable() {
    MONITOR2 table{};
    table.cbSize = cTableSize;
    table.pfnEnumPorts = PPMEnumPorts;
    table.pfnOpenPort = PPMOpenPort;
    table.pfnStartDocPort = PPMStartDocPort;
    table.pfnWritePort = PPMWritePort;
    table.pfnReadPort = PPMReadPort;
    table.pfnEndDocPort = PPMEndDocPort;
    table.pfnClosePort = PPMClosePort;
    table.pfnXcvOpenPort = PPMXcvOpenPort;
    table.pfnXcvDataPort = PPMDataPort;
    table.pfnXcvClosePort = PPMXcvClosePort;
    table.pfnShutdown = PPMShutdown;
    return table;
}

constexpr MONITOR2 cTable = MakeTable();

// --- Load and unload -----------------------------------------------------------------------------

void StartCOM() {
    switch (::CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {
        case S_OK:
            return PSystem::Trace(L"CoInitializeEx S_OK");
        case S_FALSE:
            return PSystem::Trace(L"CoInitializeEx S_FALSE");
        case RPC_E_CHANGED_MODE:
            return PSystem::Trace(L"CoInitializeEx RPC_E_CHANGED_MODE");
        default:
            return;
    }
}

/// Whatever fails here, the module loads: jobs are written all the same. A program that is linked with the
/// module has it loaded as it starts, for the framework's sake: it decides itself what COM its thread has,
/// and when it listens.
void Attach(HINSTANCE module, bool loadedWithProgram) {
    PSystem::Trace(L"DLL_PROCESS_ATTACH");
    std::construct_at(&sStorage.mMonitor)->mState.sModuleHandle = module;
    try {
        ::DisableThreadLibraryCalls(module);
        PSystem::SetHInstance(module);
        if (!loadedWithProgram) StartCOM();
        // Also where the messaging cannot be started: the trace log is to tell why.
        GBasicFrameworkCoreLayer::Initialize();
        if (loadedWithProgram) return;
        PSystem::Trace(L"GPPPrinterProcessorLayer::Initialize");
        GPPPrinterProcessorLayer::Initialize();
    } catch (...) {
        PSystem::Trace(L"Failed in DLL_PROCESS_ATTACH");
    }
}

/// The run-time library keeps two handles for each thread that has entered it, until that thread ends. For
/// the thread that unloads the module this is the end.
void LeaveThread(HINSTANCE module) {
    auto* callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(_tls_used.AddressOfCallBacks);
    for (; *callback != nullptr; ++callback) (*callback)(module, DLL_THREAD_DETACH, nullptr);
}

void Detach(HINSTANCE module, bool processEnds) {
    PSystem::Trace(L"DLL_PROCESS_DETACH");
    PSystem::Trace(L"PPMShutdown");
    // When the process ends, its other threads are gone, perhaps with our locks and half-made changes;
    // the system takes everything back.
    if (!processEnds) {
        Monitor& monitor = sStorage.mMonitor;
        monitor.mPort.Reset();
        // A job that was never ended keeps its file open, as after shut-down.
        static_cast<void>(monitor.mState.sJobStream.release());
        GPPPrinterProcessorLayer::Finalize();
        GBasicFrameworkCoreLayer::Finalize();
        std::destroy_at(&monitor);
        LeaveThread(module);
    }
    PSystem::Trace(L"Done detach");
}

}  // namespace

extern "C" {

BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, LPVOID reserved);

/// What the loader calls (the link names it). Windows does not switch thread notifications off for a module
/// with thread-local storage, such as the run-time library keeps for exceptions; they end here, so that
/// DllMain does not speak up for every thread of the spooler.
BOOL WINAPI ModuleEntryPoint(HINSTANCE module, DWORD reason, LPVOID reserved) {
    if (reason == DLL_THREAD_ATTACH || reason == DLL_THREAD_DETACH) return TRUE;
    return DllMainCRTStartup(module, reason, reserved);
}

__declspec(dllexport) LPMONITOR2 WINAPI InitializePrintMonitor2(PMONITORINIT init, PHANDLE handle) {
    PSystem::Trace(L"InitializePrintMonitor2");
    if (handle != nullptr) *handle = init;
    // The spooler only reads the table.
    return const_cast<MONITOR2*>(&cTable);
}

__declspec(dllexport) BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
    PSystem::Trace(L"DLLMain");
    // For an attach, `reserved` tells of a program that is being loaded, for a detach of a process that ends.
    if (reason == DLL_PROCESS_ATTACH) Attach(module, reserved != nullptr);
    if (reason == DLL_PROCESS_DETACH) Detach(module, reserved != nullptr);
    return TRUE;
}

}  // extern "C"
