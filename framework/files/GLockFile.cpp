#include "framework/files/GLockFile.h"

#include "framework/core/errors/GException.h"
#include "framework/files/GFileSystem.h"
#include "framework/system/PSystem.h"

namespace {

constexpr long cPause = 150;  // milliseconds between two tries

}  // namespace

GLockFileImp::~GLockFileImp() = default;

GLockFile::GLockFile(const GPathName& path) : mImp(GLockFileImp::Create(path)) {}

GLockFile::~GLockFile() = default;

bool GLockFile::Lock(LockType type) {
    return mImp->Lock(type);
}

void GLockFile::UnLock() {
    mImp->UnLock();
}

bool GLockFile::IsLocked(LockType type) const {
    return mImp->IsLocked(type);
}

void GLockFile::DeleteFile() {
    // Whoever holds a lock for writing holds one for reading, too.
    if (IsLocked(cReadLock)) throw GSimpleException(GExceptionID::cLockFileInUse);
    try {
        GFileSystem::RemoveFile(GetLockFileSpec());
    } catch (const GException&) {
        // Somebody else may hold it, or has removed it.
    }
}

const GPathName& GLockFile::GetLockFileSpec() const {
    return mImp->GetLockFileSpec();
}

GLockByFile::GLockByFile(const GPathName& path, GLockFile::LockType type, bool wait)
    : mLockFile(path), mType(type), mHasLock(mLockFile.Lock(type)) {
    while (wait && !mHasLock) WaitForLock(cPause);
}

GLockByFile::~GLockByFile() {
    ReleaseLock();
}

bool GLockByFile::WaitForLock(long milliseconds) {
    for (long waited = 0; !mHasLock && waited < milliseconds; waited += cPause) {
        PSystem::MilliSleep(cPause);
        mHasLock = mLockFile.Lock(mType);
    }
    return mHasLock;
}

void GLockByFile::ReleaseLock() {
    if (!mHasLock) return;
    mLockFile.UnLock();
    mHasLock = false;
}
