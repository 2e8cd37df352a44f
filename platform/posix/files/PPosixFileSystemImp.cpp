#include "platform/posix/files/PPosixFileSystemImp.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "framework/system/PSystem.h"
#include "platform/posix/core/PPosixFailure.h"

namespace fs = std::filesystem;

namespace {

GPathName FromEnvironment(const char* variable, const char* fallback) {
    const char* const value = std::getenv(variable);
    return GPathName(GString::FromUTF8(value != nullptr && *value != 0 ? value : fallback));
}

GPathName InHome(const char* leaf) {
    GPathName path = PPosixFileSystemImp::GetUserHomeFolder();
    path.Append(leaf);
    return path;
}

struct stat StatusOf(const GPathName& path) {
    struct stat status = {};
    if (::stat(AsPosixPath(path).c_str(), &status) != 0) ThrowPosixFailure(errno, path);
    return status;
}

// 0: nothing there, otherwise the type bits of the mode.
mode_t TypeOf(const GPathName& path) {
    struct stat status = {};
    if (::stat(AsPosixPath(path).c_str(), &status) == 0) return status.st_mode & S_IFMT;
    if (errno != ENOENT && errno != ENOTDIR) ThrowPosixFailure(errno, path);
    return 0;
}

GDateTime FromTime(time_t seconds) {
    struct tm utc = {};
    ::gmtime_r(&seconds, &utc);
    return GDateTime(utc.tm_mday, utc.tm_mon + 1, utc.tm_year + 1900, utc.tm_hour, utc.tm_min, utc.tm_sec, 1,
                     0, 0);
}

// What is thrown here bears both paths.
[[noreturn]] void Throw(int error, long id, const GPathName& from, const GPathName& to) {
    const GExceptionLocation location(id, from, to);
    throw GCustomException(GExceptionID::cUNIXSystemError, GString(std::strerror(error)));
}

std::error_code Rename(const GPathName& from, const GPathName& to) {
    std::error_code error;
    const bool stays = from.GetPortablePath() == to.GetPortablePath();
    if (!stays && TypeOf(to) != 0) return std::make_error_code(std::errc::file_exists);
    fs::rename(AsPosixPath(from), AsPosixPath(to), error);
    return error;
}

GPathName PartOf(const GPathName& to) {
    GPathName part(to);
    part.ReplaceLeaf(to.GetLeaf() + GString(".part") + GString(static_cast<long>(::getpid())));
    return part;
}

// What ends it midway leaves nothing under the target's name.
std::error_code Copy(const GPathName& from, const GPathName& to) {
    if (TypeOf(to) != 0) return std::make_error_code(std::errc::file_exists);
    std::error_code error;
    std::error_code ignored;
    const std::string part = AsPosixPath(PartOf(to));
    const std::string source = AsPosixPath(from);
    fs::copy_file(source, part, error);
    if (error == std::errc::file_exists) return error;  // somebody else's
    const auto changed = error ? fs::file_time_type() : fs::last_write_time(source, error);
    if (!error) fs::last_write_time(part, changed, error);
    if (!error) fs::rename(part, AsPosixPath(to), error);
    if (error) fs::remove(part, ignored);
    return error;
}

}  // namespace

GPathName PPosixFileSystemImp::GetUserHomeFolder() {
    return FromEnvironment("HOME", "/");
}
GPathName PPosixFileSystemImp::GetUserApplicationDataFolder() {
    return InHome(".local/share");
}
GPathName PPosixFileSystemImp::GetUserPreferenceFolder() {
    return InHome(".config");
}
GPathName PPosixFileSystemImp::GetDesktopFolder() {
    return InHome("Desktop");
}
GPathName PPosixFileSystemImp::GetUserDocumentsFolder() {
    return InHome("Documents");
}
GPathName PPosixFileSystemImp::GetCommonAppDataFolder() {
    return GPathName("/usr/share");
}
GPathName PPosixFileSystemImp::GetGlobalPreferenceFolder() {
    return GPathName("/etc");
}
GPathName PPosixFileSystemImp::GetSystemFolder() {
    return GPathName("/usr/lib");
}
GPathName PPosixFileSystemImp::GetGlobalSystemFolder() {
    return GPathName("/usr");
}
GPathName PPosixFileSystemImp::GetApplicationsFolder() {
    return GPathName("/usr/bin");
}
GPathName PPosixFileSystemImp::GetApplicationsFolder32() {
    return GPathName("/usr/bin");
}
GPathName PPosixFileSystemImp::GetGlobalTempFolder() {
    return FromEnvironment("TMPDIR", "/tmp");
}
GPathName PPosixFileSystemImp::GetLibraryPath() {
    return PSystem::GetDllPath();
}
GPathName PPosixFileSystemImp::GetApplicationPath() {
    return PSystem::GetApplicationPath();
}

bool PPosixFileSystemImp::FileExists(const GPathName& path) {
    const mode_t type = TypeOf(path);
    return type != 0 && type != S_IFDIR;
}

bool PPosixFileSystemImp::FolderExists(const GPathName& path) {
    return TypeOf(path) == S_IFDIR;
}

bool PPosixFileSystemImp::FileInUse(const GPathName& path) {
    return ::access(AsPosixPath(path).c_str(), R_OK) != 0;
}

long PPosixFileSystemImp::GetVolumeType(const GPathName&) {
    return 0;
}

void PPosixFileSystemImp::CreateFile(const GPathName& path, bool mustBeNew) {
    const int descriptor = ::open(AsPosixPath(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor >= 0) {
        ::close(descriptor);
    } else if (errno != EEXIST || mustBeNew || FolderExists(path)) {
        ThrowPosixFailure(errno == EEXIST && !mustBeNew ? EISDIR : errno, path);
    }
}

void PPosixFileSystemImp::CreateFolder(const GPathName& path) {
    std::error_code error;
    fs::create_directories(AsPosixPath(path), error);
    if (error && !FolderExists(path)) ThrowPosixFailure(error.value(), path);
}

void PPosixFileSystemImp::RemoveFile(const GPathName& path) {
    if (::unlink(AsPosixPath(path).c_str()) != 0) ThrowPosixFailure(errno, path);
}

void PPosixFileSystemImp::RemoveFolderOnly(const GPathName& path) {
    if (::rmdir(AsPosixPath(path).c_str()) != 0) ThrowPosixFailure(errno, path);
}

void PPosixFileSystemImp::MoveFile(const GPathName& from, const GPathName& to) {
    std::error_code error = Rename(from, to);
    if (error == std::errc::cross_device_link) {
        std::error_code ignored;
        error = Copy(from, to);
        if (!error && !fs::remove(AsPosixPath(from), error)) fs::remove(AsPosixPath(to), ignored);
    }
    if (error) Throw(error.value(), GExceptionID::cMoving, from, to);
}

void PPosixFileSystemImp::MoveFolder(const GPathName& from, const GPathName& to) {
    if (const std::error_code error = Rename(from, to)) Throw(error.value(), GExceptionID::cMoving, from, to);
}

void PPosixFileSystemImp::ReplaceFile(const GPathName& from, const GPathName& to) {
    std::error_code error;
    fs::rename(AsPosixPath(from), AsPosixPath(to), error);
    if (error) Throw(error.value(), GExceptionID::cMoving, from, to);
}

void PPosixFileSystemImp::CopyFile(const GPathName& from, const GPathName& to) {
    if (const std::error_code error = Copy(from, to)) Throw(error.value(), GExceptionID::cCopying, from, to);
}

bool PPosixFileSystemImp::IsHidden(const GPathName& path) {
    StatusOf(path);
    return path.GetLeaf()[0] == '.';
}

void PPosixFileSystemImp::SetHidden(const GPathName& path, bool hidden) {
    // Hidden is what begins with a dot here: there is nothing that could be set.
    if (IsHidden(path) != hidden) ThrowPosixFailure(ENOTSUP, path);
}

bool PPosixFileSystemImp::IsWritable(const GPathName& path) {
    return (StatusOf(path).st_mode & S_IWUSR) != 0;
}

void PPosixFileSystemImp::SetWritable(const GPathName& path, bool writable) {
    const mode_t mode = StatusOf(path).st_mode & 07777;
    const mode_t wanted =
        writable ? mode | S_IWUSR : mode & ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH);
    if (::chmod(AsPosixPath(path).c_str(), wanted) != 0) ThrowPosixFailure(errno, path);
}

GDateTime PPosixFileSystemImp::GetCreationDateTime(const GPathName& path) {
    return FromTime(StatusOf(path).st_ctime);  // the nearest that every file system has
}

GDateTime PPosixFileSystemImp::GetModificationDateTime(const GPathName& path) {
    return FromTime(StatusOf(path).st_mtime);
}
