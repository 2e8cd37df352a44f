#include "tools/quillonctl/Status.h"

#include "platform/win32/base/PWin32Api.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/LibraryFile.h"
#include "tools/quillonctl/MonitorRegistry.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"

namespace {

StatusFacts::Library FindLibrary(const StatusFacts& facts) {
    const std::wstring registered = facts.registeredLibrary.value.value_or(Product::cLibraryName);
    StatusFacts::Library library;
    library.path =
        LibraryFile::GetInstalledPath(MonitorRegistry::GetForwardedLibraryName().value_or(registered));
    library.exists = LibraryFile::Exists(library.path);
    if (library.exists) library.version = LibraryFile::GetVersion(library.path);
    return library;
}

bool FindPort() {
    return MonitorRegistry::IsPortListed() && (!SpoolerHost::IsWine() || MonitorRegistry::HasPortKey());
}

StatusFacts::JobFolder FindJobFolder() {
    StatusFacts::JobFolder folder;
    folder.path = SpoolerHost::GetJobFolder();
    ULARGE_INTEGER freeBytes{};
    if (!::GetDiskFreeSpaceExW(folder.path.c_str(), &freeBytes, nullptr, nullptr)) {
        throw SystemFailure(L"Asking for the free space of " + folder.path);
    }
    folder.freeBytes = freeBytes.QuadPart;
    return folder;
}

std::wstring FormatMonitor(const std::optional<std::wstring>& library) {
    return library ? L"registered, " + *library : L"not registered";
}

std::wstring FormatLibrary(const StatusFacts::Library& library) {
    if (!library.exists) return library.path + L" is missing";
    return library.path + (library.version ? L", version " + *library.version : L", without a version");
}

std::wstring FormatPort(bool found) {
    return std::wstring(Product::cPortName) + (found ? L" is known to the print spooler" : L" is missing");
}

std::wstring FormatPrinters(const StatusFacts& facts) {
    std::wstring text;
    for (const PrinterInfo& printer : facts.printers.value) {
        const std::wstring page = facts.GetPageOf(printer.name);
        text += (text.empty() ? L"" : L"\n") + printer.name + L" (driver " + printer.driver + L')' +
                (page.empty() ? L"" : L", last page seen to arrive " + page);
    }
    return text.empty() ? L"none on the port" : text;
}

std::wstring FormatListeners(const std::vector<Listener>& listeners) {
    std::wstring text;
    for (const Listener& listener : listeners) {
        text += (text.empty() ? L"" : L"\n") + listener.Format();
    }
    return text.empty() ? L"none" : text;
}

std::wstring FormatJobFolder(const StatusFacts::JobFolder& folder) {
    return folder.path + L", " + FormatByteCount(folder.freeBytes) + L" free";
}

// A heading in a column of its own; further lines of the text stand under the first.
template <class T, class Write>
std::wstring FormatRow(std::wstring heading, const Answer<T>& answer, Write write) {
    constexpr std::size_t cColumnUnits = 13;
    heading.resize(cColumnUnits, L' ');
    std::wstring row = heading;
    for (const wchar_t unit : answer.IsKnown() ? write(answer.value) : L"unknown: " + answer.problem) {
        row += unit;
        if (unit == L'\n') row.append(cColumnUnits, L' ');
    }
    return row + L'\n';
}

std::wstring FormatReadiness(const StatusFacts& facts) {
    if (!facts.IsComplete()) {
        const bool isInstalled = facts.registeredLibrary.value.has_value();
        const std::wstring why = isInstalled && facts.lacksForwarding
                                     ? MonitorRegistry::cForwardingAdvice
                                     : L"'quillonctl doctor' tells what to do.";
        return L"Not ready to print.\n" + why + L'\n';
    }
    if (facts.IsReady()) return L"Ready to print.\n";
    std::wstring names;
    for (const std::wstring& name : facts.GetUntried())
        names += (names.empty() ? L"'" : L", '") + name + L'\'';
    return L"In place, but no page has been seen to arrive yet on " + names +
           L".\n'quillonctl testpage --printer NAME' tries it.\n";
}

}  // namespace

StatusFacts StatusFacts::Gather() {
    StatusFacts facts;
    facts.registeredLibrary = Ask(MonitorRegistry::GetLibraryName);
    facts.library = Ask([&] { return FindLibrary(facts); });
    facts.portFound = Ask(FindPort);
    facts.printers = Ask(Printers::GetOnOurPort);
    facts.listeners = Ask(Listeners::GetAll);
    facts.jobFolder = Ask(FindJobFolder);
    facts.pages = Ask([&] { return PageRecord::GetOf(facts.library.value.version.value_or(L"")); });
    facts.lacksForwarding = Ask(MonitorRegistry::LacksForwarding).value;
    return facts;
}

bool StatusFacts::IsComplete() const {
    return !lacksForwarding && registeredLibrary.IsKnown() && registeredLibrary.value && library.IsKnown() &&
           library.value.exists && portFound.IsKnown() && portFound.value && printers.IsKnown() &&
           !printers.value.empty();
}

std::wstring StatusFacts::GetPageOf(const std::wstring& printer) const {
    for (const ArrivedPage& page : pages.value) {
        if (IsSameName(page.printer, printer)) return page.when;
    }
    return {};
}

std::vector<std::wstring> StatusFacts::GetUntried() const {
    std::vector<std::wstring> untried;
    for (const PrinterInfo& printer : printers.value) {
        if (GetPageOf(printer.name).empty()) untried.push_back(printer.name);
    }
    return untried;
}

bool StatusFacts::IsReady() const {
    return IsComplete() && GetUntried().empty();
}

std::wstring StatusFacts::Format() const {
    return FormatRow(L"Monitor:", registeredLibrary, FormatMonitor) +
           FormatRow(L"Library:", library, FormatLibrary) + FormatRow(L"Port:", portFound, FormatPort) +
           FormatRow(L"Printers:", printers, [this](const auto&) { return FormatPrinters(*this); }) +
           FormatRow(L"Listeners:", listeners, FormatListeners) +
           FormatRow(L"Job folder:", jobFolder, FormatJobFolder) + FormatReadiness(*this);
}

std::wstring FormatByteCount(unsigned long long bytes) {
    constexpr unsigned long long cStep = 1024;
    if (bytes < cStep) return std::to_wstring(bytes) + L" bytes";
    static constexpr const wchar_t* cUnits[] = {L"KB", L"MB", L"GB", L"TB", L"PB", L"EB"};
    std::size_t unit = 0;
    unsigned long long size = cStep;
    while (bytes / size >= cStep) {
        size *= cStep;
        ++unit;
    }
    // The rest is below 2^60, so ten times it still fits.
    return std::to_wstring(bytes / size) + L'.' + std::to_wstring(bytes % size * 10 / size) + L' ' +
           cUnits[unit];
}
