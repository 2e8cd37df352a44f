#include "platform/win32/files/PWin32FileImp.h"

#include <mutex>
#include <utility>

#include "framework/core/errors/GExceptionLocation.h"
#include "framework/files/GFileOpenMode.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

// The path is put into an exception only when one is thrown: a write must not pay for it.
[[noreturn]] void ThrowLastError(const GPathName& path) {
    const DWORD error = ::GetLastError();
    const GExceptionLocation location(path);
    throw PWin32SystemException(static_cast<long>(error));
}

DWORD AccessOf(long mode) {
    DWORD access = 0;
    if (mode & GFileOpenMode::cRead) access |= GENERIC_READ;
    if (mode & GFileOpenMode::cWrite) access |= GENERIC_WRITE;
    return access;
}

DWORD SharingOf(long mode) {
    if (!(mode & GFileOpenMode::cAllowWriters)) return FILE_SHARE_READ;
    return mode & GFileOpenMode::cAllowReaders ? FILE_SHARE_READ | FILE_SHARE_WRITE : FILE_SHARE_WRITE;
}

DWORD DispositionOf(long mode) {
    if (mode & GFileOpenMode::cStartEmpty) return CREATE_ALWAYS;
    return mode & GFileOpenMode::cCreate ? OPEN_ALWAYS : OPEN_EXISTING;
}

// Emptying a hidden or system file is refused unless the call names the attributes that it has. Of
// the others some have the same bits as flags of the call and would be taken for them.
DWORD AttributesFor(const wchar_t* path) {
    constexpr DWORD cKept = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                            FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    const DWORD present = ::GetFileAttributesW(path);
    const DWORD kept = present == INVALID_FILE_ATTRIBUTES ? 0 : present & cKept;
    return kept != 0 ? kept : FILE_ATTRIBUTE_NORMAL;
}

}  // namespace

void PWin32FileImp::Open(long mode) {
    Close();
    const GString apiPath = mPath.GetWin32APIPathString();
    const DWORD through = mode & GFileOpenMode::cWriteThrough ? FILE_FLAG_WRITE_THROUGH : 0;
    // Should the path lead to a pipe, its server learns who this is but may not act as it.
    const DWORD flags =
        AttributesFor(AsWide(apiPath)) | through | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION;
    mHandle.Reset(::CreateFileW(AsWide(apiPath), AccessOf(mode), SharingOf(mode), nullptr,
                                DispositionOf(mode), flags, nullptr));
    if (!mHandle) ThrowLastError(mPath);
    mPointer = 0;
}

/// A transfer that names its position costs a call of the system more, and a stream's is where the last one
/// has ended.
OVERLAPPED* PWin32FileImp::NameUnlessThere(long long position, OVERLAPPED& where) const noexcept {
    where.Offset = static_cast<DWORD>(position);
    where.OffsetHigh = static_cast<DWORD>(position >> 32);
    return std::exchange(mPointer, cUnknown) == position ? nullptr : &where;
}

long PWin32FileImp::Read(long long position, unsigned char* bytes, long count) const {
    const std::lock_guard<PWin32CriticalSection> lock(mLock);
    OVERLAPPED where = {};
    DWORD taken = 0;
    if (!::ReadFile(mHandle.Get(), bytes, static_cast<DWORD>(count), &taken,
                    NameUnlessThere(position, where))) {
        const DWORD error = ::GetLastError();
        if (error != ERROR_HANDLE_EOF && error != ERROR_BROKEN_PIPE) ThrowLastError(mPath);
        return 0;
    }
    mPointer = position + taken;
    return static_cast<long>(taken);
}

long PWin32FileImp::Write(long long position, const unsigned char* bytes, long count) {
    const std::lock_guard<PWin32CriticalSection> lock(mLock);
    OVERLAPPED where = {};
    DWORD taken = 0;
    if (!::WriteFile(mHandle.Get(), bytes, static_cast<DWORD>(count), &taken,
                     NameUnlessThere(position, where))) {
        const DWORD error = ::GetLastError();
        if (error != ERROR_DISK_FULL && error != ERROR_HANDLE_DISK_FULL) ThrowLastError(mPath);
        return static_cast<long>(taken);
    }
    mPointer = position + taken;
    return static_cast<long>(taken);
}

long long PWin32FileImp::GetLength() const {
    // Devices and pipes have no length, and asking for it fails.
    if (::GetFileType(mHandle.Get()) != FILE_TYPE_DISK) return 0;
    LARGE_INTEGER length = {};
    if (!::GetFileSizeEx(mHandle.Get(), &length)) ThrowLastError(mPath);
    return length.QuadPart;
}

void PWin32FileImp::SetLength(long long length) {
    FILE_END_OF_FILE_INFO end = {};
    end.EndOfFile.QuadPart = length;
    if (!::SetFileInformationByHandle(mHandle.Get(), FileEndOfFileInfo, &end, sizeof end))
        ThrowLastError(mPath);
}

void PWin32FileImp::Flush() {
    if (!::FlushFileBuffers(mHandle.Get())) ThrowLastError(mPath);
}
