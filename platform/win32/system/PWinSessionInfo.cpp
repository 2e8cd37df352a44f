#include "platform/win32/system/PWinSessionInfo.h"

#include <cstring>
#include <memory>

#include "framework/system/GOSVersion.h"
#include "framework/system/PSystem.h"

#include "platform/win32/base/PWin32Api.h"

#include <wtsapi32.h>

namespace {

struct WTSDeleter {
    void operator()(void* memory) const noexcept { ::WTSFreeMemory(memory); }
};

template <class T>
using WTSPtr = std::unique_ptr<T, WTSDeleter>;

bool HasNoSessions() {
    return !GOSVersion::HasSessions(PSystem::GetOSCode());
}

}  // namespace

GSessionInfo* GSessionInfo::CreateDefault() {
    return new PWinSessionInfo;
}

PWinSessionInfo::PWinSessionInfo() {
    if (HasNoSessions()) return;
    wchar_t* answer = nullptr;
    DWORD length = 0;
    if (!::WTSQuerySessionInformationW(WTS_CURRENT_SERVER_HANDLE, WTS_CURRENT_SESSION, WTSSessionId, &answer,
                                       &length)) {
        return;
    }
    const WTSPtr<wchar_t> owner(answer);
    if (answer != nullptr && length >= sizeof mSession) std::memcpy(&mSession, answer, sizeof mSession);
}

long PWinSessionInfo::GetCurrentSessionID() {
    return mSession;
}

void PWinSessionInfo::GetSessionIDs(GTable<std::int32_t>& ids) {
    ids.Clear();
    ids.Append(-1);
    if (HasNoSessions()) return;
    WTS_SESSION_INFOA* sessions = nullptr;
    DWORD count = 0;
    if (!::WTSEnumerateSessionsA(WTS_CURRENT_SERVER_HANDLE, 0, 1, &sessions, &count)) return;
    const WTSPtr<WTS_SESSION_INFOA> owner(sessions);
    for (DWORD i = 0; i < count; ++i) ids.Append(static_cast<std::int32_t>(sessions[i].SessionId));
}

void PWinSessionInfo::GetSessionPath(GBuffer& path, long session) {
    path.Clear();
    if (HasNoSessions()) return;
    if (session < 0) {
        path.Set("Global\\");
        return;
    }
    path.Set("Session\\");
    path += GBuffer(session);
    path += "\\";
}
