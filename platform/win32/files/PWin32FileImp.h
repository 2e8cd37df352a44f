#pragma once

#include <utility>

#include "framework/core/paths/GPathName.h"
#include "platform/win32/base/PWin32CriticalSection.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

struct _OVERLAPPED;

/// PWin32FileImp: one file handle, opened by a mode of GFileOpenMode.
///
/// Every failure throws PWin32SystemException with the path as location. Reading and writing name
/// their position and may run on several threads at once.
class PWin32FileImp {
public:
    explicit PWin32FileImp(const GPathName& path) : mPath(path) {}
    /// A file that has been opened elsewhere, at its start.
    PWin32FileImp(const GPathName& path, PWin32ScopedHandle<PWin32FileHandle>&& opened)
        : mPath(path), mHandle(std::move(opened)), mPointer(0) {}

    const GPathName& GetPathName() const { return mPath; }
    void Open(long mode);
    void Close() noexcept { mHandle.Reset(PWin32FileHandle::None()); }
    bool IsOpen() const noexcept { return static_cast<bool>(mHandle); }

    /// Up to `count` bytes; 0 at the end of the file.
    long Read(long long position, unsigned char* bytes, long count) const;
    /// One call of the system for all of `count`; the result is what it took. A full disk is a short
    /// count, 0 included.
    long Write(long long position, const unsigned char* bytes, long count);

    long long GetLength() const;
    void SetLength(long long length);
    void Flush();

private:
    static constexpr long long cUnknown = -1;

    _OVERLAPPED* NameUnlessThere(long long position, _OVERLAPPED& where) const noexcept;

    GPathName mPath;
    PWin32ScopedHandle<PWin32FileHandle> mHandle;
    mutable PWin32CriticalSection mLock;    // reading and writing move the handle's own pointer
    mutable long long mPointer = cUnknown;  // where that stands
};
