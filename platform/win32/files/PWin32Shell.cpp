// What the shell does with files: shortcuts and the trash.
#include <memory>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/files/PWin32FileSystemImp.h"

#include "platform/win32/base/PWin32Api.h"

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

namespace {

void CheckResult(HRESULT result) {
    if (FAILED(result)) throw PWin32SystemException(static_cast<long>(result));
}

/// COM on this thread. A thread that has it already, in whatever form, keeps it.
class ComScope {
public:
    ComScope() : mResult(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {
        if (mResult != RPC_E_CHANGED_MODE) CheckResult(mResult);
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
    ~ComScope() {
        if (SUCCEEDED(mResult)) ::CoUninitialize();
    }

private:
    HRESULT mResult;
};

struct Releaser {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};

/// A shortcut in memory.
class Shortcut {
public:
    Shortcut() {
        IShellLinkW* link = nullptr;
        CheckResult(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                       reinterpret_cast<void**>(&link)));
        mLink.reset(link);
        IPersistFile* file = nullptr;
        CheckResult(mLink->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)));
        mFile.reset(file);
    }
    IShellLinkW* operator->() const { return mLink.get(); }
    IPersistFile& File() const { return *mFile; }

private:
    ComScope mCom;  // goes last
    std::unique_ptr<IShellLinkW, Releaser> mLink;
    std::unique_ptr<IPersistFile, Releaser> mFile;
};

}  // namespace

void PWin32FileSystemImp::CreateAlias(const GPathName& alias, const GPathName& target) {
    const GExceptionLocation location(alias);
    if (FileExists(alias) || FolderExists(alias)) throw PWin32SystemException(ERROR_FILE_EXISTS);
    const Shortcut link;
    CheckResult(link->SetPath(AsWide(target.GetNativePathString())));
    CheckResult(link.File().Save(AsWide(alias.GetNativePathString()), FALSE));
}

bool PWin32FileSystemImp::IsAlias(const GPathName& path) {
    GString extension = path.GetExtension();
    extension.ToLower();
    return extension == GString("lnk") && FileExists(path);
}

GPathName PWin32FileSystemImp::GetAliasTarget(const GPathName& alias) {
    const GExceptionLocation location(alias);
    const Shortcut link;
    CheckResult(link.File().Load(AsWide(alias.GetNativePathString()), STGM_READ));
    wchar_t path[MAX_PATH] = {};
    // Without SLGP_UNCPRIORITY and the like: as it was stored, whether it is there or not.
    CheckResult(link->GetPath(path, MAX_PATH, nullptr, SLGP_RAWPATH));
    return path[0] == 0 ? GPathName() : GPathName::FromNative(NameFromWide(path, ::lstrlenW(path)));
}

void PWin32FileSystemImp::MoveToTrash(const GPathName& path) {
    const GExceptionLocation location(path);
    GString native = path.GetNativePathString();
    native += static_cast<unsigned short>(0);  // a list of one path, which a second zero ends
    SHFILEOPSTRUCTW operation = {};
    operation.wFunc = FO_DELETE;
    operation.pFrom = AsWide(native);
    // What the trash cannot take stays, instead of going for good without a word.
    operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_NOERRORUI | FOF_SILENT | FOF_WANTNUKEWARNING;
    const int failure = ::SHFileOperationW(&operation);
    if (failure != 0) throw PWin32SystemException(failure);
    if (operation.fAnyOperationsAborted) throw GAbortException();
}
