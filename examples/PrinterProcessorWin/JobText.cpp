#include "examples/PrinterProcessorWin/JobText.h"

#include "examples/PrinterProcessorWin/JsonText.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"

namespace {

std::wstring Quote(const GString& text) {
    return QuoteAsJson(AsStandard(text));
}

}  // namespace

std::wstring FormatAsLines(const GPPJobRecord& record, const JobFile& file) {
    const auto line = [](const wchar_t* name, const std::wstring& value) {
        return name + (L": " + MakePrintable(value)) + L'\n';
    };
    return line(L"Job file", file.bytes ? file.path : AsStandard(record.GetJobPath())) +
           line(L"Bytes", file.bytes ? std::to_wstring(*file.bytes) : L"unknown") +
           line(L"Title", file.title) +
           line(L"Pages", file.pages ? std::to_wstring(*file.pages) : L"unknown") +
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
           L",\"Title\":" + (file.title.empty() ? L"null" : QuoteAsJson(file.title)) + L",\"Pages\":" +
           (file.pages ? std::to_wstring(*file.pages) : L"null") + L",\"UserName\":" +
           Quote(record.GetUserName()) + L",\"PrinterName\":" + Quote(record.GetPrinterName()) +
           L",\"PortName\":" + Quote(record.GetPortName()) + L",\"CopyCount\":" +
           std::to_wstring(record.GetCopyCount()) + L"}\n";
}
