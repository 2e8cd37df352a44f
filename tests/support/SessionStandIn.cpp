// SessionStandIn: a wtsapi32.dll for tests under Wine, where every process is in session 1.
//
// Two environment variables tell a process what to believe: WTS_TEST_SESSION is its own session (without it,
// the real one), WTS_TEST_SESSIONS the list of all sessions, such as "0,1,2" (without it, "0,1"). It has the
// four functions that the framework calls; processes and their users are the real ones. Wine takes it instead
// of its own only under WINEDLLOVERRIDES="wtsapi32=n,b".
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

#include <tlhelp32.h>
#include <wtsapi32.h>

namespace {

constexpr DWORD cMaxSidBytes = 68;

using KernelHandle = PWin32ScopedHandle<PWin32KernelHandle>;

/// Answers with one block that the caller frees: a zeroed record for each of `facts`, behind all of them so
/// many bytes of room for each. `fill` is given a fact, its record and its room.
template <class Record, class Facts, class Fill>
BOOL Answer(DWORD reserved, DWORD version, Record** records, DWORD* count, const Facts& facts,
            std::size_t room, const Fill& fill) {
    if (reserved != 0 || version != 1 || records == nullptr || count == nullptr) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::size_t size = (sizeof(Record) + room) * facts.size() + 1;
    *records = static_cast<Record*>(::HeapAlloc(::GetProcessHeap(), HEAP_ZERO_MEMORY, size));
    auto* text = reinterpret_cast<BYTE*>(*records + facts.size());
    for (std::size_t i = 0; i < facts.size(); ++i, text += room) fill(facts[i], (*records)[i], text);
    *count = static_cast<DWORD>(facts.size());
    return TRUE;
}

std::string Variable(const char* name, const char* otherwise) {
    char value[256];
    const DWORD length = ::GetEnvironmentVariableA(name, value, sizeof value);
    return length != 0 && length < sizeof value ? std::string(value, length) : std::string(otherwise);
}

std::vector<DWORD> Numbers(const std::string& list) {
    std::vector<DWORD> numbers;
    std::istringstream in(list);
    for (DWORD number; in >> number; in.ignore()) numbers.push_back(number);
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
    auto* const number = static_cast<DWORD*>(::HeapAlloc(::GetProcessHeap(), 0, sizeof(DWORD)));
    *number = session == WTS_CURRENT_SESSION ? OwnSession() : session;
    *buffer = reinterpret_cast<LPWSTR>(number);
    if (bytes != nullptr) *bytes = sizeof(DWORD);
    return TRUE;
}

__declspec(dllexport) BOOL WINAPI
    WTSEnumerateSessionsA(HANDLE, DWORD reserved, DWORD version, WTS_SESSION_INFOA** sessions, DWORD* count) {
    return Answer(
        reserved, version, sessions, count, Numbers(Variable("WTS_TEST_SESSIONS", "0,1")), 32,
        [](DWORD number, WTS_SESSION_INFOA& session, BYTE* text) {
            const std::string name = "Session" + std::to_string(number);
            std::memcpy(text, name.c_str(), name.size());
            session = {number, reinterpret_cast<LPSTR>(text), number == 0 ? WTSDisconnected : WTSActive};
        });
}

__declspec(dllexport) BOOL WINAPI
    WTSEnumerateProcessesW(HANDLE, DWORD reserved, DWORD version, WTS_PROCESS_INFOW** infos, DWORD* count) {
    return Answer(reserved, version, infos, count, AllProcesses(), MAX_PATH * sizeof(wchar_t) + cMaxSidBytes,
                  [](const Process& process, WTS_PROCESS_INFOW& info, BYTE* text) {
                      auto* const name = reinterpret_cast<LPWSTR>(text + cMaxSidBytes);
                      process.name.copy(name, MAX_PATH - 1);
                      info = {OwnSession(), process.id, name, nullptr};
                      if (process.sid.empty()) return;
                      std::memcpy(text, process.sid.data(), cMaxSidBytes);
                      info.pUserSid = text;
                  });
}

}  // extern "C"
