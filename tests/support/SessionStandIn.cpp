// SessionStandIn: a wtsapi32.dll for tests under Wine, where every process is in session 1.
//
// Two environment variables tell a process what to believe: WTS_TEST_SESSION is its own session (without it,
// the real one), WTS_TEST_SESSIONS the list of all sessions, such as "0,1,2" (without it, "0,1"). It has the
// four functions that the framework calls; processes and their users are the real ones. Wine takes it instead
// of its own only under WINEDLLOVERRIDES="wtsapi32=n,b".
#include <charconv>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <tlhelp32.h>
#include <wtsapi32.h>

namespace {

constexpr DWORD cMaxSidBytes = 68;

using KernelHandle = PWin32ScopedHandle<PWin32KernelHandle>;

/// One block as the caller frees it: `count` records of `Record`, behind each its `extra` bytes.
template <class Record>
class Reply {
public:
    Reply(std::size_t count, std::size_t extra)
        : mRecords(static_cast<Record*>(::HeapAlloc(::GetProcessHeap(), HEAP_ZERO_MEMORY,
                                                    (sizeof(Record) + extra) * count + sizeof(Record)))),
          mText(reinterpret_cast<BYTE*>(mRecords + count)) {}
    Record* Records() const noexcept { return mRecords; }
    BYTE* Append(const void* bytes, std::size_t count) {
        BYTE* const place = mText;
        std::memcpy(place, bytes, count);
        mText += count;
        return place;
    }

private:
    Record* mRecords;
    BYTE* mText;
};

std::string Variable(const char* name, const char* otherwise) {
    char value[256];
    const DWORD length = ::GetEnvironmentVariableA(name, value, sizeof value);
    return length != 0 && length < sizeof value ? std::string(value, length) : std::string(otherwise);
}

std::vector<DWORD> Numbers(std::string_view list) {
    std::vector<DWORD> numbers;
    while (!list.empty()) {
        DWORD number = 0;
        const auto [end, error] = std::from_chars(list.data(), list.data() + list.size(), number);
        if (error == std::errc()) numbers.push_back(number);
        const std::size_t comma = list.find(',');
        list.remove_prefix(comma == list.npos ? list.size() : comma + 1);
    }
    return numbers;
}

DWORD OwnSession() {
    const std::vector<DWORD> told = Numbers(Variable("WTS_TEST_SESSION", ""));
    if (!told.empty()) return told.front();
    DWORD session = 0;
    ::ProcessIdToSessionId(::GetCurrentProcessId(), &session);
    return session;
}

struct Process {
    DWORD id = 0;
    std::wstring name;
    std::vector<BYTE> sid;  // empty when the process may not be asked
};

std::vector<BYTE> UserOf(DWORD processId) {
    const KernelHandle process(::OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, processId));
    HANDLE opened = nullptr;
    if (!process || !::OpenProcessToken(process.Get(), TOKEN_QUERY, &opened)) return {};
    const KernelHandle token(opened);
    alignas(TOKEN_USER) BYTE user[256];
    DWORD size = 0;
    if (!::GetTokenInformation(token.Get(), TokenUser, user, sizeof user, &size)) return {};
    std::vector<BYTE> sid(cMaxSidBytes);
    if (!::CopySid(cMaxSidBytes, sid.data(), reinterpret_cast<const TOKEN_USER*>(user)->User.Sid)) return {};
    return sid;
}

std::vector<Process> AllProcesses() {
    std::vector<Process> processes;
    const PWin32ScopedHandle<PWin32FileHandle> snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = ::Process32FirstW(snapshot.Get(), &entry); more;
         more = ::Process32NextW(snapshot.Get(), &entry)) {
        processes.push_back({entry.th32ProcessID, entry.szExeFile, UserOf(entry.th32ProcessID)});
    }
    return processes;
}

}  // namespace

extern "C" {

__declspec(dllexport) void WINAPI WTSFreeMemory(void* memory) {
    ::HeapFree(::GetProcessHeap(), 0, memory);
}

__declspec(dllexport) BOOL WINAPI
    WTSQuerySessionInformationW(HANDLE, DWORD session, WTS_INFO_CLASS what, LPWSTR* buffer, DWORD* bytes) {
    if (what != WTSSessionId) {
        ::SetLastError(ERROR_NOT_SUPPORTED);
        return FALSE;
    }
    const Reply<DWORD> reply(1, 0);
    *reply.Records() = session == WTS_CURRENT_SESSION ? OwnSession() : session;
    *buffer = reinterpret_cast<LPWSTR>(reply.Records());
    if (bytes != nullptr) *bytes = sizeof(DWORD);
    return TRUE;
}

__declspec(dllexport) BOOL WINAPI
    WTSEnumerateSessionsA(HANDLE, DWORD reserved, DWORD version, WTS_SESSION_INFOA** sessions, DWORD* count) {
    if (reserved != 0 || version != 1 || sessions == nullptr || count == nullptr) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::vector<DWORD> numbers = Numbers(Variable("WTS_TEST_SESSIONS", "0,1"));
    Reply<WTS_SESSION_INFOA> reply(numbers.size(), 32);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::string name = "Session" + std::to_string(numbers[i]);
        BYTE* const text = reply.Append(name.c_str(), name.size() + 1);
        reply.Records()[i] = {numbers[i], reinterpret_cast<LPSTR>(text),
                              numbers[i] == 0 ? WTSDisconnected : WTSActive};
    }
    *sessions = reply.Records();
    *count = static_cast<DWORD>(numbers.size());
    return TRUE;
}

__declspec(dllexport) BOOL WINAPI
    WTSEnumerateProcessesW(HANDLE, DWORD reserved, DWORD version, WTS_PROCESS_INFOW** infos, DWORD* count) {
    if (reserved != 0 || version != 1 || infos == nullptr || count == nullptr) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::vector<Process> processes = AllProcesses();
    Reply<WTS_PROCESS_INFOW> reply(processes.size(), MAX_PATH * sizeof(wchar_t) + cMaxSidBytes);
    for (std::size_t i = 0; i < processes.size(); ++i) {
        const Process& process = processes[i];
        WTS_PROCESS_INFOW& info = reply.Records()[i];
        info = {OwnSession(), process.id, nullptr, nullptr};
        if (!process.sid.empty()) info.pUserSid = reply.Append(process.sid.data(), cMaxSidBytes);
        wchar_t name[MAX_PATH] = {};
        process.name.copy(name, MAX_PATH - 1);
        info.pProcessName = reinterpret_cast<LPWSTR>(reply.Append(name, sizeof name));
    }
    *infos = reply.Records();
    *count = static_cast<DWORD>(processes.size());
    return TRUE;
}

}  // extern "C"
