#include "tools/quillonctl/Removal.h"

#include <algorithm>
#include <string>

#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/Drivers.h"
#include "tools/quillonctl/InstallRecord.h"
#include "tools/quillonctl/LibraryFile.h"
#include "tools/quillonctl/MonitorRegistry.h"
#include "tools/quillonctl/Printers.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"

namespace {

using Kind = InstallRecord::Kind;
using Entry = InstallRecord::Entry;

void Say(const std::wstring& text) {
    Console::Write(text + L'\n');
}

// Checked before anything is touched: without its monitor such a printer would be dead.
void CheckNoForeignPrinterNeedsTheMonitor() {
    if (!InstallRecord::Contains(Kind::cMonitor, Product::cMonitorName)) return;
    std::wstring names;
    for (const PrinterInfo& printer : Printers::GetOnOurPort()) {
        if (!InstallRecord::Contains(Kind::cPrinter, printer.name)) names += L"\n  " + printer.name;
    }
    if (!names.empty()) {
        throw Failure(
            L"These printers use the port and were not added by this program. "
            L"Remove them or give them another port first:" +
            names);
    }
}

void ForgetPage(const Entry&) {}

void RemovePrinter(const Entry& entry) {
    const auto printer = Printers::Find(entry.name);
    if (printer && printer->IsOnOurPort()) {
        Printers::Remove(entry.name);
        Say(L"Removed the printer '" + entry.name + L"'.");
    } else if (printer) {
        Say(L"The printer '" + entry.name + L"' has another port by now and stays.");
    } else {
        Say(L"The printer '" + entry.name + L"' is gone already.");
    }
}

void RemoveDriver(const Entry& entry) {
    const auto printers = Printers::GetAll();
    const bool inUse = std::ranges::any_of(
        printers, [&](const PrinterInfo& printer) { return IsSameName(printer.driver, entry.name); });
    if (inUse) {
        Say(L"The printer driver '" + entry.name + L"' is used by another printer and stays.");
        return;
    }
    if (Drivers::Find(entry.name)) {
        Drivers::Remove(entry.name);
        Say(L"Removed the printer driver '" + entry.name + L"'.");
    }
    if (!entry.detail.empty()) LibraryFile::Remove(entry.detail);
}

void RemovePortKey(const Entry&) {
    MonitorRegistry::RemovePortKey();
}

void RemoveMonitor(const Entry& entry) {
    if (!MonitorRegistry::GetLibraryName()) return;
    MonitorRegistry::Unregister();
    Say(L"Removed the port monitor '" + entry.name + L"'.");
}

void RemoveLibrary(const Entry& entry) {
    const auto registered = MonitorRegistry::GetLibraryName();
    if (registered && IsSameName(LibraryFile::GetInstalledPath(*registered), entry.name)) {
        Say(L"The library " + entry.name + L" stays: the port monitor was registered by somebody else.");
        return;
    }
    if (!LibraryFile::Exists(entry.name)) return;
    if (LibraryFile::Remove(entry.name)) {
        Say(L"Removed the library " + entry.name + L".");
    } else {
        Say(L"The library " + entry.name + L" is in use; it goes with the next restart of the machine.");
    }
}

// Each thing is forgotten once it is removed, so that a failure leaves a true record.
void RemoveAll(Kind kind, void (*remove)(const Entry&)) {
    for (const Entry& entry : InstallRecord::GetEntries(kind)) {
        remove(entry);
        InstallRecord::Remove(kind, entry.name);
    }
}

}  // namespace

void Removal::Run() {
    if (InstallRecord::IsEmpty()) {
        Say(L"Nothing to remove: this program has installed nothing here.");
        return;
    }
    CheckNoForeignPrinterNeedsTheMonitor();
    RemoveAll(Kind::cPage, ForgetPage);
    RemoveAll(Kind::cPrinter, RemovePrinter);
    RemoveAll(Kind::cPortKey, RemovePortKey);
    RemoveAll(Kind::cMonitor, RemoveMonitor);
    RemoveAll(Kind::cLibrary, RemoveLibrary);
    // The spooler may hold a driver for a while after its last printer has gone; nothing else waits for that.
    RemoveAll(Kind::cDriver, RemoveDriver);
    Say(L"Done.");
}
