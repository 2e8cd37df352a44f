// These take the place of the C library's calls in the whole program.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "tests/files/FailingCalls.h"

namespace {

using Kind = FailingCalls::Kind;

bool Fails(Kind kind) {
    const FailingCalls::Failure failure = FailingCalls::Next(kind);
    if (failure == FailingCalls::Failure::cNone) return false;
    errno = failure == FailingCalls::Failure::cDevice ? EIO : EXDEV;
    return true;
}

}  // namespace

extern "C" {

int rename(const char* from, const char* to) noexcept {
    return Fails(Kind::cMove) ? -1 : static_cast<int>(::syscall(SYS_rename, from, to));
}

int unlink(const char* path) noexcept {
    return Fails(Kind::cRemove) ? -1 : static_cast<int>(::syscall(SYS_unlink, path));
}

int remove(const char* path) noexcept {
    if (Fails(Kind::cRemove)) return -1;
    const long result = ::syscall(SYS_unlink, path);
    return static_cast<int>(result == 0 || errno != EISDIR ? result : ::syscall(SYS_rmdir, path));
}

int fchmod(int file, mode_t mode) noexcept {
    return Fails(Kind::cOther) ? -1 : static_cast<int>(::syscall(SYS_fchmod, file, mode));
}

ssize_t sendfile(int to, int from, off_t* offset, size_t count) noexcept {
    // What has been copied by then stays in the target.
    const ssize_t taken = ::syscall(SYS_sendfile, to, from, offset, count);
    return Fails(Kind::cOther) ? -1 : taken;
}
}
