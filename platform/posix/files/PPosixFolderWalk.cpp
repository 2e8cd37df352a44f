#include "platform/posix/files/PPosixFolderWalk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/posix/core/PPosixFailure.h"

namespace {

std::string Bytes(const GString& name) {
    return name.GetBuffer(GUTF8Encoding::GetInstance()).GetPtr();
}

GFileFacts::Kind KindOf(mode_t mode) {
    if (S_ISDIR(mode)) return GFileFacts::Kind::cFolder;
    return S_ISREG(mode) ? GFileFacts::Kind::cFile : GFileFacts::Kind::cDevice;
}

GFileFacts::Owner OwnerOf(uid_t user) {
    if (user == ::geteuid()) return GFileFacts::Owner::cUser;
    return user == 0 ? GFileFacts::Owner::cSystem : GFileFacts::Owner::cOther;
}

GPathName FinalPathOf(int descriptor) {
    std::error_code ignored;
    const auto link = std::filesystem::path("/proc/self/fd") / std::to_string(descriptor);
    return GPathName(GString::FromUTF8(std::filesystem::read_symlink(link, ignored).c_str()));
}

// A pipe without a reader or writer must not keep the caller waiting.
int FlagsFor(PPosixFolderWalk::Purpose purpose) {
    switch (purpose) {
        case PPosixFolderWalk::Purpose::cWrite:
            return O_WRONLY | O_NONBLOCK;
        case PPosixFolderWalk::Purpose::cWriteThrough:
            return O_WRONLY | O_NONBLOCK | O_DSYNC;
        case PPosixFolderWalk::Purpose::cRead:
            return O_RDONLY | O_NONBLOCK;
        default:
            return O_PATH;
    }
}

}  // namespace

bool PPosixFolderWalk::Opened::IsMissing() const noexcept {
    return mFailure == ENOENT;
}

void PPosixFolderWalk::Opened::Close() noexcept {
    if (mDescriptor >= 0) ::close(mDescriptor);
    mDescriptor = -1;
}

PPosixFolderWalk::Opened PPosixFolderWalk::OpenStart(const GPathName& path) const {
    Opened start;
    start.mDescriptor = ::open(AsPosixPath(path).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (!start) ThrowPosixFailure(errno, path);
    return start;
}

bool PPosixFolderWalk::MakeFolder(const GString& name) const {
    if (::mkdirat(mFolders.back().mDescriptor, Bytes(name).c_str(), 0700) == 0) return true;
    if (errno != EEXIST) ThrowPosixFailure(errno, GPathName(name));
    return false;
}

PPosixFolderWalk::Opened PPosixFolderWalk::Open(const GString& name, Purpose purpose) const {
    const int flags = FlagsFor(purpose) | O_NOFOLLOW | O_CLOEXEC;
    const int folder = mFolders.back().mDescriptor;
    Opened opened;
    if (purpose == Purpose::cWrite || purpose == Purpose::cWriteThrough)
        opened.mDescriptor = ::openat(folder, Bytes(name).c_str(), flags | O_CREAT | O_EXCL, 0666);
    opened.mIsNew = static_cast<bool>(opened);
    if (!opened) opened.mDescriptor = ::openat(folder, Bytes(name).c_str(), flags);
    opened.mFailure = opened ? 0 : errno;
    return opened;
}

void PPosixFolderWalk::Throw(const Opened& nothing, const GString& name) const {
    ThrowPosixFailure(nothing.mFailure, GPathName(name));
}

PPosixFolderWalk::Renamed PPosixFolderWalk::Rename(const GString& name, const GString& newName) const {
    const int folder = mFolders.back().mDescriptor;
    if (::renameat2(folder, Bytes(name).c_str(), folder, Bytes(newName).c_str(), RENAME_NOREPLACE) == 0)
        return Renamed::cDone;
    if (errno == ENOENT) return Renamed::cMissing;
    if (errno != EEXIST) ThrowPosixFailure(errno, GPathName(name));
    return Renamed::cTaken;
}

GFileFacts PPosixFolderWalk::GetFacts(const Opened& object) const {
    GFileFacts facts;
    struct stat status = {};
    if (!object || ::fstat(object.mDescriptor, &status) != 0) return facts;
    facts.mKind = KindOf(status.st_mode);
    facts.mOwner = OwnerOf(status.st_uid);
    facts.mIsReparsePoint = S_ISLNK(status.st_mode);
    facts.mLinkCount = static_cast<std::int32_t>(status.st_nlink);
    facts.mFinalPath = FinalPathOf(object.mDescriptor);
    return facts;
}

std::unique_ptr<PPosixFileImp> PPosixFolderWalk::TakeFile(Opened&& file, const GPathName& path) {
    return std::make_unique<PPosixFileImp>(path, std::exchange(file.mDescriptor, -1));
}
