// The folders that the shell knows by number, and those of the running modules.
#include <memory>

#include "framework/system/PSystem.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/files/PWin32FileSystemImp.h"

#include "platform/win32/base/PWin32Api.h"

#include <shlobj.h>

namespace {

GPathName GetShellFolder(int folder) {
    wchar_t path[MAX_PATH] = {};
    const HRESULT result =
        ::SHGetFolderPathW(nullptr, folder | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, path);
    // S_FALSE: the number is right, but this user has no such folder.
    if (result != S_OK) throw PWin32SystemException(result == S_FALSE ? ERROR_PATH_NOT_FOUND : result);
    return GPathName::FromNative(NameFromWide(path, static_cast<long>(::lstrlenW(path))));
}

}  // namespace

GPathName PWin32FileSystemImp::GetUserApplicationDataFolder() {
    return GetShellFolder(CSIDL_APPDATA);
}
GPathName PWin32FileSystemImp::GetUserPreferenceFolder() {
    return GetShellFolder(CSIDL_APPDATA);
}
GPathName PWin32FileSystemImp::GetCommonAppDataFolder() {
    return GetShellFolder(CSIDL_COMMON_APPDATA);
}
GPathName PWin32FileSystemImp::GetGlobalPreferenceFolder() {
    return GetShellFolder(CSIDL_COMMON_APPDATA);
}
GPathName PWin32FileSystemImp::GetDesktopFolder() {
    return GetShellFolder(CSIDL_DESKTOPDIRECTORY);
}
GPathName PWin32FileSystemImp::GetUserDocumentsFolder() {
    return GetShellFolder(CSIDL_PERSONAL);
}
GPathName PWin32FileSystemImp::GetSystemFolder() {
    return GetShellFolder(CSIDL_SYSTEM);
}
GPathName PWin32FileSystemImp::GetGlobalSystemFolder() {
    return GetShellFolder(CSIDL_WINDOWS);
}
GPathName PWin32FileSystemImp::GetApplicationsFolder() {
    return GetShellFolder(CSIDL_PROGRAM_FILES);
}
GPathName PWin32FileSystemImp::GetApplicationsFolder32() {
    return GetShellFolder(CSIDL_PROGRAM_FILESX86);
}
GPathName PWin32FileSystemImp::GetUserHomeFolder() {
    return GetShellFolder(CSIDL_PROFILE);
}

GPathName PWin32FileSystemImp::GetGlobalTempFolder() {
    constexpr DWORD cUnits = 32766;
    const auto path = std::make_unique<wchar_t[]>(cUnits);
    const DWORD length = ::GetTempPathW(cUnits, path.get());
    if (length == 0 || length >= cUnits) return GPathName();
    return GPathName::FromNative(NameFromWide(path.get(), static_cast<long>(length)));
}

GPathName PWin32FileSystemImp::GetLibraryPath() {
    return PSystem::GetDllPath();
}

GPathName PWin32FileSystemImp::GetApplicationPath() {
    return PSystem::GetApplicationPath();
}
