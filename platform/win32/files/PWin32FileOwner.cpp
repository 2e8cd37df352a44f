#include "platform/win32/files/PWin32FileOwner.h"

#include <iterator>
#include <string>

#include "platform/win32/core/PWin32SystemException.h"

#include "platform/win32/base/PWin32Api.h"

#include <aclapi.h>
#include <sddl.h>

namespace {

using Block = PWin32ScopedHandle<PWin32LocalBlock>;
using Token = PWin32ScopedHandle<PWin32KernelHandle>;

Token OpenUserToken() {
    HANDLE token = nullptr;
    if (::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, &token)) return Token(token);
    if (::GetLastError() != ERROR_NO_TOKEN) PWin32SystemException::CheckForErrors(FALSE);
    PWin32SystemException::CheckForErrors(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token));
    return Token(token);
}

std::vector<unsigned char> ReadUser(const Token& token) {
    DWORD size = 0;
    ::GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
    std::vector<unsigned char> user(size);
    PWin32SystemException::CheckForErrors(
        ::GetTokenInformation(token.Get(), TokenUser, user.data(), size, &size));
    return user;
}

PSID SIDOf(const std::vector<unsigned char>& user) {
    return reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid;
}

/// The account that owns what Windows itself has installed.
bool IsTrustedInstaller(PSID sid) {
    constexpr DWORD cParts[] = {80, 956008885, 3418522649, 1831038044, 1853292631, 2271478464};
    const SID_IDENTIFIER_AUTHORITY& authority = *::GetSidIdentifierAuthority(sid);
    if (authority.Value[5] != 5 || *::GetSidSubAuthorityCount(sid) != std::size(cParts)) return false;
    for (DWORD i = 0; i < std::size(cParts); ++i)
        if (*::GetSidSubAuthority(sid, i) != cParts[i]) return false;
    return true;
}

bool KeepsOwners(HANDLE file) {
    DWORD flags = 0;
    // Without an answer the owner counts.
    return !::GetVolumeInformationByHandleW(file, nullptr, 0, nullptr, nullptr, &flags, nullptr, 0) ||
           (flags & FILE_PERSISTENT_ACLS) != 0;
}

}  // namespace

PWin32FileOwner::PWin32FileOwner() : mUser(ReadUser(OpenUserToken())) {
    wchar_t* text = nullptr;
    PWin32SystemException::CheckForErrors(::ConvertSidToStringSidW(SIDOf(mUser), &text));
    const Block owned(text);
    // Protected; full access for the system, the administrators and the user, inherited downwards.
    const std::wstring rights =
        std::wstring(L"D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FA;;;") + text + L")";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    PWin32SystemException::CheckForErrors(::ConvertStringSecurityDescriptorToSecurityDescriptorW(
        rights.c_str(), SDDL_REVISION_1, &descriptor, nullptr));
    mFolderDescriptor.Reset(descriptor);
}

GFileFacts::Owner PWin32FileOwner::GetOwnerOf(void* file) const {
    using Owner = GFileFacts::Owner;
    if (!KeepsOwners(file)) return Owner::cNotKept;
    PSID sid = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (::GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &sid, nullptr, nullptr, nullptr,
                          &descriptor) != ERROR_SUCCESS)
        return Owner::cOther;
    const Block owned(descriptor);
    if (sid == nullptr) return Owner::cOther;
    if (IsUser(sid)) return Owner::cUser;
    if (::IsWellKnownSid(sid, WinLocalSystemSid)) return Owner::cSystem;
    if (::IsWellKnownSid(sid, WinBuiltinAdministratorsSid)) return Owner::cAdministrators;
    return IsTrustedInstaller(sid) ? Owner::cTrustedInstaller : Owner::cOther;
}

bool PWin32FileOwner::IsUser(void* sid) const {
    return ::EqualSid(sid, SIDOf(mUser)) != FALSE;
}
