#include "tools/quillonctl/PrintQueue.h"

#include "platform/win32/base/PWin32ScopedHandle.h"
#include "tools/machine/SecondsSince.h"
#include "tools/quillonctl/SpoolerList.h"

#include <winspool.h>

namespace {

long long GetAge(const JOB_INFO_2W& job) {
    FILETIME submitted{};
    return ::SystemTimeToFileTime(&job.Submitted, &submitted) ? SecondsSince(submitted) : 0;
}

}  // namespace

std::vector<QueuedJob> PrintQueue::GetJobs(const std::wstring& printer) {
    std::wstring name = printer;
    HANDLE opened = nullptr;
    if (!::OpenPrinterW(name.data(), &opened, nullptr))
        throw SystemFailure(L"Opening the printer '" + printer + L"'");
    const PWin32ScopedHandle<PWin32PrinterHandle> handle(opened);
    const SpoolerList<JOB_INFO_2W> records(
        L"jobs of '" + printer + L"'", [&](BYTE* buffer, DWORD size, DWORD* needed, DWORD* count) {
            return ::EnumJobsW(handle.Get(), 0, MAXDWORD, 2, buffer, size, needed, count);
        });
    std::vector<QueuedJob> jobs;
    for (const JOB_INFO_2W& record : records) {
        // What is printed and kept on the printer's wish waits for nothing.
        if ((record.Status & (JOB_STATUS_PRINTED | JOB_STATUS_DELETED)) != 0) continue;
        jobs.push_back({record.JobId, TextOrEmpty(record.pDocument), TextOrEmpty(record.pUserName),
                        Describe(record.Status), GetAge(record)});
    }
    return jobs;
}

std::wstring PrintQueue::Describe(unsigned long status) {
    static constexpr struct {
        unsigned long flag;
        const wchar_t* word;
    } cWords[] = {
        {JOB_STATUS_PAUSED, L"paused"},
        {JOB_STATUS_ERROR, L"error"},
        {JOB_STATUS_DELETING, L"being deleted"},
        {JOB_STATUS_SPOOLING, L"being spooled"},
        {JOB_STATUS_PRINTING, L"being printed"},
        {JOB_STATUS_OFFLINE, L"printer offline"},
        {JOB_STATUS_BLOCKED_DEVQ, L"blocked by its driver"},
        {JOB_STATUS_USER_INTERVENTION, L"needs somebody's attention"},
        {JOB_STATUS_RESTART, L"restarted"},
    };
    std::wstring words;
    for (const auto& row : cWords) {
        if ((status & row.flag) != 0) words += (words.empty() ? L"" : L", ") + std::wstring(row.word);
    }
    return words;
}
