#include "tools/quillonctl/Listeners.h"

#include <algorithm>

#include "framework/core/containers/GTable.h"
#include "framework/core/errors/GException.h"
#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "framework/ipc/GWaitBudget.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"
#include "monitor/handoff/GPPHandOffScope.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "monitor/handoff/GPPJobNotification.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/machine/Failure.h"
#include "tools/quillonctl/MessagingCheck.h"

namespace {

// Whoever holds a registry's mutex for ever must not hang an administrator's question.
constexpr long cMaxWaitMilliseconds = 2000;

bool IsListening(long processID) {
    return GPPIPCManager::GetInstance()->GetListeningState(processID) == GIPCManager::cListening;
}

GTable<GIPCQueueAddress> GetRegistrations(GWaitBudget& budget) {
    GIPCMessageQueueMgr registry(GPPIPCManager::GetRegistryID(GIPCMessageQueueMgr::cNormal),
                                 GSessionInfo::GetInstance()->GetCurrentSessionID(),
                                 GIPCMessageQueueMgr::Scope::cEverySession, &budget);
    GTable<GIPCQueueAddress> queues;
    registry.GetRegistered(queues);
    return queues;
}

bool ComesBefore(const Listener& one, const Listener& other) {
    return one.session != other.session ? one.session < other.session : one.processID < other.processID;
}

// For a process that stands in the shared registry alone: where the messaging knows no sessions, the
// system may.
void FindSession(Listener& listener) {
    DWORD session = 0;
    if (listener.session < 0 && ::ProcessIdToSessionId(static_cast<DWORD>(listener.processID), &session)) {
        listener.session = static_cast<long>(session);
    }
}

// The leaf of a process's program; empty when the system does not tell.
std::wstring FindProgram(long processID) {
    const PWin32ScopedHandle<PWin32KernelHandle> process(
        ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(processID)));
    std::wstring path(32768, L'\0');
    auto units = static_cast<DWORD>(path.size());
    if (!process || !::QueryFullProcessImageNameW(process.Get(), 0, path.data(), &units)) return {};
    path.resize(units);
    return path.substr(path.find_last_of(L'\\') + 1);
}

std::vector<Listener> ReadListeners() {
    GWaitBudget budget(cMaxWaitMilliseconds);
    const GPPHandOffScope handOff(&budget);
    std::vector<Listener> listeners = Listeners::Merge(GetRegistrations(budget));
    // Asked for in the same way as the monitor does.
    GTable<std::int32_t> told;
    GProcessInfo::GetInstance()->GetProcessIDs(GPPJobNotification::cListenerName, told, false);
    for (Listener& listener : listeners) {
        FindSession(listener);
        listener.isListening = IsListening(listener.processID);
        if (!told.Has(static_cast<std::int32_t>(listener.processID)))
            listener.otherProgram = FindProgram(listener.processID);
    }
    std::ranges::sort(listeners, ComesBefore);
    return listeners;
}

}  // namespace

bool Listener::IsTold() const {
    return isListening && !otherProgram;
}

std::wstring Listener::Format() const {
    const std::wstring place =
        session < 0 ? std::wstring(L"all sessions") : L"session " + std::to_wstring(session);
    std::wstring line = place + L": process " + std::to_wstring(processID);
    if (!isListening) return line + L", no longer listening";
    if (IsTold()) return line;
    const std::wstring name = otherProgram->empty() ? L"unknown" : *otherProgram;
    return line + L", not told: the program's name is " + name;
}

std::vector<Listener> Listeners::GetAll() {
    try {
        return ReadListeners();
    } catch (const GException& failure) {
        const std::wstring obstacle = MessagingCheck::FindObstacle();
        throw Failure(obstacle.empty() ? AsWide(failure.GetFullDescription())
                                       : L"the messaging is blocked.\n" + obstacle);
    }
}

std::vector<Listener> Listeners::Merge(const GTable<GIPCQueueAddress>& registrations) {
    std::vector<Listener> listeners;
    for (const GIPCQueueAddress& registration : registrations) {
        const auto known = std::ranges::find(listeners, registration.mProcessID, &Listener::processID);
        if (known == listeners.end()) {
            listeners.push_back({registration.mSession, registration.mProcessID});
        } else {
            known->session = std::max<long>(known->session, registration.mSession);
        }
    }
    return listeners;
}
