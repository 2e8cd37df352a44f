#include "platform/posix/files/PPosixFileImp.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "framework/files/GFileOpenMode.h"
#include "platform/posix/core/PPosixFailure.h"
#include "platform/posix/files/PPosixFileSystemImp.h"

namespace {

int FlagsOf(long mode) {
    int flags = O_CLOEXEC;
    const bool reads = (mode & GFileOpenMode::cRead) != 0;
    if ((mode & GFileOpenMode::cWrite) != 0) {
        flags |= reads ? O_RDWR : O_WRONLY;
    } else {
        flags |= O_RDONLY;
    }
    if ((mode & (GFileOpenMode::cCreate | GFileOpenMode::cStartEmpty)) != 0) flags |= O_CREAT;
    if ((mode & GFileOpenMode::cStartEmpty) != 0) flags |= O_TRUNC;
    if ((mode & GFileOpenMode::cWriteThrough) != 0) flags |= O_DSYNC;
    return flags;
}

}  // namespace

void PPosixFileImp::Open(long mode) {
    Close();
    // A folder can be opened for reading here, but is not a file.
    if (PPosixFileSystemImp::FolderExists(mPath)) ThrowPosixFailure(EISDIR, mPath);
    mDescriptor = ::open(AsPosixPath(mPath).c_str(), FlagsOf(mode), 0666);
    if (mDescriptor < 0) ThrowPosixFailure(errno, mPath);
}

void PPosixFileImp::Close() noexcept {
    if (mDescriptor >= 0) ::close(mDescriptor);
    mDescriptor = -1;
}

long PPosixFileImp::Read(long long position, unsigned char* bytes, long count) const {
    const ssize_t taken = ::pread(mDescriptor, bytes, static_cast<size_t>(count), position);
    if (taken < 0) ThrowPosixFailure(errno, mPath);
    return static_cast<long>(taken);
}

long PPosixFileImp::Write(long long position, const unsigned char* bytes, long count) {
    const ssize_t taken = ::pwrite(mDescriptor, bytes, static_cast<size_t>(count), position);
    if (taken >= 0) return static_cast<long>(taken);
    if (errno != ENOSPC) ThrowPosixFailure(errno, mPath);
    return 0;
}

long long PPosixFileImp::GetLength() const {
    struct stat status = {};
    if (::fstat(mDescriptor, &status) != 0) ThrowPosixFailure(errno, mPath);
    return S_ISREG(status.st_mode) ? status.st_size : 0;
}

void PPosixFileImp::SetLength(long long length) {
    if (::ftruncate(mDescriptor, length) != 0) ThrowPosixFailure(errno, mPath);
}

void PPosixFileImp::Flush() {
    if (::fsync(mDescriptor) != 0) ThrowPosixFailure(errno, mPath);
}
