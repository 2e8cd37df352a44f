#include "examples/PrinterProcessorWin/JobText.h"

#include <algorithm>

#include "examples/PrinterProcessorWin/JsonText.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/core/PWin32Wide.h"

namespace {

std::wstring AsStandard(const GString& text) {
    return std::wstring(AsWide(text), static_cast<std::size_t>(text.GetLength()));
}

std::wstring Quote(const GString& text) {
    return QuoteAsJson(AsStandard(text));
}

}  // namespace

std::wstring MakePrintable(std::wstring text) {
    const auto isControl = [](wchar_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); };
    std::ranges::replace_if(text, isControl, L'?');
    return text;
}

std::wstring FormatAsLines(const GPPJobRecord& record, const JobFile& file) {
    const auto line = [](const wchar_t* name, const std::wstring& value) {
        return name + (L": " + MakePrintable(value)) + L'\n';
    };
    return line(L"Job file", file.bytes ? file.path : AsStandard(record.GetJobPath())) +
           line(L"Bytes", file.bytes ? std::to_wstring(*file.bytes) : L"unknown") +
           line(L"User", AsStandard(record.GetUserName())) +
           line(L"Printer", AsStandard(record.GetPrinterName())) +
           line(L"Port", AsStandard(record.GetPortName())) +
           line(L"Copies", std::to_wstring(record.GetCopyCount())) + L'\n';
}

std::wstring FormatAsJson(const GPPJobRecord& record, const JobFile& file) {
    return L"{\"JobPath\":" + Quote(record.GetJobPath()) + L",\"JobFile\":" +
           (file.bytes ? QuoteAsJson(file.path) : L"null") + L",\"JobBytes\":" +
           (file.bytes ? std::to_wstring(*file.bytes) : L"null") + L",\"Complete\":" +
           (!file.bytes       ? L"null"
            : file.isComplete ? L"true"
                              : L"false") +
           L",\"UserName\":" + Quote(record.GetUserName()) + L",\"PrinterName\":" +
           Quote(record.GetPrinterName()) + L",\"PortName\":" + Quote(record.GetPortName()) +
           L",\"CopyCount\":" + std::to_wstring(record.GetCopyCount()) + L"}\n";
}
