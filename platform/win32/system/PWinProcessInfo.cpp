#include "platform/win32/system/PWinProcessInfo.h"

#include <memory>

#include "framework/system/PSystem.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32SystemException.h"
#include "platform/win32/core/PWin32Wide.h"

#include "platform/win32/base/PWin32Api.h"

#define SECURITY_WIN32
#include <psapi.h>
#include <security.h>
#include <tlhelp32.h>
#include <wtsapi32.h>

namespace {

constexpr DWORD cPathUnits = 32766;

// Calls `visit(entry)` for every process of a snapshot until it returns false.
template <class Visitor>
void VisitSnapshot(Visitor visit) {
    const PWin32ScopedHandle<PWin32FileHandle> snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PWin32SystemException::CheckHandle(snapshot.Get());
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    BOOL more = ::Process32FirstW(snapshot.Get(), &entry);
    while (more && visit(entry)) more = ::Process32NextW(snapshot.Get(), &entry);
}

// The leaf of a process's program file; empty for a process that may not be opened.
GString GetImageLeaf(DWORD processID, wchar_t* path) {
    const PWin32ScopedHandle<PWin32KernelHandle> process(
        ::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processID));
    if (!process) return GString();
    // One question to the system. GetModuleFileNameExW reads the memory of the other process instead, many
    // times, and that process may have written another name there.
    DWORD length = cPathUnits;
    if (!::QueryFullProcessImageNameW(process.Get(), 0, path, &length)) return GString();
    return GPathName::FromNative(FromWide(path, static_cast<long>(length))).GetLeaf();
}

// Calls `visit(id, name)` for every process that can be named.
template <class Visitor>
void VisitAllUsers(Visitor visit) {
    const auto path = std::make_unique<wchar_t[]>(cPathUnits);
    VisitSnapshot([&](const PROCESSENTRY32W& entry) {
        const GString name = GetImageLeaf(entry.th32ProcessID, path.get());
        if (!name.IsEmpty()) visit(entry.th32ProcessID, name);
        return true;
    });
}

// The current user's security identifier, as the bytes of a SID.
std::unique_ptr<unsigned char[]> GetCurrentUser() {
    wchar_t name[257] = {};
    ULONG nameLength = 257;
    PWin32SystemException::CheckForErrors(::GetUserNameExW(NameSamCompatible, name, &nameLength));
    DWORD sidLength = 0;
    DWORD domainLength = 0;
    SID_NAME_USE use = SidTypeUnknown;
    if (!::LookupAccountNameW(nullptr, name, nullptr, &sidLength, nullptr, &domainLength, &use)) {
        PWin32SystemException::CheckForErrors(::GetLastError() == ERROR_INSUFFICIENT_BUFFER);
    }
    auto sid = std::make_unique<unsigned char[]>(sidLength);
    const auto domain = std::make_unique<wchar_t[]>(domainLength);
    PWin32SystemException::CheckForErrors(
        ::LookupAccountNameW(nullptr, name, sid.get(), &sidLength, domain.get(), &domainLength, &use));
    return sid;
}

struct WTSDeleter {
    void operator()(void* memory) const noexcept { ::WTSFreeMemory(memory); }
};

template <class Visitor>
void VisitCurrentUser(Visitor visit) {
    const std::unique_ptr<unsigned char[]> user = GetCurrentUser();
    WTS_PROCESS_INFOW* processes = nullptr;
    DWORD count = 0;
    PWin32SystemException::CheckForErrors(
        ::WTSEnumerateProcessesW(WTS_CURRENT_SERVER_HANDLE, 0, 1, &processes, &count));
    const std::unique_ptr<WTS_PROCESS_INFOW, WTSDeleter> owner(processes);
    for (DWORD i = 0; i < count; ++i) {
        const WTS_PROCESS_INFOW& process = processes[i];
        if (process.pUserSid == nullptr || process.pProcessName == nullptr) continue;
        if (*process.pProcessName == 0) continue;  // it is just being started, or ends
        if (!::EqualSid(process.pUserSid, user.get())) continue;
        visit(process.ProcessId, FromWide(process.pProcessName, ::lstrlenW(process.pProcessName)));
    }
}

template <class Visitor>
void Visit(bool currentUserOnly, Visitor visit) {
    if (currentUserOnly) {
        VisitCurrentUser(visit);
    } else {
        VisitAllUsers(visit);
    }
}

MEMORYSTATUSEX GetMemoryStatus() {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    if (!::GlobalMemoryStatusEx(&status)) return {};
    return status;
}

}  // namespace

GProcessInfo* GProcessInfo::CreateDefault() {
    return new PWinProcessInfo;
}

unsigned long long PWinProcessInfo::GetTotalPhysicalMemory() {
    return GetMemoryStatus().ullTotalPhys;
}

unsigned long long PWinProcessInfo::GetAvailablePhysicalMemory() {
    return GetMemoryStatus().ullAvailPhys;
}

unsigned long long PWinProcessInfo::GetOwnMemory() {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    return ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters) ? counters.PagefileUsage
                                                                                     : 0;
}

void PWinProcessInfo::GetProcessIDs(const GString& name, GTable<std::int32_t>& ids, bool currentUserOnly) {
    GTable<std::int32_t> found;
    Visit(currentUserOnly, [&](DWORD processID, const GString& processName) {
        if (processName == name) found.Append(static_cast<std::int32_t>(processID));
    });
    ids.Swap(found);
}

void PWinProcessInfo::GetProcessNames(GTable<GString>& names, bool currentUserOnly) {
    GTable<GString> found;
    Visit(currentUserOnly, [&](DWORD, const GString& processName) { found.Append(processName); });
    names.Swap(found);
}

long PWinProcessInfo::GetCurrentProcessID() {
    return static_cast<long>(::GetCurrentProcessId());
}

bool PWinProcessInfo::IsProcessRunning(long processID) {
    bool running = false;
    VisitSnapshot([&](const PROCESSENTRY32W& entry) {
        running = entry.th32ProcessID == static_cast<DWORD>(processID);
        return !running;
    });
    return running;
}

GTable<std::int32_t> PWinProcessInfo::GetChildProcessIDs(long processID) {
    GTable<std::int32_t> children;
    VisitSnapshot([&](const PROCESSENTRY32W& entry) {
        if (entry.th32ParentProcessID == static_cast<DWORD>(processID)) {
            children.Append(static_cast<std::int32_t>(entry.th32ProcessID));
        }
        return true;
    });
    return children;
}

GTable<std::int32_t> PWinProcessInfo::GetRunningProcessIDs() {
    GTable<std::int32_t> running;
    VisitSnapshot([&](const PROCESSENTRY32W& entry) {
        running.Append(static_cast<std::int32_t>(entry.th32ProcessID));
        return true;
    });
    return running;
}

GString PWinProcessInfo::GetProcessName(long processID) {
    const auto path = std::make_unique_for_overwrite<wchar_t[]>(cPathUnits);
    return GetImageLeaf(static_cast<DWORD>(processID), path.get());
}

GPathName PWinProcessInfo::GetApplicationPath() {
    return PSystem::GetApplicationPath();
}
