#include "tools/quillonctl/Printers.h"

#include <algorithm>

#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/SpoolerList.h"

#include <winspool.h>

namespace {

using PrinterHandle = PWin32ScopedHandle<PWin32PrinterHandle>;

std::wstring TrimBlanks(const std::wstring& text) {
    const std::size_t first = text.find_first_not_of(L' ');
    if (first == std::wstring::npos) return {};
    return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

}  // namespace

bool PrinterInfo::IsOnOurPort() const {
    return std::ranges::any_of(ports,
                               [](const std::wstring& port) { return IsSameName(port, Product::cPortName); });
}

std::vector<PrinterInfo> Printers::GetAll() {
    const SpoolerList<PRINTER_INFO_2W> records(
        L"printers", [](BYTE* buffer, DWORD size, DWORD* needed, DWORD* count) {
            return ::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, buffer, size, needed, count);
        });
    std::vector<PrinterInfo> printers;
    for (const PRINTER_INFO_2W& record : records) {
        printers.push_back({TextOrEmpty(record.pPrinterName), SplitPortList(TextOrEmpty(record.pPortName)),
                            TextOrEmpty(record.pDriverName), record.Status, record.Attributes});
    }
    return printers;
}

std::vector<PrinterInfo> Printers::GetOnOurPort() {
    std::vector<PrinterInfo> printers = GetAll();
    std::erase_if(printers, [](const PrinterInfo& printer) { return !printer.IsOnOurPort(); });
    return printers;
}

std::optional<PrinterInfo> Printers::Find(const std::wstring& name) {
    for (PrinterInfo& printer : GetAll()) {
        if (IsSameName(printer.name, name)) return std::move(printer);
    }
    return std::nullopt;
}

void Printers::Add(const std::wstring& name, const std::wstring& driver) {
    std::wstring printerName = name;
    std::wstring driverName = driver;
    std::wstring port = Product::cPortName;
    std::wstring processor = L"winprint";
    std::wstring dataType = L"RAW";
    PRINTER_INFO_2W record{};
    record.pPrinterName = printerName.data();
    record.pPortName = port.data();
    record.pDriverName = driverName.data();
    record.pPrintProcessor = processor.data();
    record.pDatatype = dataType.data();
    const PrinterHandle printer(::AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&record)));
    if (!printer) throw SystemFailure(L"Adding the printer '" + name + L"'");
}

void Printers::Remove(const std::wstring& name) {
    std::wstring printerName = name;
    PRINTER_DEFAULTSW defaults{nullptr, nullptr, PRINTER_ALL_ACCESS};
    HANDLE handle = nullptr;
    if (!::OpenPrinterW(printerName.data(), &handle, &defaults)) {
        throw SystemFailure(L"Opening the printer '" + name + L"'");
    }
    const PrinterHandle printer(handle);
    if (!::DeletePrinter(printer.Get())) throw SystemFailure(L"Removing the printer '" + name + L"'");
}

std::vector<std::wstring> SplitPortList(const std::wstring& ports) {
    std::vector<std::wstring> names;
    for (std::size_t start = 0; start <= ports.size();) {
        const std::size_t comma = std::min(ports.find(L',', start), ports.size());
        std::wstring name = TrimBlanks(ports.substr(start, comma - start));
        if (!name.empty()) names.push_back(std::move(name));
        start = comma + 1;
    }
    return names;
}
