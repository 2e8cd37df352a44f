// Attributes, dates, identity, aliases and permissions, as far as a UNIX system has them.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/posix/core/PPosixFailure.h"
#include "platform/posix/files/PPosixFileSystemImp.h"

namespace fs = std::filesystem;

namespace {

constexpr unsigned long cReadOnly = 1;  // the only attribute of Windows that has a like here
constexpr int cOctal = 8;

struct stat StatusOf(const GPathName& path) {
    struct stat status = {};
    if (::stat(AsPosixPath(path).c_str(), &status) != 0) ThrowPosixFailure(errno, path);
    return status;
}

// Of the path, or of the nearest folder above it that is there.
dev_t VolumeOf(const GPathName& path) {
    fs::path native(AsPosixPath(path));
    struct stat status = {};
    while (::stat(native.c_str(), &status) != 0 && native.has_relative_path()) native = native.parent_path();
    return status.st_dev;
}

void Check(int result, const GPathName& path) {
    if (result != 0) ThrowPosixFailure(errno, path);
}

}  // namespace

unsigned long PPosixFileSystemImp::GetFileAttribute(const GPathName& path) {
    return IsWritable(path) ? 0 : cReadOnly;
}

void PPosixFileSystemImp::SetFileAttribute(const GPathName& path, unsigned long attributes) {
    if ((attributes & ~cReadOnly) != 0) ThrowPosixFailure(ENOTSUP, path);
    SetWritable(path, attributes == 0);
}

void PPosixFileSystemImp::SetCreationDateTime(const GPathName& path, const GDateTime&) {
    ThrowPosixFailure(ENOTSUP, path);  // no call of the system sets it
}

void PPosixFileSystemImp::SetModificationDateTime(const GPathName& path, const GDateTime& moment) {
    GDateTime whole(moment);
    whole.Normalize();
    struct tm utc = {};
    whole.GetAnsiCTm(utc);
    const struct timespec times[] = {{0, UTIME_OMIT}, {::timegm(&utc), 0}};
    Check(::utimensat(AT_FDCWD, AsPosixPath(path).c_str(), times, 0), path);
}

bool PPosixFileSystemImp::IsOnSameVolume(const GPathName& a, const GPathName& b) {
    return VolumeOf(a) == VolumeOf(b);
}

bool PPosixFileSystemImp::IsSameFileOrFolder(const GPathName& a, const GPathName& b) {
    const struct stat first = StatusOf(a);
    const struct stat second = StatusOf(b);
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

GPathName PPosixFileSystemImp::GetUNCPath(const GPathName& path) {
    StatusOf(path);
    return path;
}

void PPosixFileSystemImp::MoveToTrash(const GPathName& path) {
    ThrowPosixFailure(ENOTSUP, path);
}

void PPosixFileSystemImp::CreateAlias(const GPathName& alias, const GPathName& target) {
    Check(::symlink(AsPosixPath(target).c_str(), AsPosixPath(alias).c_str()), alias);
}

bool PPosixFileSystemImp::IsAlias(const GPathName& path) {
    std::error_code ignored;
    return fs::is_symlink(AsPosixPath(path), ignored);
}

GPathName PPosixFileSystemImp::GetAliasTarget(const GPathName& alias) {
    std::error_code error;
    const fs::path target = fs::read_symlink(AsPosixPath(alias), error);
    if (error) ThrowPosixFailure(error.value(), alias);
    return GPathName(GString::FromUTF8(target.c_str()));
}

GString PPosixFileSystemImp::GetPermissions(const GPathName& path) {
    constexpr mode_t cBits = 07777;
    char text[8];
    std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(StatusOf(path).st_mode & cBits));
    return GString(text);
}

void PPosixFileSystemImp::SetPermissions(const GPathName& path, const GString& permissions) {
    const GBuffer text = permissions.GetBuffer(GUTF8Encoding::GetInstance());
    char* end = nullptr;
    const unsigned long mode = std::strtoul(text.GetPtr(), &end, cOctal);
    if (text.IsEmpty() || *end != 0) ThrowPosixFailure(EINVAL, path);
    Check(::chmod(AsPosixPath(path).c_str(), static_cast<mode_t>(mode)), path);
}

bool PPosixFileSystemImp::CheckIfOwner(const GPathName& path) {
    return StatusOf(path).st_uid == ::geteuid();
}
