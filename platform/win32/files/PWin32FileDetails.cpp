// What a file or folder is: its attributes, its dates, and which one it is.
#include <memory>

#include "framework/core/errors/GExceptionLocation.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/files/PWin32FileSystemImp.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

using FileHandle = PWin32ScopedHandle<PWin32FileHandle>;

constexpr DWORD cShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file or a folder, for what the access allows; without any it may be asked about.
FileHandle Open(const GPathName& path, DWORD access = 0) {
    return FileHandle(
        ::CreateFileW(AsWide(path.GetWin32APIPathString()), access, cShareAll, nullptr, OPEN_EXISTING,
                      FILE_FLAG_BACKUP_SEMANTICS | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr));
}

BY_HANDLE_FILE_INFORMATION GetInformation(const GPathName& path) {
    const GExceptionLocation location(path);
    const FileHandle file = Open(path);
    PWin32SystemException::CheckHandle(file.Get());
    BY_HANDLE_FILE_INFORMATION information = {};
    PWin32SystemException::CheckForErrors(::GetFileInformationByHandle(file.Get(), &information));
    return information;
}

// Of the path, or of the nearest folder above it that is there.
DWORD VolumeOf(const GPathName& path) {
    for (long count = path.GetNumberOfComponents(); count > 0; --count) {
        const GPathName part = path.GetPartialPath(count);
        if (Open(part)) return GetInformation(part).dwVolumeSerialNumber;
    }
    return GetInformation(path.GetRootPath()).dwVolumeSerialNumber;
}

FILETIME ToFileTime(const GDateTime& moment) {
    GDateTime whole(moment);
    whole.Normalize();
    SYSTEMTIME utc = {};
    utc.wYear = static_cast<WORD>(whole.GetYear());
    utc.wMonth = static_cast<WORD>(whole.GetMonth());
    utc.wDay = static_cast<WORD>(whole.GetDay());
    utc.wHour = static_cast<WORD>(whole.GetHour());
    utc.wMinute = static_cast<WORD>(whole.GetMinute());
    utc.wSecond = static_cast<WORD>(whole.GetSecond());
    FILETIME time = {};
    PWin32SystemException::CheckForErrors(::SystemTimeToFileTime(&utc, &time));
    return time;
}

void SetTimes(const GPathName& path, const GDateTime* created, const GDateTime* modified) {
    const GExceptionLocation location(path);
    const FILETIME creation = created != nullptr ? ToFileTime(*created) : FILETIME();
    const FILETIME modification = modified != nullptr ? ToFileTime(*modified) : FILETIME();
    const FileHandle file = Open(path, FILE_WRITE_ATTRIBUTES);
    PWin32SystemException::CheckHandle(file.Get());
    PWin32SystemException::CheckForErrors(::SetFileTime(file.Get(), created != nullptr ? &creation : nullptr,
                                                        nullptr,
                                                        modified != nullptr ? &modification : nullptr));
}

}  // namespace

unsigned long PWin32FileSystemImp::GetFileAttribute(const GPathName& path) {
    const GExceptionLocation location(path);
    const DWORD attributes = ::GetFileAttributesW(AsWide(path.GetWin32APIPathString()));
    PWin32SystemException::CheckForErrors(attributes != INVALID_FILE_ATTRIBUTES);
    return attributes;
}

void PWin32FileSystemImp::SetFileAttribute(const GPathName& path, unsigned long attributes) {
    const GExceptionLocation location(path);
    PWin32SystemException::CheckForErrors(::SetFileAttributesW(
        AsWide(path.GetWin32APIPathString()), attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL));
}

void PWin32FileSystemImp::SetCreationDateTime(const GPathName& path, const GDateTime& moment) {
    SetTimes(path, &moment, nullptr);
}

void PWin32FileSystemImp::SetModificationDateTime(const GPathName& path, const GDateTime& moment) {
    SetTimes(path, nullptr, &moment);
}

bool PWin32FileSystemImp::IsOnSameVolume(const GPathName& a, const GPathName& b) {
    return VolumeOf(a) == VolumeOf(b);
}

bool PWin32FileSystemImp::IsSameFileOrFolder(const GPathName& a, const GPathName& b) {
    const BY_HANDLE_FILE_INFORMATION first = GetInformation(a);
    const BY_HANDLE_FILE_INFORMATION second = GetInformation(b);
    return first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

GPathName PWin32FileSystemImp::GetUNCPath(const GPathName& path) {
    const GExceptionLocation location(path);
    const FileHandle file = Open(path);
    PWin32SystemException::CheckHandle(file.Get());
    constexpr DWORD cUnits = 32768;
    const auto native = std::make_unique<wchar_t[]>(cUnits);
    const DWORD length = ::GetFinalPathNameByHandleW(file.Get(), native.get(), cUnits, 0);
    PWin32SystemException::CheckForErrors(length > 0 && length < cUnits);
    const GString found = NameFromWide(native.get(), static_cast<long>(length));
    const GString network("\\\\?\\UNC\\");
    if (found.Find(network) != 0) return path;
    GPathName result;
    result.SetUNCPathString(GString("\\\\") + found.GetSubstring(network.GetLength(), -1));
    return result;
}
