#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "framework/core/errors/GException.h"
#include "framework/files/GLockFileImp.h"
#include "platform/posix/core/PPosixFailure.h"
#include "platform/posix/files/PPosixFileSystemImp.h"

namespace {

/// A lock that is an advisory one of the system on an open file, which every opening takes for itself.
class PPosixLockFileImp : public GLockFileImp {
public:
    explicit PPosixLockFileImp(const GPathName& path) : mPath(path) {}
    ~PPosixLockFileImp() override { Close(); }

    bool Lock(LockType type) override;
    void UnLock() override { Close(); }
    bool IsLocked(LockType type) const override { return mType != cNone && mType >= type; }
    const GPathName& GetLockFileSpec() const override { return mPath; }

private:
    int Open(LockType type) const;
    [[noreturn]] void Throw() const;
    void Close() noexcept;

    GPathName mPath;
    LockType mType = cNone;
    int mDescriptor = -1;
};

int PPosixLockFileImp::Open(LockType type) const {
    const std::string path = AsPosixPath(mPath);
    const int access = (type == cReadLock ? O_RDONLY : O_WRONLY) | O_CLOEXEC;
    const int descriptor = ::open(path.c_str(), access);
    return descriptor < 0 && errno == ENOENT ? ::open(path.c_str(), access | O_CREAT, 0666) : descriptor;
}

bool PPosixLockFileImp::Lock(LockType type) {
    if (mType != cNone) return false;
    // The system would lock a folder, too.
    if (PPosixFileSystemImp::FolderExists(mPath)) Throw();
    mDescriptor = Open(type);
    if (mDescriptor < 0) {
        if (errno == ENOENT || errno == ENOTDIR) throw GSimpleException(GExceptionID::cCouldNotLock);
        Throw();
    }
    if (::flock(mDescriptor, (type == cReadLock ? LOCK_SH : LOCK_EX) | LOCK_NB) != 0) {
        Close();
        return false;
    }
    mType = type;
    return true;
}

void PPosixLockFileImp::Throw() const {
    throw GCustomException(GExceptionID::cCouldNotLock, mPath.GetNativePathString());
}

void PPosixLockFileImp::Close() noexcept {
    if (mDescriptor >= 0) ::close(mDescriptor);
    mDescriptor = -1;
    mType = cNone;
}

}  // namespace

GLockFileImp* GLockFileImp::Create(const GPathName& path) {
    return new PPosixLockFileImp(path);
}
