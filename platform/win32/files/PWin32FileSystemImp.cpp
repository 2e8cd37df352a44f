#include "platform/win32/files/PWin32FileSystemImp.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "framework/core/errors/GExceptionLocation.h"
#include "framework/system/PSystem.h"
#include "platform/win32/base/PWin32LastErrorKeeper.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

using FileHandle = PWin32ScopedHandle<PWin32FileHandle>;

[[noreturn]] void Throw(DWORD error, const GPathName& path) {
    const GExceptionLocation location(path);
    throw PWin32SystemException(static_cast<long>(error));
}

void Check(BOOL succeeded, const GPathName& path) {
    if (!succeeded) Throw(::GetLastError(), path);
}

DWORD AttributesOf(const GPathName& path) {
    return ::GetFileAttributesW(AsWide(path.GetWin32APIPathString()));
}

DWORD RequireAttributes(const GPathName& path) {
    const DWORD attributes = AttributesOf(path);
    Check(attributes != INVALID_FILE_ATTRIBUTES, path);
    return attributes;
}

// What the system answers for a path that leads to nothing.
bool MeansMissing(DWORD error) {
    constexpr DWORD cAnswers[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_DRIVE,
                                  ERROR_NOT_READY,      ERROR_BAD_NETPATH,    ERROR_BAD_NET_NAME,
                                  ERROR_INVALID_NAME,   ERROR_BAD_PATHNAME};
    return std::find(std::begin(cAnswers), std::end(cAnswers), error) != std::end(cAnswers);
}

bool IsFolder(const GPathName& path) {
    const DWORD attributes = AttributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// True as well when somebody else has made the folder meanwhile.
bool TryCreateFolder(const GPathName& path) {
    if (::CreateDirectoryW(AsWide(path.GetWin32APIPathString()), nullptr)) return true;
    const DWORD error = ::GetLastError();
    if (IsFolder(path)) return true;
    ::SetLastError(error);
    return false;
}

void SetAttribute(const GPathName& path, DWORD attribute, bool set) {
    const DWORD present = RequireAttributes(path);
    const DWORD wanted = set ? present | attribute : present & ~attribute;
    if (wanted == present) return;
    Check(::SetFileAttributesW(AsWide(path.GetWin32APIPathString()), wanted ? wanted : FILE_ATTRIBUTE_NORMAL),
          path);
}

GDateTime FromFileTime(const FILETIME& time, const GPathName& path) {
    SYSTEMTIME utc = {};
    Check(::FileTimeToSystemTime(&time, &utc), path);
    return GDateTime(utc.wDay, utc.wMonth, utc.wYear, utc.wHour, utc.wMinute, utc.wSecond, 1, 0, 0);
}

WIN32_FILE_ATTRIBUTE_DATA GetDetails(const GPathName& path) {
    WIN32_FILE_ATTRIBUTE_DATA details = {};
    Check(::GetFileAttributesExW(AsWide(path.GetWin32APIPathString()), GetFileExInfoStandard, &details),
          path);
    return details;
}

bool TryMove(const GPathName& from, const GPathName& to, DWORD flags) {
    return ::MoveFileExW(AsWide(from.GetWin32APIPathString()), AsWide(to.GetWin32APIPathString()), flags) !=
           FALSE;
}

void Move(const GPathName& from, const GPathName& to, DWORD flags) {
    const GExceptionLocation location(GExceptionID::cMoving, from, to);
    PWin32SystemException::CheckForErrors(TryMove(from, to, flags));
}

// A copy that is marked as read-only is one that can go, too.
void RemoveCopy(const GPathName& path) {
    const PWin32LastErrorKeeper keeper;
    const GString apiPath = path.GetWin32APIPathString();
    ::SetFileAttributesW(AsWide(apiPath), FILE_ATTRIBUTE_NORMAL);
    ::DeleteFileW(AsWide(apiPath));
}

// False with the last error. What ends it midway leaves nothing under the target's name: the copy gets
// that when it is whole.
bool TryCopy(const GPathName& from, const GPathName& to) {
    if (AttributesOf(to) != INVALID_FILE_ATTRIBUTES) {
        ::SetLastError(ERROR_FILE_EXISTS);
        return false;
    }
    GPathName part(to);
    part.ReplaceLeaf(to.GetLeaf() + GString(".part") + GString(::GetCurrentProcessId()));
    if (!::CopyFileW(AsWide(from.GetWin32APIPathString()), AsWide(part.GetWin32APIPathString()), TRUE)) {
        // One that was there is somebody else's.
        if (::GetLastError() != ERROR_FILE_EXISTS) RemoveCopy(part);
        return false;
    }
    if (TryMove(part, to, 0)) return true;
    RemoveCopy(part);
    return false;
}

// The root of a complete path as the drive functions take it: "C:\" or "\\server\share\". A relative
// path is on the volume of the current folder, for which these functions take a null.
GString GetVolumeRoot(const GPathName& path) {
    constexpr unsigned short cBackslash = '\\';
    if (path.IsRelative()) return GString();
    const bool isNetwork = path.GetCrossPlatformRootNameString().GetLength() > 2;
    GString root = path.GetPartialPath(isNetwork ? 1 : 0).GetWin32PathString();
    if (root[root.GetLength() - 1] != cBackslash) root += cBackslash;
    return root;
}

}  // namespace

bool PWin32FileSystemImp::FileExists(const GPathName& path) {
    const DWORD attributes = AttributesOf(path);
    if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    const DWORD error = ::GetLastError();
    if (MeansMissing(error)) return false;
    // Files that the system itself keeps open refuse even this question, but they are there.
    if (error == ERROR_SHARING_VIOLATION) return true;
    Throw(error, path);
}

bool PWin32FileSystemImp::FolderExists(const GPathName& path) {
    const DWORD attributes = AttributesOf(path);
    if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const DWORD error = ::GetLastError();
    if (!MeansMissing(error) && error != ERROR_SHARING_VIOLATION) Throw(error, path);
    return false;
}

bool PWin32FileSystemImp::FileInUse(const GPathName& path) {
    const FileHandle file(::CreateFileW(AsWide(path.GetWin32APIPathString()), GENERIC_READ, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return !file;
}

long PWin32FileSystemImp::GetVolumeType(const GPathName& path) {
    constexpr long cTypes[] = {0, 4, 5, 1, 2, 3, 6};  // by DRIVE_UNKNOWN to DRIVE_RAMDISK
    const GString root = GetVolumeRoot(path);
    const UINT drive = ::GetDriveTypeW(root.IsEmpty() ? nullptr : AsWide(root));
    return drive < std::size(cTypes) ? cTypes[drive] : 0;
}

void PWin32FileSystemImp::CreateFile(const GPathName& path, bool mustBeNew) {
    const FileHandle file(::CreateFileW(AsWide(path.GetWin32APIPathString()), GENERIC_WRITE, FILE_SHARE_READ,
                                        nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) return;
    const DWORD error = ::GetLastError();
    // A folder of that name is told by the same code.
    if (mustBeNew || error != ERROR_FILE_EXISTS || IsFolder(path)) Throw(error, path);
}

void PWin32FileSystemImp::CreateFolder(const GPathName& path) {
    if (IsFolder(path)) return;
    const long count = path.GetNumberOfComponents();
    long present = count - 1;
    while (present > 0 && !IsFolder(path.GetPartialPath(present))) --present;
    for (long depth = std::max(present + 1, 1L); depth <= count; ++depth) {
        const GPathName folder = path.GetPartialPath(depth);
        if (!TryCreateFolder(folder)) Throw(::GetLastError(), folder);
    }
    if (count < 1) Throw(ERROR_PATH_NOT_FOUND, path);  // a root that is not there
}

void PWin32FileSystemImp::RemoveFile(const GPathName& path) {
    Check(::DeleteFileW(AsWide(path.GetWin32APIPathString())), path);
}

void PWin32FileSystemImp::RemoveFolderOnly(const GPathName& path) {
    Check(::RemoveDirectoryW(AsWide(path.GetWin32APIPathString())), path);
}

void PWin32FileSystemImp::MoveFile(const GPathName& from, const GPathName& to) {
    const GExceptionLocation location(GExceptionID::cMoving, from, to);
    if (TryMove(from, to, 0)) return;
    // Only another volume makes it a copy, and only a file: the call fails alike for a folder.
    PWin32SystemException::CheckForErrors(::GetLastError() == ERROR_NOT_SAME_DEVICE);
    PWin32SystemException::CheckForErrors(TryCopy(from, to));
    if (::DeleteFileW(AsWide(from.GetWin32APIPathString()))) return;
    RemoveCopy(to);
    PWin32SystemException::CheckForErrors(FALSE);
}

void PWin32FileSystemImp::MoveFolder(const GPathName& from, const GPathName& to) {
    Move(from, to, 0);
}

void PWin32FileSystemImp::ReplaceFile(const GPathName& from, const GPathName& to) {
    Move(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

void PWin32FileSystemImp::CopyFile(const GPathName& from, const GPathName& to) {
    const GExceptionLocation location(GExceptionID::cCopying, from, to);
    PWin32SystemException::CheckForErrors(TryCopy(from, to));
}

bool PWin32FileSystemImp::IsHidden(const GPathName& path) {
    return (RequireAttributes(path) & FILE_ATTRIBUTE_HIDDEN) != 0;
}

void PWin32FileSystemImp::SetHidden(const GPathName& path, bool hidden) {
    SetAttribute(path, FILE_ATTRIBUTE_HIDDEN, hidden);
}

bool PWin32FileSystemImp::IsWritable(const GPathName& path) {
    return (RequireAttributes(path) & FILE_ATTRIBUTE_READONLY) == 0;
}

void PWin32FileSystemImp::SetWritable(const GPathName& path, bool writable) {
    SetAttribute(path, FILE_ATTRIBUTE_READONLY, !writable);
}

GDateTime PWin32FileSystemImp::GetCreationDateTime(const GPathName& path) {
    return FromFileTime(GetDetails(path).ftCreationTime, path);
}

GDateTime PWin32FileSystemImp::GetModificationDateTime(const GPathName& path) {
    return FromFileTime(GetDetails(path).ftLastWriteTime, path);
}
