#include "platform/win32/files/PWin32FileSystemIteratorImp.h"

#include "framework/core/errors/GExceptionLocation.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

class Win32Folder : public GFolderIterator::Folder {
public:
    explicit Win32Folder(const GPathName& path) : mPath(path) {}

    bool First() override;
    bool Next() override;
    GPathName GetPath() const override {
        GPathName path(mPath);
        path.Append(Name());
        return path;
    }
    bool IsFolder() const override { return Has(FILE_ATTRIBUTE_DIRECTORY); }
    bool LeadsElsewhere() const override { return Has(FILE_ATTRIBUTE_REPARSE_POINT); }

private:
    bool Has(DWORD attribute) const { return (mEntry.dwFileAttributes & attribute) != 0; }
    GString Name() const { return NameFromWide(mEntry.cFileName, ::lstrlenW(mEntry.cFileName)); }
    bool IsDots() const {
        const GString name = Name();
        return name == GString(".") || name == GString("..");
    }

    GPathName mPath;
    PWin32ScopedHandle<PWin32SearchHandle> mSearch{};
    WIN32_FIND_DATAW mEntry = {};
};

bool Win32Folder::First() {
    const GExceptionLocation location(mPath);
    GPathName pattern(mPath);
    pattern.Append("*");
    mSearch.Reset(::FindFirstFileW(AsWide(pattern.GetWin32APIPathString()), &mEntry));
    // The root of an empty volume has not even dots.
    if (!mSearch && ::GetLastError() == ERROR_FILE_NOT_FOUND) return false;
    PWin32SystemException::CheckHandle(mSearch.Get());
    return !IsDots() || Next();
}

bool Win32Folder::Next() {
    const GExceptionLocation location(mPath);
    do {
        if (!::FindNextFileW(mSearch.Get(), &mEntry)) {
            PWin32SystemException::CheckForErrors(::GetLastError() == ERROR_NO_MORE_FILES);
            return false;
        }
    } while (IsDots());
    return true;
}

}  // namespace

std::unique_ptr<GFolderIterator::Folder> PWin32FileSystemIteratorImp::Open(const GPathName& path) const {
    return std::make_unique<Win32Folder>(path);
}
