#include "tools/quillonctl/Listeners.h"

#include <algorithm>

#include "framework/core/containers/GTable.h"
#include "framework/core/errors/GException.h"
#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "framework/ipc/GWaitBudget.h"
#include "framework/system/GSessionInfo.h"
#include "monitor/handoff/GPPIPCManager.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tools/quillonctl/Failure.h"

namespace {

// Whoever holds a registry's mutex for ever must not hang an administrator's question.
constexpr long cMaxWaitMilliseconds = 2000;

/// A reference to the hand-off's manager.
class HandOffReference {
public:
    explicit HandOffReference(GWaitBudget& budget) {
        GPPIPCManager::AddReference(GIPCMessageQueueMgr::cNormal, &budget);
    }
    HandOffReference(const HandOffReference&) = delete;
    HandOffReference& operator=(const HandOffReference&) = delete;
    ~HandOffReference() {
        try {
            GPPIPCManager::ReleaseReference();
        } catch (const GException&) {
            // Asking has registered nothing that could be left behind.
        }
    }
};

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

}  // namespace

std::wstring Listener::Format() const {
    const std::wstring place =
        session < 0 ? std::wstring(L"all sessions") : L"session " + std::to_wstring(session);
    return place + L": process " + std::to_wstring(processID) +
           (isListening ? L"" : L", no longer listening");
}

std::vector<Listener> Listeners::GetAll() {
    try {
        GWaitBudget budget(cMaxWaitMilliseconds);
        const HandOffReference handOff(budget);
        std::vector<Listener> listeners = Merge(GetRegistrations(budget));
        for (Listener& listener : listeners) {
            FindSession(listener);
            listener.isListening = IsListening(listener.processID);
        }
        std::ranges::sort(listeners, ComesBefore);
        return listeners;
    } catch (const GException& failure) {
        throw Failure(AsWide(failure.GetFullDescription()));
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
