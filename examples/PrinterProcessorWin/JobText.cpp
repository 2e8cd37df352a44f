#include "examples/PrinterProcessorWin/JobText.h"

#include <cwchar>
#include <iterator>

#include "examples/PrinterProcessorWin/JsonText.h"
#include "monitor/handoff/GPPJobRecord.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"

namespace {

std::wstring Quote(const GString& text) {
    return QuoteAsJson(AsStandard(text));
}

std::wstring Line(const wchar_t* name, const std::wstring& value) {
    return name + (L": " + MakePrintable(value)) + L'\n';
}

// What stands in JSON; more for people stands in Describe().
const wchar_t* GetName(ProgramResult::Outcome outcome) {
    switch (outcome) {
        case ProgramResult::cSucceeded:
            return L"succeeded";
        case ProgramResult::cFailed:
            return L"failed";
        case ProgramResult::cCrashed:
            return L"crashed";
        case ProgramResult::cNotStarted:
            return L"not started";
        case ProgramResult::cStillRunning:
            break;
    }
    return L"running";
}

// Exit codes that stand for an exception are known by their hexadecimal digits.
std::wstring DescribeCode(unsigned long code) {
    wchar_t text[20];
    std::swprintf(text, std::size(text), code > 0xFFFF ? L"0x%08lX" : L"%lu", code);
    return text;
}

std::wstring Describe(const ProgramResult& result) {
    wchar_t seconds[40];
    std::swprintf(seconds, std::size(seconds), L"%.3f s", static_cast<double>(result.milliseconds) / 1000);
    const std::wstring name = GetName(result.outcome);
    if (result.outcome == ProgramResult::cNotStarted) return name + L": " + result.problem;
    if (result.outcome == ProgramResult::cStillRunning) return name + L" for " + seconds;
    return name + L" with exit code " + DescribeCode(result.exitCode) + L" after " + seconds;
}

}  // namespace

std::wstring FormatAsLines(const GPPJobRecord& record, const JobFile& file) {
    return Line(L"Job file", file.bytes ? file.path : AsStandard(record.GetJobPath())) +
           Line(L"Bytes", file.bytes ? std::to_wstring(*file.bytes) : L"unknown") +
           Line(L"Title", file.title) +
           Line(L"Pages", file.pages ? std::to_wstring(*file.pages) : L"unknown") +
           Line(L"User", AsStandard(record.GetUserName())) +
           Line(L"Printer", AsStandard(record.GetPrinterName())) +
           Line(L"Port", AsStandard(record.GetPortName())) +
           Line(L"Copies", std::to_wstring(record.GetCopyCount())) + L'\n';
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

std::wstring FormatAsLines(const JobFile& file, const std::wstring& program, const ProgramResult& result) {
    return Line(L"Job file", file.path) + Line(L"Program", program + L' ' + Describe(result)) + L'\n';
}

std::wstring FormatAsJson(const JobFile& file, const std::wstring& program, const ProgramResult& result) {
    const bool hasEnded =
        result.outcome != ProgramResult::cNotStarted && result.outcome != ProgramResult::cStillRunning;
    const auto number = [&](unsigned long long value) {
        return hasEnded ? std::to_wstring(value) : std::wstring(L"null");
    };
    return L"{\"JobFile\":" + QuoteAsJson(file.path) + L",\"Program\":" + QuoteAsJson(program) +
           L",\"Outcome\":\"" + GetName(result.outcome) + L"\",\"ExitCode\":" + number(result.exitCode) +
           L",\"Milliseconds\":" + number(result.milliseconds) + L"}\n";
}
