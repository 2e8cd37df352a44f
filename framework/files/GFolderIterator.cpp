#include "framework/files/GFolderIterator.h"

#include "framework/core/errors/GException.h"

GFolderIterator::Folder::~Folder() = default;

GFolderIterator::GFolderIterator() = default;

GFolderIterator::~GFolderIterator() = default;

void GFolderIterator::BeginIterate(const GPathName& folder) {
    mLevels.clear();
    mLevels.push_back({Open(folder)});
}

bool GFolderIterator::IsOnFolder() const {
    return !mLevels.empty() && mLevels.back().isOnEntry && mLevels.back().folder->IsFolder();
}

void GFolderIterator::BeginSubIterate() {
    if (!IsOnFolder()) throw GSimpleException(GExceptionID::cFileNotFound);
    mLevels.push_back({Open(mLevels.back().folder->GetPath())});
}

bool GFolderIterator::GoTo(bool (Folder::*step)(), GPathName& path, bool& isFolder) {
    Level& level = mLevels.back();
    level.hasBegun = true;
    level.isOnEntry = false;
    level.isOnEntry = (*level.folder.*step)();
    if (!level.isOnEntry) return false;
    path = level.folder->GetPath();
    isFolder = level.folder->IsFolder();
    return true;
}

bool GFolderIterator::GetFirstObject(GPathName& path, bool& isFolder) {
    return !mLevels.empty() && GoTo(&Folder::First, path, isFolder);
}

bool GFolderIterator::GetNextObject(GPathName& path, bool& isFolder) {
    return !mLevels.empty() && mLevels.back().isOnEntry && GoTo(&Folder::Next, path, isFolder);
}

bool GFolderIterator::GetNextFileOrFolder(GPathName& path, bool& isFolder) {
    if (mLevels.empty()) return false;
    const bool isNew = !mLevels.back().hasBegun;
    const bool goesDown = IsOnFolder() && !mLevels.back().folder->LeadsElsewhere();
    if (goesDown) BeginSubIterate();
    if (goesDown || isNew ? GetFirstObject(path, isFolder) : GetNextObject(path, isFolder)) return true;
    while (mLevels.size() > 1) {
        EndIterate();
        if (GetNextObject(path, isFolder)) return true;
    }
    return false;
}

void GFolderIterator::EndIterate() noexcept {
    if (!mLevels.empty()) mLevels.pop_back();
}
