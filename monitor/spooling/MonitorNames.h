#pragma once

/// The names under which the spooler knows the monitor. They are ASCII.
struct MonitorNames {
    /// The one port; the colon belongs to the name.
    static constexpr const char* cPort = "QuillonPDFPort:";
    static constexpr const char* cMonitor = "Quillon Port Monitor";
    static constexpr const char* cPortDescription = "Quillon PDF Port";
};
