#include "examples/PrinterProcessorWin/JobText.h"

#include <algorithm>

#include "examples/PrinterProcessorWin/JsonText.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/core/PWin32Wide.h"

namespace {

std::wstring MakePrintable(const GString& text) {
    std::wstring printable(AsWide(text), static_cast<std::size_t>(text.GetLength()));
    const auto isControl = [](wchar_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); };
    std::ranges::replace_if(printable, isControl, L'?');
    return printable;
}

std::wstring Quote(const GString& text) {
    return QuoteAsJson(std::wstring_view(AsWide(text), static_cast<std::size_t>(text.GetLength())));
}

}  // namespace

std::wstring FormatAsLines(const GPPJobRecord& record, std::optional<unsigned long long> jobBytes) {
    return L"Job file: " + MakePrintable(record.GetJobPath()) + L"\nBytes: " +
           (jobBytes ? std::to_wstring(*jobBytes) : L"unknown") + L"\nUser: " +
           MakePrintable(record.GetUserName()) + L"\nPrinter: " + MakePrintable(record.GetPrinterName()) +
           L"\nPort: " + MakePrintable(record.GetPortName()) + L"\nCopies: " +
           std::to_wstring(record.GetCopyCount()) + L"\n\n";
}

std::wstring FormatAsJson(const GPPJobRecord& record, std::optional<unsigned long long> jobBytes) {
    return L"{\"JobPath\":" + Quote(record.GetJobPath()) + L",\"JobBytes\":" +
           (jobBytes ? std::to_wstring(*jobBytes) : L"null") + L",\"UserName\":" +
           Quote(record.GetUserName()) + L",\"PrinterName\":" + Quote(record.GetPrinterName()) +
           L",\"PortName\":" + Quote(record.GetPortName()) + L",\"CopyCount\":" +
           std::to_wstring(record.GetCopyCount()) + L"}\n";
}
