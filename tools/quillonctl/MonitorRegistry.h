#pragma once

#include <optional>
#include <string>

/// MonitorRegistry: the spooler's list of port monitors, as far as our monitor and its one port are
/// concerned. Whatever the spooler refuses is thrown as a Failure.
class MonitorRegistry {
public:
    /// File name of the library that is registered for our monitor; nothing when none is.
    static std::optional<std::wstring> GetLibraryName();
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
