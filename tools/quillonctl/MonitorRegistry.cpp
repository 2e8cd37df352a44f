#include "tools/quillonctl/MonitorRegistry.h"

#include "monitor/spooling/MonitorNames.h"
#include "tools/machine/MachineKey.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"

#include <winspool.h>

namespace {

constexpr bool IsSameText(const wchar_t* wide, const char* narrow) {
    while (*wide != 0 && *wide == static_cast<wchar_t>(*narrow)) {
        ++wide;
        ++narrow;
    }
    return *wide == static_cast<wchar_t>(*narrow);
}

static_assert(IsSameText(Product::cMonitorName, MonitorNames::cMonitor));
static_assert(IsSameText(Product::cPortName, MonitorNames::cPort));

GString GetMonitorKeyPath() {
    return GString("System\\CurrentControlSet\\Control\\Print\\Monitors\\") + GString(MonitorNames::cMonitor);
}

GString GetPortsKeyPath() {
    return GetMonitorKeyPath() + GString("\\Ports");
}

GString GetPortKeyPath() {
    return GetPortsKeyPath() + GString("\\") + GString(MonitorNames::cPort);
}

}  // namespace

std::optional<std::wstring> MonitorRegistry::GetLibraryName() {
    const SpoolerList<MONITOR_INFO_2W> monitors(
        L"port monitors", [](BYTE* buffer, DWORD size, DWORD* needed, DWORD* count) {
            return ::EnumMonitorsW(nullptr, 2, buffer, size, needed, count);
        });
    for (const MONITOR_INFO_2W& monitor : monitors) {
        if (IsSameName(TextOrEmpty(monitor.pName), Product::cMonitorName)) {
            return TextOrEmpty(monitor.pDLLName);
        }
    }
    return std::nullopt;
}

std::optional<std::wstring> MonitorRegistry::GetForwardedLibraryName() {
    if (!SpoolerHost::IsWine()) return std::nullopt;
    return MachineKey::GetText(MachineKey::Open(GetMonitorKeyPath()), "RealDriver");
}

bool MonitorRegistry::LacksForwarding() {
    return SpoolerHost::IsWine() && !GetForwardedLibraryName();
}

void MonitorRegistry::Register() {
    std::wstring name = Product::cMonitorName;
    std::wstring environment = Product::cEnvironment;
    std::wstring library = Product::cLibraryName;
    MONITOR_INFO_2W monitor{name.data(), environment.data(), library.data()};
    // A library that loads but hands out no function table fails without a number of its own.
    ::SetLastError(ERROR_INVALID_PRINT_MONITOR);
    if (!::AddMonitorW(nullptr, 2, reinterpret_cast<BYTE*>(&monitor))) {
        throw SystemFailure(L"Registering the port monitor");
    }
}

void MonitorRegistry::Unregister() {
    // The spooler lets go of the port some seconds after its last printer is gone.
    constexpr DWORD cWaitMilliseconds = 10000;
    constexpr DWORD cRetryMilliseconds = 250;
    std::wstring name = Product::cMonitorName;
    for (DWORD waited = 0; !::DeleteMonitorW(nullptr, nullptr, name.data()); waited += cRetryMilliseconds) {
        if (::GetLastError() != ERROR_PRINT_MONITOR_IN_USE || waited >= cWaitMilliseconds) {
            throw SystemFailure(L"Removing the port monitor's registration");
        }
        ::Sleep(cRetryMilliseconds);
    }
}

bool MonitorRegistry::IsPortListed() {
    const SpoolerList<PORT_INFO_1W> ports(L"ports",
                                          [](BYTE* buffer, DWORD size, DWORD* needed, DWORD* count) {
                                              return ::EnumPortsW(nullptr, 1, buffer, size, needed, count);
                                          });
    for (const PORT_INFO_1W& port : ports) {
        if (IsSameName(TextOrEmpty(port.pName), Product::cPortName)) return true;
    }
    return false;
}

bool MonitorRegistry::HasPortKey() {
    return MachineKey::Open(GetPortKeyPath()).Exists();
}

void MonitorRegistry::AddPortKey() {
    MachineKey::Make(GetPortKeyPath());
}

void MonitorRegistry::RemovePortKey() {
    if (MachineKey::RemoveIfEmpty(GetPortKeyPath())) MachineKey::RemoveIfEmpty(GetPortsKeyPath());
}
