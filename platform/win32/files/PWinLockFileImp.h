#pragma once

#include "framework/core/paths/GPathName.h"
#include "framework/files/GLockFileImp.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

/// PWinLockFileImp: a lock that is an open file, which lets others read with it or shares nothing.
class PWinLockFileImp : public GLockFileImp {
public:
    explicit PWinLockFileImp(const GPathName& path) : mPath(path) {}

    bool Lock(LockType type) override;
    void UnLock() override;
    bool IsLocked(LockType type) const override;
    const GPathName& GetLockFileSpec() const override { return mPath; }

private:
    unsigned long Open(LockType type);
    [[noreturn]] void Throw() const;

    GPathName mPath;
    LockType mType = cNone;
    PWin32ScopedHandle<PWin32FileHandle> mHandle;
};
