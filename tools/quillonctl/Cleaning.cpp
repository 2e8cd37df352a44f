#include "tools/quillonctl/Cleaning.h"

#include <algorithm>
#include <span>
#include <tuple>

#include "PPlatformFiles.h"
#include "framework/core/errors/GException.h"
#include "framework/files/GFileTrust.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "receiver/JobFileName.h"
#include "tools/console/Console.h"
#include "tools/machine/Failure.h"
#include "tools/machine/SecondsSince.h"
#include "tools/quillonctl/JobList.h"
#include "tools/quillonctl/SpoolerList.h"
#include "tools/quillonctl/Status.h"

namespace {

using FileHandle = PWin32ScopedHandle<PWin32FileHandle>;
using Fault = GFileTrust::Fault;
using Opened = PFolderWalk::Opened;

/// The folder of one user and printer, entered without following a link.
class PrinterFolder {
public:
    /// Throws a GException when one of the folders is not what it should be, or may not be entered.
    PrinterFolder(const std::wstring& start, const std::wstring& user, const std::wstring& printer) {
        Opened opened = mWalk.OpenStart(GPathName::FromNative(NameFromWide(start)));
        mFinalPath = mWalk.GetFacts(opened).mFinalPath;
        mWalk.Enter(std::move(opened));
        for (const std::wstring& name : {user, printer}) Enter(NameFromWide(name));
    }

    /// Removes the file, and tells what has become of it; nothing when it is no old job file after all.
    void Clean(const std::wstring& name, long long seconds, Cleaning& result, Cleaning::File file) const {
        const Opened opened = mWalk.Open(NameFromWide(name), PFolderWalk::Purpose::cRead);
        if (opened.IsMissing()) return;
        BY_HANDLE_FILE_INFORMATION found{};
        if (!opened) {
            SetObstacle(file, static_cast<DWORD>(opened.mFailure));
        } else if (!IsJobFile(opened, name) || !::GetFileInformationByHandle(opened.mHandle.Get(), &found) ||
                   SecondsSince(found.ftLastWriteTime) < seconds) {
            return;
        } else {
            file.bytes = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
            SetObstacle(file, Remove(opened, result.isDryRun));
        }
        result.files.push_back(std::move(file));
    }

private:
    GFileFacts GetFacts(const Opened& opened) const {
        GFileFacts facts = mWalk.GetFacts(opened);
        // An administrator cleans up after everybody.
        facts.mOwner = GFileFacts::Owner::cUser;
        return facts;
    }

    void Enter(const GString& name) {
        Opened opened = mWalk.Open(name, PFolderWalk::Purpose::cEnter);
        if (!opened) mWalk.Throw(opened, name);
        const GFileFacts facts = GetFacts(opened);
        if (GFileTrust::FindFolderFault(facts, mFinalPath) != Fault::cNone)
            throw GSimpleException(GExceptionID::cCouldNotOpenFile);
        mFinalPath = facts.mFinalPath;
        mWalk.Enter(std::move(opened));
    }

    bool IsJobFile(const Opened& opened, const std::wstring& name) const {
        return GFileTrust::FindFileFault(GetFacts(opened), mFinalPath, NameFromWide(name)) == Fault::cNone;
    }

    // The very file that was looked at, under whatever name by now. Not while it can be written: the monitor
    // lets others read its file, and no more.
    static DWORD Remove(const Opened& opened, bool isDryRun) {
        const FileHandle file(
            ::ReOpenFile(opened.mHandle.Get(), DELETE, FILE_SHARE_READ, FILE_FLAG_OPEN_REPARSE_POINT));
        FILE_DISPOSITION_INFO wish{TRUE};
        if (!file) return ::GetLastError();
        if (isDryRun || ::SetFileInformationByHandle(file.Get(), FileDispositionInfo, &wish, sizeof wish))
            return ERROR_SUCCESS;
        return ::GetLastError();
    }

    static void SetObstacle(Cleaning::File& file, DWORD error) {
        if (error == ERROR_SUCCESS) return;
        file.isInUse = error == ERROR_SHARING_VIOLATION;
        file.obstacle = file.isInUse ? L"in use" : DescribeSystemError(error);
    }

    PFolderWalk mWalk;
    GPathName mFinalPath;
};

// The monitor composes the printer's name before it makes a folder of it.
std::wstring GetFolderName(const std::wstring& printer) {
    return AsStandard(FromWide(printer));
}

bool IsCandidate(const JobEntry& job, const std::vector<std::wstring>& printers, long long seconds) {
    return job.age >= seconds && !JobFileName::IsSetAside(job.user) &&
           !JobFileName::IsSetAside(job.printer) &&
           std::ranges::any_of(printers, [&](const std::wstring& printer) {
               return IsSameName(GetFolderName(printer), job.printer);
           });
}

// Those of one folder stand together.
bool ComesBefore(const JobEntry& one, const JobEntry& other) {
    return std::tie(one.user, one.printer, one.fileName) <
           std::tie(other.user, other.printer, other.fileName);
}

// Files that all lie in one folder.
void CleanFolder(const std::wstring& start, std::span<const JobEntry> jobs, long long seconds,
                 Cleaning& result) {
    Cleaning::File file;
    file.path = start + jobs[0].user + L'\\' + jobs[0].printer + L'\\';
    try {
        const PrinterFolder folder(start, jobs[0].user, jobs[0].printer);
        for (const JobEntry& job : jobs) {
            Cleaning::File found = file;
            found.path += job.fileName;
            folder.Clean(job.fileName, seconds, result, std::move(found));
        }
    } catch (const GException& failure) {
        file.obstacle = L"the folder cannot be entered. " + AsStandard(failure.GetFullDescription());
        result.files.push_back(std::move(file));
    }
}

}  // namespace

Cleaning Cleaning::Run(const std::wstring& folder, const std::vector<std::wstring>& printers,
                       long long seconds, bool isDryRun) {
    JobList list = JobList::Gather(folder);
    std::erase_if(list.jobs, [&](const JobEntry& job) { return !IsCandidate(job, printers, seconds); });
    std::ranges::sort(list.jobs, ComesBefore);
    Cleaning result;
    result.isDryRun = isDryRun;
    result.closedFolders = list.closedFolders;
    for (auto job = list.jobs.begin(); job != list.jobs.end();) {
        const auto next = std::find_if_not(job, list.jobs.end(), [&](const JobEntry& other) {
            return other.user == job->user && other.printer == job->printer;
        });
        CleanFolder(folder, std::span(job, next), seconds, result);
        job = next;
    }
    return result;
}

bool Cleaning::IsDone() const {
    return std::ranges::all_of(files, [](const File& file) { return file.obstacle.empty() || file.isInUse; });
}

std::wstring Cleaning::Format() const {
    const wchar_t* const done = isDryRun ? L"Would remove " : L"Removed ";
    std::wstring text;
    unsigned long long bytes = 0;
    std::size_t count = 0;
    for (const File& file : files) {
        const bool isKept = !file.obstacle.empty();
        text += (isKept ? L"Kept " : done) + MakePrintable(file.path) +
                (isKept ? L": " + file.obstacle : L"") + L'\n';
        if (isKept) continue;
        bytes += file.bytes;
        ++count;
    }
    if (closedFolders > 0)
        text += L"Folders that could not be looked into: " + std::to_wstring(closedFolders) + L'\n';
    return text + done + std::to_wstring(count) + (count == 1 ? L" job file, " : L" job files, ") +
           FormatByteCount(bytes) + L".\n";
}
