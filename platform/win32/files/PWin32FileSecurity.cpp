// Who may do what with a file or folder, and whose it is.
#include "framework/core/errors/GExceptionLocation.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/files/PWin32FileOwner.h"
#include "platform/win32/files/PWin32FileSystemImp.h"

#include "platform/win32/base/PWin32Api.h"

#include <aclapi.h>
#include <sddl.h>

namespace {

using Block = PWin32ScopedHandle<PWin32LocalBlock>;

void CheckStatus(DWORD status) {
    if (status != ERROR_SUCCESS) throw PWin32SystemException(static_cast<long>(status));
}

wchar_t* Name(GString& native) {
    return const_cast<wchar_t*>(AsWide(native));
}

}  // namespace

GString PWin32FileSystemImp::GetPermissions(const GPathName& path) {
    const GExceptionLocation location(path);
    GString native = path.GetWin32APIPathString();
    PSECURITY_DESCRIPTOR found = nullptr;
    CheckStatus(::GetNamedSecurityInfoW(Name(native), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                        nullptr, nullptr, nullptr, &found));
    const Block descriptor(found);
    wchar_t* text = nullptr;
    ULONG length = 0;
    PWin32SystemException::CheckForErrors(::ConvertSecurityDescriptorToStringSecurityDescriptorW(
        found, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, &length));
    const Block textOwner(text);
    return FromWide(text, static_cast<long>(::lstrlenW(text)));
}

void PWin32FileSystemImp::SetPermissions(const GPathName& path, const GString& permissions) {
    const GExceptionLocation location(path);
    PSECURITY_DESCRIPTOR made = nullptr;
    PWin32SystemException::CheckForErrors(::ConvertStringSecurityDescriptorToSecurityDescriptorW(
        AsWide(permissions), SDDL_REVISION_1, &made, nullptr));
    const Block descriptor(made);
    BOOL present = FALSE;
    BOOL defaulted = FALSE;
    PACL list = nullptr;
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    PWin32SystemException::CheckForErrors(::GetSecurityDescriptorDacl(made, &present, &list, &defaulted));
    PWin32SystemException::CheckForErrors(::GetSecurityDescriptorControl(made, &control, &revision));
    // A text without a list would else be one that allows everybody everything.
    if (!present) throw PWin32SystemException(ERROR_INVALID_ACL);
    const DWORD inherits = (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                              : UNPROTECTED_DACL_SECURITY_INFORMATION;
    GString native = path.GetWin32APIPathString();
    CheckStatus(::SetNamedSecurityInfoW(Name(native), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inherits,
                                        nullptr, nullptr, list, nullptr));
}

bool PWin32FileSystemImp::CheckIfOwner(const GPathName& path) {
    const GExceptionLocation location(path);
    GString native = path.GetWin32APIPathString();
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR found = nullptr;
    CheckStatus(::GetNamedSecurityInfoW(Name(native), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                                        nullptr, nullptr, nullptr, &found));
    const Block descriptor(found);
    // Some systems look among the groups alone.
    if (PWin32FileOwner().IsUser(owner)) return true;
    BOOL isOwner = FALSE;
    // A group that the user belongs to, such as the administrators, may own it, too.
    PWin32SystemException::CheckForErrors(::CheckTokenMembership(nullptr, owner, &isOwner));
    return isOwner != FALSE;
}
