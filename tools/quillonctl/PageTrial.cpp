#include "tools/quillonctl/PageTrial.h"

#include <algorithm>

#include "monitor/spooling/JobPath.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/JobComments.h"
#include "tools/machine/SpoolerHost.h"
#include "tools/quillonctl/LibraryFile.h"
#include "tools/quillonctl/PageRecord.h"
#include "tools/quillonctl/PrintQueue.h"
#include "tools/quillonctl/Product.h"
#include "tools/quillonctl/TestPage.h"

namespace {

using Outcome = PageTrial::Outcome;

void Say(const std::wstring& text) {
    Console::Write(text + L'\n');
}

/// Where the file of a page must come: as the monitor puts it together, but in the spooler's folder.
struct Place {
    explicit Place(const TestPage& page) {
        const JobPath path(FromWide(page.printer), FromWide(page.title));
        folder = SpoolerHost::GetJobFolder();
        for (const GString& name : path.GetFolders()) folder += AsStandard(name) + L'\\';
        stem = AsStandard(path.GetFileName());
        stem.resize(stem.size() - std::wstring_view(L".ps").size());
    }
    std::wstring folder;
    std::wstring stem;
};

// The first such file, or nothing.
std::wstring FindFile(const std::wstring& folder, const std::wstring& stem) {
    WIN32_FIND_DATAW entry{};
    const PWin32ScopedHandle<PWin32SearchHandle> search(
        ::FindFirstFileW((folder + stem + L"*.ps").c_str(), &entry));
    return search ? folder + entry.cFileName : std::wstring();
}

// The monitor lets nobody else write while it does. A driver that makes no PostScript leaves no other sign.
bool IsClosed(const std::wstring& path) {
    return static_cast<bool>(PWin32ScopedHandle<PWin32FileHandle>(
        ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                      FILE_FLAG_OPEN_REPARSE_POINT, nullptr)));
}

bool IsWhole(const std::wstring& path) {
    const auto comments = TryReadJobComments(path);
    return comments && (comments->isComplete || (!comments->isPostScript && IsClosed(path)));
}

void Remember(const TestPage& page) {
    try {
        const std::wstring path = LibraryFile::GetInstalledPath(Product::cLibraryName);
        PageRecord::Add(page.printer, LibraryFile::GetVersion(path).value_or(L""));
    } catch (const Failure& failure) {
        Console::WriteError(L"'status' will not know of this page. " + failure.GetText() + L'\n');
    }
}

std::wstring DescribeQueue(const TestPage& page) {
    try {
        const std::vector<QueuedJob> jobs = PrintQueue::GetJobs(page.printer);
        const auto job = std::ranges::find(jobs, page.job, &QueuedJob::number);
        if (job == jobs.end()) return L"The job has left the printer's queue.";
        return L"The job still waits in the printer's queue" +
               (job->state.empty() ? L"." : L": " + job->state + L'.');
    } catch (const Failure& failure) {
        return L"The printer's queue cannot be looked into. " + failure.GetText();
    }
}

void Explain(const TestPage& page, const Place& place, long seconds) {
    Console::WriteError(
        L"No job file has come within " + std::to_wstring(seconds) + L" seconds. Looked for:\n  " +
        place.folder + place.stem + L".ps\n" + DescribeQueue(page) +
        L"\nEither the page was not printed, or a processing application has taken its file away by now.\n"
        L"'quillonctl doctor' looks for the cause.\n");
}

}  // namespace

Outcome PageTrial::WaitForFile(const std::wstring& folder, const std::wstring& stem, long seconds,
                               std::wstring& path) {
    constexpr ULONGLONG cMillisecondsInSecond = 1000;
    constexpr DWORD cPauseMilliseconds = 50;
    const ULONGLONG end = ::GetTickCount64() + static_cast<ULONGLONG>(seconds) * cMillisecondsInSecond;
    for (;;) {
        const bool isLastLook = ::GetTickCount64() >= end;
        // A file that has gone meanwhile has been renamed, and is found at the next look.
        const std::wstring found = FindFile(folder, stem);
        if (!found.empty()) path = found;
        if (!found.empty() && IsWhole(found)) return Outcome::cArrived;
        if (isLastLook) return path.empty() ? Outcome::cMissing : Outcome::cIncomplete;
        ::Sleep(cPauseMilliseconds);
    }
}

bool PageTrial::Run(const std::wstring& printer, long seconds) {
    const TestPage page = TestPage::Print(printer);
    Say(L"Printed '" + page.title + L"' on '" + page.printer + L"' as job " + std::to_wstring(page.job) +
        L'.');
    const Place place(page);
    if (seconds == 0) {
        Say(L"Its file comes to " + place.folder + L"; not waited for.");
        return true;
    }
    std::wstring path;
    switch (WaitForFile(place.folder, place.stem, seconds, path)) {
        case Outcome::cArrived:
            Say(L"It has arrived: " + path);
            Remember(page);
            return true;
        case Outcome::cIncomplete:
            Console::WriteError(L"Its file is there, but has no end after " + std::to_wstring(seconds) +
                                L" seconds: " + path + L'\n' + DescribeQueue(page) + L'\n');
            return false;
        default:
            Explain(page, place, seconds);
            return false;
    }
}
