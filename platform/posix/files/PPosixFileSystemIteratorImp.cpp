#include "platform/posix/files/PPosixFileSystemIteratorImp.h"

#include <system_error>

#include "platform/posix/core/PPosixFailure.h"

namespace fs = std::filesystem;

void PPosixFileSystemIteratorImp::BeginIterate(const GPathName& folder) {
    mLevels.clear();
    mLevels.push_back({folder, {}});
}

bool PPosixFileSystemIteratorImp::IsOnFolder() const {
    return !mLevels.empty() && mLevels.back().isOnEntry && mLevels.back().entries->is_directory();
}

void PPosixFileSystemIteratorImp::BeginSubIterate() {
    if (!IsOnFolder()) throw GSimpleException(GExceptionID::cFileNotFound);
    const std::string path = mLevels.back().entries->path().string();
    mLevels.push_back({GPathName(GString::FromUTF8(path.c_str())), {}});
}

bool PPosixFileSystemIteratorImp::Take(GPathName& path, bool& isFolder) {
    Level& level = mLevels.back();
    level.isOnEntry = level.entries != fs::directory_iterator();
    if (!level.isOnEntry) return false;
    path = GPathName(GString::FromUTF8(level.entries->path().c_str()));
    isFolder = level.entries->is_directory();
    return true;
}

bool PPosixFileSystemIteratorImp::GetFirstObject(GPathName& path, bool& isFolder) {
    if (mLevels.empty()) return false;
    Level& level = mLevels.back();
    std::error_code error;
    level.entries = fs::directory_iterator(AsPosixPath(level.folder), error);
    level.hasBegun = true;
    if (error) ThrowPosixFailure(error.value(), level.folder);
    return Take(path, isFolder);
}

bool PPosixFileSystemIteratorImp::GetNextObject(GPathName& path, bool& isFolder) {
    if (mLevels.empty() || !mLevels.back().isOnEntry) return false;
    std::error_code error;
    mLevels.back().entries.increment(error);
    if (error) ThrowPosixFailure(error.value(), mLevels.back().folder);
    return Take(path, isFolder);
}

bool PPosixFileSystemIteratorImp::GetNextFileOrFolder(GPathName& path, bool& isFolder) {
    if (mLevels.empty()) return false;
    const bool isNew = !mLevels.back().hasBegun;
    const bool goesDown = IsOnFolder() && !mLevels.back().entries->is_symlink();
    if (goesDown) BeginSubIterate();
    if (goesDown || isNew ? GetFirstObject(path, isFolder) : GetNextObject(path, isFolder)) return true;
    while (mLevels.size() > 1) {
        EndIterate();
        if (GetNextObject(path, isFolder)) return true;
    }
    return false;
}

void PPosixFileSystemIteratorImp::EndIterate() noexcept {
    if (!mLevels.empty()) mLevels.pop_back();
}
