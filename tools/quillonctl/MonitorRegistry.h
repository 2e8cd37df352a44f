#pragma once

#include <optional>
#include <string>

/// MonitorRegistry: the spooler's list of port monitors, as far as our monitor and its one port are
/// concerned. Whatever the spooler refuses is thrown as a Failure.
class MonitorRegistry {
public:
    /// File name of the library that is registered for our monitor; nothing when none is.
    static std::optional<std::wstring> GetLibraryName();
    /// Under Wine, the file name of the library that a forwarding monitor, registered in the place of ours,
    /// hands all calls to; nothing when none is. Wine's spooler leaves out the printer's name, without which
    /// no job is taken.
    static std::optional<std::wstring> GetForwardedLibraryName();
    /// Whether this is Wine and no forwarding monitor is there, so that no job can be printed.
    static bool LacksForwarding();
    static constexpr const wchar_t* cForwardingAdvice =
        L"Wine's spooler keeps the printer's name from a port monitor, so that printing fails with error 6,\n"
        L"unless a forwarding monitor supplies it: see \"Under Wine\" in docs/quillonctl.md.";
    /// Registers the monitor: the spooler loads the library from the system folder at once.
    static void Register();
    static void Unregister();

    /// Whether the spooler lists our port: the library was loaded and answered.
    static bool IsPortListed();

    /// The key by which Wine's spooler finds the monitor of the port.
    static bool HasPortKey();
    static void AddPortKey();
    static void RemovePortKey();
};
