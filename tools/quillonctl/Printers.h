#pragma once

#include <optional>
#include <string>
#include <vector>

/// A printer as the spooler lists it. A pooled printer has several ports.
struct PrinterInfo {
    std::wstring name;
    std::vector<std::wstring> ports;
    std::wstring driver;
    unsigned long status = 0;      // PRINTER_STATUS_...
    unsigned long attributes = 0;  // PRINTER_ATTRIBUTE_...

    bool IsOnOurPort() const;
};

/// Printers: this machine's own printers. Whatever the spooler refuses is thrown as a Failure.
class Printers {
public:
    static std::vector<PrinterInfo> GetAll();
    static std::vector<PrinterInfo> GetOnOurPort();
    /// Nothing when there is none of that name, whatever its case.
    static std::optional<PrinterInfo> Find(const std::wstring& name);

    /// Adds a printer on our port.
    static void Add(const std::wstring& name, const std::wstring& driver);
    static void Remove(const std::wstring& name);
};

/// The single names of a list with commas between them, without blanks around them.
std::vector<std::wstring> SplitPortList(const std::wstring& ports);
