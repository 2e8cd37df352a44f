#include "tools/quillonctl/MessagingCheck.h"

#include "framework/core/errors/GException.h"
#include "framework/ipc/GIPPrefix.h"
#include "framework/system/GSessionInfo.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "platform/win32/ipc/PWin32IPMutexImp.h"
#include "platform/win32/ipc/PWin32SharedMemory.h"
#include "tools/machine/Failure.h"

#include <aclapi.h>

namespace {

using KernelHandle = PWin32ScopedHandle<PWin32KernelHandle>;
using OpenFunction = HANDLE(WINAPI*)(DWORD access, BOOL inherit, LPCSTR name);

constexpr DWORD cMaxWaitMilliseconds = 2000;
// What the messaging itself asks for: who is refused that can neither send nor receive.
constexpr DWORD cSegmentAccess = 0xF001F;

std::wstring GetAccountName(PSID account) {
    wchar_t name[257];
    wchar_t domain[257];
    DWORD nameUnits = std::size(name);
    DWORD domainUnits = std::size(domain);
    SID_NAME_USE use = SidTypeUnknown;
    if (!::LookupAccountSidW(nullptr, account, name, &nameUnits, domain, &domainUnits, &use)) return {};
    return std::wstring(domain) + L'\\' + name;
}

std::wstring GetOwner(OpenFunction open, const GBuffer& name) {
    const KernelHandle object(open(READ_CONTROL, FALSE, name.GetPtr()));
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!object || ::GetSecurityInfo(object.Get(), SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                                     nullptr, nullptr, nullptr, &descriptor) != ERROR_SUCCESS) {
        return L"somebody";
    }
    const PWin32ScopedHandle<PWin32LocalBlock> block(descriptor);
    const std::wstring account = GetAccountName(owner);
    return account.empty() ? L"somebody" : account;
}

// An object that cannot be opened; what is not there is made by whoever needs it first.
std::wstring DescribeRefusal(DWORD error, OpenFunction open, const GBuffer& name) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return {};
        case ERROR_ACCESS_DENIED:
            return L"belongs to " + GetOwner(open, name) + L", who shuts others out.";
        case ERROR_INVALID_HANDLE:
            return L"is an object of another kind that somebody has given this name.";
        default:
            return L"cannot be opened: " + DescribeSystemError(error);
    }
}

std::wstring CheckLock(const GBuffer& name) {
    const KernelHandle lock(::OpenMutexA(MUTEX_ALL_ACCESS, FALSE, name.GetPtr()));
    if (!lock) return DescribeRefusal(::GetLastError(), ::OpenMutexA, name);
    if (::WaitForSingleObject(lock.Get(), cMaxWaitMilliseconds) == WAIT_TIMEOUT) {
        return L"has been held by another program for two seconds; it must let go or end.";
    }
    ::ReleaseMutex(lock.Get());
    return {};
}

std::wstring CheckSegment(const GBuffer& path, const GBuffer& identifier) {
    const GBuffer name = path + identifier;
    const KernelHandle mapping(::OpenFileMappingA(cSegmentAccess, FALSE, name.GetPtr()));
    if (!mapping) return DescribeRefusal(::GetLastError(), ::OpenFileMappingA, name);
    try {
        const long length = PWin32SharedMemory(path, identifier).GetLength();
        if (length >= GIPCMessageQueueMgr::cRegistryLength) return {};
        return L"has room for " + std::to_wstring(length) + L" bytes instead of " +
               std::to_wstring(GIPCMessageQueueMgr::cRegistryLength) + L"; whoever made it must end.";
    } catch (const GException& failure) {
        return L"cannot be used: " + std::wstring(AsWide(failure.GetFullDescription()));
    }
}

std::wstring Name(const GBuffer& object, const std::wstring& obstacle) {
    return obstacle.empty() ? obstacle : std::wstring(AsWide(GString(object.GetPtr()))) + L' ' + obstacle;
}

}  // namespace

std::wstring MessagingCheck::FindObstacle(GIPCMessageQueueMgr::ManagerType type) {
    const GShMemID identifier = GPPIPCManager::GetRegistryID(type);
    const GBuffer lock =
        PWin32IPMutexImp::GetMemoryPath() + GIPPrefix::AddPrefix(GIPPrefix::cSharedMemoryLock, identifier);
    std::wstring obstacle = Name(lock, CheckLock(lock));
    const GBuffer segment = GIPPrefix::AddPrefix(GIPPrefix::cSharedMemory, identifier);
    for (const long session : {GSessionInfo::GetInstance()->GetCurrentSessionID(), -1L}) {
        if (!obstacle.empty()) break;
        GBuffer path;
        GSessionInfo::GetInstance()->GetSessionPath(path, session);
        obstacle = Name(path + segment, CheckSegment(path, segment));
    }
    return obstacle;
}
