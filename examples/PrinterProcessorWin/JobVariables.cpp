#include "examples/PrinterProcessorWin/JobVariables.h"

#include <algorithm>
#include <cstdio>

#include "framework/core/paths/GPathName.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "receiver/JobFileName.h"

namespace {

struct Field {
    const char* variable;
    const wchar_t* environment;
    GString (*get)(const Job&);
};

GString AsString(const std::wstring& text) {
    return NameFromWide(text.data(), static_cast<long>(text.size()));
}

GString GetJobPath(const Job& job) {
    return AsString(job.file.path);
}
GString GetJobName(const Job& job) {
    return AsString(JobFileName::GetTitle(job.file.path));
}
GString GetPrinter(const Job& job) {
    return job.record.GetPrinterName();
}
GString GetUser(const Job& job) {
    return job.record.GetUserName();
}
GString GetPort(const Job& job) {
    return job.record.GetPortName();
}
GString GetCopies(const Job& job) {
    return GString(job.record.GetCopyCount());
}

constexpr Field cFields[] = {
    {"%JobPath%", L"QUILLON_JOB_PATH", GetJobPath}, {"%JobName%", L"QUILLON_JOB_NAME", GetJobName},
    {"%UserName%", L"QUILLON_USER_NAME", GetUser},  {"%PrinterName%", L"QUILLON_PRINTER_NAME", GetPrinter},
    {"%PortName%", L"QUILLON_PORT_NAME", GetPort},  {"%CopyCount%", L"QUILLON_COPY_COUNT", GetCopies},
};

GString MakeHarmless(GString value) {
    constexpr long cNoLimit = 0;
    constexpr unsigned short cReplacement = '_';
    GPathName::CreateValidFileName(value, cNoLimit, cReplacement);
    std::wstring text = AsWide(value);
    std::ranges::replace(text, L'%', L'_');
    if (text.front() == L'-' || text.front() == L'@') text.front() = L'_';
    return AsString(text);
}

}  // namespace

JobVariables::JobVariables(const Job& job) : GVariableMgr(true, cAll), mJob(job) {}

std::vector<std::pair<std::wstring, std::wstring>> JobVariables::GetEnvironment() const {
    const auto breaksOut = [](wchar_t unit) { return unit < L' ' || unit == L'"'; };
    std::vector<std::pair<std::wstring, std::wstring>> environment;
    for (const Field& field : cFields) {
        const GString value = field.get(mJob);
        std::wstring text(AsWide(value), static_cast<std::size_t>(value.GetLength()));
        std::ranges::replace_if(text, breaksOut, L'_');
        environment.emplace_back(field.environment, std::move(text));
    }
    return environment;
}

void JobVariables::GetUserName(GString& value) const {
    value = MakeHarmless(GetUser(mJob));
}

void JobVariables::GetCurrentDocumentName(GString& value) const {
    value = MakeHarmless(GetJobName(mJob));
}

// The moment, the process and its job: a process number comes again, but not within a second.
void JobVariables::GetUniqueID(GString& value) const {
    char text[80];
    SYSTEMTIME now;
    ::GetSystemTime(&now);
    std::snprintf(text, sizeof text, "%04u%02u%02u-%02u%02u%02u-%lu-%lu", now.wYear, now.wMonth, now.wDay,
                  now.wHour, now.wMinute, now.wSecond, ::GetCurrentProcessId(), mJob.file.number);
    value = text;
}

bool JobVariables::GetCustomVariable(const GString& name, GString& value) const {
    for (const Field& field : cFields) {
        if (name != GString(field.variable)) continue;
        value = field.get == &GetJobPath ? GetJobPath(mJob) : MakeHarmless(field.get(mJob));
        return true;
    }
    return false;
}
