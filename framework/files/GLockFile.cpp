#include "framework/files/GLockFile.h"

#include "framework/core/errors/GException.h"
#include "framework/core/time/PTime.h"
#include "framework/files/GFileSystem.h"
#include "framework/system/PSystem.h"

namespace {

constexpr long cPause = 150;  // milliseconds between two tries
// Of a wait that has an end: short, since one who takes the lock again and again leaves it free for moments
// only, and who looks seldom would never meet one.
constexpr long cShortPause = 5;

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
    while (wait && !mHasLock) {
        PSystem::MilliSleep(cPause);
        mHasLock = mLockFile.Lock(type);
    }
}

GLockByFile::~GLockByFile() {
    ReleaseLock();
}

bool GLockByFile::WaitForLock(long milliseconds) {
    const std::uint32_t start = PTime::GetTickCount();
    const auto waited = [start] { return static_cast<long>(PTime::GetTickCount() - start); };
    while (!mHasLock && waited() < milliseconds) {
        PSystem::MilliSleep(cShortPause);
        mHasLock = mLockFile.Lock(mType);
    }
    return mHasLock;
}

void GLockByFile::ReleaseLock() {
    if (!mHasLock) return;
    mLockFile.UnLock();
    mHasLock = false;
}
