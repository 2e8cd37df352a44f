#include "platform/win32/files/PWinLockFileImp.h"

#include "framework/core/errors/GException.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

void* OpenLock(const GString& path, GLockFileImp::LockType type, DWORD disposition) {
    const bool reads = type == GLockFileImp::cReadLock;
    // Should the path lead to a pipe, its server learns who this is but may not act as it.
    return ::CreateFileW(AsWide(path), reads ? GENERIC_READ : GENERIC_WRITE, reads ? FILE_SHARE_READ : 0,
                         nullptr, disposition,
                         FILE_ATTRIBUTE_NORMAL | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr);
}

// A file that is about to go refuses even this question. One that answers it, and a name that is free,
// are refused for good: a holder is told by another code.
bool IsRefusedForGood(const GString& path) {
    return ::GetFileAttributesW(AsWide(path)) != INVALID_FILE_ATTRIBUTES ||
           ::GetLastError() == ERROR_FILE_NOT_FOUND;
}

}  // namespace

GLockFileImp* GLockFileImp::Create(const GPathName& path) {
    return new PWinLockFileImp(path);
}

/// The system's error, 0 when the lock is taken.
unsigned long PWinLockFileImp::Open(LockType type) {
    const GString path = mPath.GetWin32APIPathString();
    // Asking to make it, too, would fail where this user may only read.
    mHandle.Reset(OpenLock(path, type, OPEN_EXISTING));
    if (!mHandle && ::GetLastError() == ERROR_FILE_NOT_FOUND)
        mHandle.Reset(OpenLock(path, type, OPEN_ALWAYS));
    return mHandle ? ERROR_SUCCESS : ::GetLastError();
}

bool PWinLockFileImp::Lock(LockType type) {
    if (mHandle) return false;
    unsigned long error = Open(type);
    if (error == ERROR_ACCESS_DENIED && IsRefusedForGood(mPath.GetWin32APIPathString())) {
        // Between the two calls a file that was about to go may have gone.
        error = Open(type);
        if (error == ERROR_ACCESS_DENIED) Throw();
    }
    if (mHandle) {
        mType = type;
        return true;
    }
    switch (error) {
        case ERROR_SUCCESS:
        case ERROR_ACCESS_DENIED:
        case ERROR_BAD_UNIT:
        case ERROR_SHARING_VIOLATION:
            return false;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_PATHNAME:
            throw GSimpleException(GExceptionID::cCouldNotLock);
        default:
            Throw();
    }
}

void PWinLockFileImp::Throw() const {
    throw GCustomException(GExceptionID::cCouldNotLock, mPath.GetNativePathString());
}

void PWinLockFileImp::UnLock() {
    mHandle.Reset(PWin32FileHandle::None());
    mType = cNone;
}

bool PWinLockFileImp::IsLocked(LockType type) const {
    return mType != cNone && mType >= type;
}
