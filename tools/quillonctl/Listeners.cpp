#include "tools/quillonctl/Listeners.h"

#include <algorithm>

#include "framework/core/GException.h"
#include "framework/core/GTable.h"
#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "framework/ipc/GShMemID.h"
#include "framework/ipc/GWaitBudget.h"
#include "framework/system/GSessionInfo.h"
#include "monitor/GPPIPCManager.h"
#include "platform/win32/PWin32Wide.h"
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

Listener::State GetState(long processID) {
    switch (GPPIPCManager::GetInstance()->GetListeningState(processID)) {
        case GIPCManager::cListening:
            return Listener::State::Listening;
        case GIPCManager::cNotUsable:
            return Listener::State::Unreachable;
        default:
            return Listener::State::Gone;
    }
}

GTable<GIPCQueueAddress> GetRegistrations(GWaitBudget& budget) {
    const GShMemID identifier = GShMemID::GetSpecialID(GShMemID::cRegistry) + GShMemID("_PP");
    GIPCMessageQueueMgr registry(identifier, GSessionInfo::GetInstance()->GetCurrentSessionID(),
                                 GIPCMessageQueueMgr::Scope::cEverySession, &budget);
    GTable<GIPCQueueAddress> queues;
    registry.GetRegistered(queues);
    return queues;
}

bool ComesBefore(const Listener& one, const Listener& other) {
    return one.session != other.session ? one.session < other.session : one.processID < other.processID;
}

// A process stands in its session's registry and in the one that all sessions share (-1): the first
// says more. It may also stand several times in one.
std::vector<Listener> MergeRegistrations(const GTable<GIPCQueueAddress>& queues) {
    std::vector<Listener> listeners;
    for (const GIPCQueueAddress& queue : queues) {
        const auto known = std::ranges::find(listeners, queue.mProcessID, &Listener::processID);
        if (known == listeners.end()) {
            listeners.push_back({queue.mSession, queue.mProcessID});
        } else if (known->session < 0) {
            known->session = queue.mSession;
        }
    }
    std::ranges::sort(listeners, ComesBefore);
    return listeners;
}

}  // namespace

std::wstring Listener::Format() const {
    const wchar_t* meaning = L"";
    if (state == State::Unreachable) meaning = L", cannot be reached";
    if (state == State::Gone) meaning = L", has ended";
    const std::wstring place =
        session < 0 ? std::wstring(L"all sessions") : L"session " + std::to_wstring(session);
    return place + L": process " + std::to_wstring(processID) + meaning;
}

std::vector<Listener> Listeners::GetAll() {
    try {
        GWaitBudget budget(cMaxWaitMilliseconds);
        const HandOffReference handOff(budget);
        std::vector<Listener> listeners = MergeRegistrations(GetRegistrations(budget));
        for (Listener& listener : listeners) listener.state = GetState(listener.processID);
        return listeners;
    } catch (const GException& failure) {
        throw Failure(AsWide(failure.GetFullDescription()));
    }
}
