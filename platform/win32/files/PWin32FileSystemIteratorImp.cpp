#include "platform/win32/files/PWin32FileSystemIteratorImp.h"

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

/// One folder that is being gone through.
struct PWin32FileSystemIteratorImp::Level {
    explicit Level(const GPathName& path) : folder(path) {}

    // False behind the last one.
    bool First();
    bool Next();
    bool IsDots() const {
        const GString name = Name();
        return name == GString(".") || name == GString("..");
    }
    GString Name() const { return NameFromWide(entry.cFileName, ::lstrlenW(entry.cFileName)); }
    bool IsFolder() const { return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
    bool LeadsElsewhere() const { return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }
    GPathName Path() const {
        GPathName path(folder);
        path.Append(Name());
        return path;
    }

    GPathName folder;
    PWin32ScopedHandle<PWin32SearchHandle> search{};
    WIN32_FIND_DATAW entry = {};
    bool isOnEntry = false;
};

bool PWin32FileSystemIteratorImp::Level::First() {
    const GExceptionLocation location(folder);
    isOnEntry = false;
    GPathName pattern(folder);
    pattern.Append("*");
    search.Reset(::FindFirstFileW(AsWide(pattern.GetWin32APIPathString()), &entry));
    // The root of an empty volume has not even dots.
    if (!search && ::GetLastError() == ERROR_FILE_NOT_FOUND) return false;
    PWin32SystemException::CheckHandle(search.Get());
    isOnEntry = true;
    return IsDots() ? Next() : true;
}

bool PWin32FileSystemIteratorImp::Level::Next() {
    if (!search) return false;
    const GExceptionLocation location(folder);
    do {
        isOnEntry = ::FindNextFileW(search.Get(), &entry) != FALSE;
        if (!isOnEntry) {
            PWin32SystemException::CheckForErrors(::GetLastError() == ERROR_NO_MORE_FILES);
            return false;
        }
    } while (IsDots());
    return true;
}

PWin32FileSystemIteratorImp::PWin32FileSystemIteratorImp() = default;

PWin32FileSystemIteratorImp::~PWin32FileSystemIteratorImp() = default;

void PWin32FileSystemIteratorImp::BeginIterate(const GPathName& folder) {
    mLevels.clear();
    mLevels.push_back(std::make_unique<Level>(folder));
}

void PWin32FileSystemIteratorImp::BeginSubIterate() {
    if (mLevels.empty() || !mLevels.back()->isOnEntry || !mLevels.back()->IsFolder())
        throw GSimpleException(GExceptionID::cFileNotFound);
    mLevels.push_back(std::make_unique<Level>(mLevels.back()->Path()));
}

bool PWin32FileSystemIteratorImp::GetFirstObject(GPathName& path, bool& isFolder) {
    if (mLevels.empty() || !mLevels.back()->First()) return false;
    path = mLevels.back()->Path();
    isFolder = mLevels.back()->IsFolder();
    return true;
}

bool PWin32FileSystemIteratorImp::GetNextObject(GPathName& path, bool& isFolder) {
    if (mLevels.empty() || !mLevels.back()->Next()) return false;
    path = mLevels.back()->Path();
    isFolder = mLevels.back()->IsFolder();
    return true;
}

bool PWin32FileSystemIteratorImp::GetNextFileOrFolder(GPathName& path, bool& isFolder) {
    if (mLevels.empty()) return false;
    const Level& level = *mLevels.back();
    const bool goesDown = level.isOnEntry && level.IsFolder() && !level.LeadsElsewhere();
    const bool isNew = !level.search;
    if (goesDown) BeginSubIterate();
    if (goesDown || isNew ? GetFirstObject(path, isFolder) : GetNextObject(path, isFolder)) return true;
    while (mLevels.size() > 1) {
        EndIterate();
        if (GetNextObject(path, isFolder)) return true;
    }
    return false;
}

void PWin32FileSystemIteratorImp::EndIterate() noexcept {
    if (!mLevels.empty()) mLevels.pop_back();
}
