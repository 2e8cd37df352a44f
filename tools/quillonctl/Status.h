#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/quillonctl/Answer.h"
#include "tools/quillonctl/Listeners.h"
#include "tools/quillonctl/PageRecord.h"
#include "tools/quillonctl/Printers.h"

/// StatusFacts: what `status` tells about this machine.
struct StatusFacts {
    struct Library {
        std::wstring path;
        bool exists = false;
        std::optional<std::wstring> version;
    };
    struct JobFolder {
        std::wstring path;
        unsigned long long freeBytes = 0;  // what the asking user may still write
    };

    Answer<std::optional<std::wstring>> registeredLibrary;  // file name; nothing: no such monitor
    Answer<Library> library;
    Answer<bool> portFound;  // the spooler lists the port and finds the monitor by it
    Answer<std::vector<PrinterInfo>> printers;
    Answer<std::vector<Listener>> listeners;
    Answer<JobFolder> jobFolder;
    Answer<std::vector<ArrivedPage>> pages;  // that this version of the library has written
    bool lacksForwarding = false;            // see MonitorRegistry

    /// Asks the system. A question that fails leaves its reason in place of the answer.
    static StatusFacts Gather();
    /// Whether everything that a job needs is there; a listener is not needed.
    bool IsComplete() const;
    /// Whether, on top of that, a page of each printer was seen to arrive.
    bool IsReady() const;
    /// The printers of which no page was.
    std::vector<std::wstring> GetUntried() const;
    /// When the last page of that printer has arrived; empty when none has.
    std::wstring GetPageOf(const std::wstring& printer) const;
    /// A page of lines for the administrator, ending in a line end.
    std::wstring Format() const;
    /// The same for programs: one JSON object, ending in a line end.
    std::wstring FormatAsJson() const;
};

/// A count of bytes in the largest unit of 1024 that leaves at least one, with one digit behind the
/// point, cut: "512 bytes", "1.5 GB".
std::wstring FormatByteCount(unsigned long long bytes);
