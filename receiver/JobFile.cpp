#include "receiver/JobFile.h"

#include <atomic>
#include <cstring>
#include <utility>
#include <vector>

#include "framework/core/errors/GException.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "receiver/JobFileName.h"
#include "receiver/JobPathRules.h"
#include "tools/machine/Failure.h"
#include "tools/machine/JobComments.h"

namespace {

using FileHandle = PWin32ScopedHandle<PWin32FileHandle>;

// A file may be taken over on one thread and handed out on another.
unsigned long GetNextNumber() {
    static std::atomic<unsigned long> sNumber = 0;
    return ++sNumber;
}

/// Not taken, and why.
JobFile Refuse(const std::wstring& path, const std::wstring& reason) {
    JobFile file;
    file.problem = path + reason;
    return file;
}

std::wstring WithoutShortNames(const std::wstring& path) {
    std::wstring full(32768, L'\0');
    const DWORD units = ::GetLongPathNameW(path.c_str(), full.data(), static_cast<DWORD>(full.size()));
    if (units == 0 || units >= full.size()) return path;
    full.resize(units);
    return full;
}

// Without the prefix \\?\; a path on another machine keeps a part of it and is then no plain path.
std::wstring GetFinalPath(const FileHandle& file) {
    constexpr std::size_t cPrefixUnits = 4;
    std::wstring path(32768, L'\0');
    const DWORD units =
        ::GetFinalPathNameByHandleW(file.Get(), path.data(), static_cast<DWORD>(path.size()), 0);
    if (units <= cPrefixUnits || units >= path.size()) return {};
    return path.substr(cPrefixUnits, units - cPrefixUnits);
}

std::wstring GetFinalFolder(const std::wstring& folder) {
    const FileHandle handle(::CreateFileW(folder.c_str(), 0,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    const std::wstring path = handle ? GetFinalPath(handle) : std::wstring();
    return path.empty() ? folder : path;
}

// A server behind the path, should there be one after all, learns who asks and cannot act in his name.
FileHandle Open(const std::wstring& path, DWORD access) {
    constexpr DWORD cFlags = FILE_FLAG_OPEN_REPARSE_POINT | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION;
    // Without write sharing this fails as long as the monitor has the file open.
    return FileHandle(
        ::CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, OPEN_EXISTING, cFlags, nullptr));
}

// A job is announced while its file is still open: the monitor waits for the message to be taken, and
// closes the file only then. Whoever reads a job file needs this loop around the opening.
FileHandle OpenOnceClosed(const std::wstring& path, DWORD waitMilliseconds) {
    constexpr DWORD cRetryMilliseconds = 20;
    for (DWORD waited = 0;; waited += cRetryMilliseconds) {
        FileHandle file = Open(path, GENERIC_READ | DELETE);
        if (file || ::GetLastError() != ERROR_SHARING_VIOLATION || waited >= waitMilliseconds) return file;
        ::Sleep(cRetryMilliseconds);
    }
}

// What was opened may be another file than the path said: a link, or something below one.
bool IsWhatWasMeant(const FileHandle& file, const std::wstring& folder) {
    BY_HANDLE_FILE_INFORMATION facts{};
    if (::GetFileType(file.Get()) != FILE_TYPE_DISK || !::GetFileInformationByHandle(file.Get(), &facts) ||
        (facts.dwFileAttributes & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        return false;
    }
    const std::wstring path = GetFinalPath(file);
    return JobPathRules::IsPlain(path) &&
           (folder.empty() || JobPathRules::IsBelow(path, GetFinalFolder(folder)));
}

bool Rename(const FileHandle& file, const std::wstring& path) {
    std::vector<unsigned char> memory(sizeof(FILE_RENAME_INFO) + path.size() * sizeof(wchar_t));
    auto* const wish = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
    wish->FileNameLength = static_cast<DWORD>(path.size() * sizeof(wchar_t));
    std::memcpy(wish->FileName, path.data(), wish->FileNameLength);
    return ::SetFileInformationByHandle(file.Get(), FileRenameInfo, wish, static_cast<DWORD>(memory.size()));
}

// Gives the file a marked name with that number, or with the next ones where there is such a file. The new
// path; empty, with the last error set, when the file keeps its name.
std::wstring Mark(const FileHandle& file, const std::wstring& path, std::wstring_view word,
                  unsigned long& number) {
    const std::wstring process = std::to_wstring(::GetCurrentProcessId()) + L'-';
    for (;; number = GetNextNumber()) {
        const std::wstring own = JobFileName::Mark(path, word, process + std::to_wstring(number));
        if (own.empty()) ::SetLastError(ERROR_FILENAME_EXCED_RANGE);
        if (own.empty() || Rename(file, own)) return own;
        const DWORD error = ::GetLastError();
        if (error != ERROR_ALREADY_EXISTS && error != ERROR_FILE_EXISTS) return {};
    }
}

// The same open file once more, for who closes what he has read.
FileHandle Duplicate(const FileHandle& file) {
    HANDLE copy = INVALID_HANDLE_VALUE;
    const HANDLE process = ::GetCurrentProcess();
    ::DuplicateHandle(process, file.Get(), process, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS);
    return FileHandle(copy);
}

void ReadComments(FileHandle file, const std::wstring& path, JobFile& taken) {
    try {
        const GPostScriptComments comments = ReadJobComments(std::move(file), path);
        taken.isComplete = comments.isComplete;
        taken.title = AsStandard(comments.title);
        if (comments.pages >= 0) taken.pages = comments.pages;
        if (!taken.isComplete && taken.problem.empty()) {
            taken.problem = path + L" has no %%EOF at its end: the job may have been cancelled.";
        }
    } catch (const GException& failure) {
        taken.problem = AsStandard(failure.GetFullDescription());
    }
}

JobFile TakeOpen(FileHandle file, const std::wstring& path, const std::wstring& folder) {
    LARGE_INTEGER size{};
    if (!IsWhatWasMeant(file, folder) || !::GetFileSizeEx(file.Get(), &size)) {
        return Refuse(path, L" leads to something else than a job file; it was not read.");
    }
    JobFile taken;
    taken.number = GetNextNumber();
    taken.path = Mark(file, path, JobFileName::cWaiting, taken.number);
    const bool isOurs = !taken.path.empty();
    if (!isOurs) {
        taken.path = path;
        taken.problem = path + L" keeps its name, so the next job of this title overwrites it: " +
                        DescribeSystemError(::GetLastError());
    }
    taken.bytes = static_cast<unsigned long long>(size.QuadPart);
    ReadComments(Duplicate(file), path, taken);
    if (isOurs) taken.hold = std::move(file);
    return taken;
}

}  // namespace

JobFile JobFile::Take(const std::wstring& path, const std::wstring& folder, unsigned long waitMilliseconds) {
    if (!JobPathRules::IsPlain(path) || !JobPathRules::IsOnLocalDrive(path)) {
        return Refuse(path, L" is no plain path on a drive of this machine; it was not opened.");
    }
    if (!folder.empty() && !JobPathRules::IsBelow(WithoutShortNames(path), WithoutShortNames(folder))) {
        return Refuse(path, L" is not below " + folder + L"; it was not opened.");
    }
    FileHandle file = OpenOnceClosed(path, waitMilliseconds);
    // Whoever may not change the file can still read it.
    if (!file && ::GetLastError() == ERROR_ACCESS_DENIED) file = Open(path, GENERIC_READ);
    if (file) return TakeOpen(std::move(file), path, folder);
    const DWORD error = ::GetLastError();
    JobFile refused = Refuse(path, L" cannot be opened: " + DescribeSystemError(error));
    refused.isInUse = error == ERROR_SHARING_VIOLATION;
    return refused;
}

bool JobFile::HandOut() {
    if (!hold) return true;
    const std::wstring own = Mark(hold, path, JobFileName::cTaken, number);
    if (own.empty()) {
        problem =
            path + L" keeps its name, so it is left for later: " + DescribeSystemError(::GetLastError());
        return false;
    }
    path = own;
    hold = {};
    return true;
}
