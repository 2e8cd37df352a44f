#include "monitor/handoff/GPPIPCManager.h"

#include <mutex>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/system/GSessionInfo.h"

namespace {

constexpr long cAnySession = -1;  // the name space that all sessions share

GBuffer GetKernelName(long session, const GShMemID& identifier) {
    GBuffer name;
    GSessionInfo::GetInstance()->GetSessionPath(name, session);
    name += GIPPrefix::AddPrefix(GIPPrefix::cSharedMemory, identifier);
    return name;
}

}  // namespace

/// Notes that a queue is being written to, for its own lifetime.
class GPPIPCManager::WritingMark {
public:
    WritingMark(Addresses& marks, const GIPCQueueAddress& queue) : mMarks(marks), mQueue(queue) {
        mMarks.Append(mQueue);
    }
    WritingMark(const WritingMark&) = delete;
    WritingMark& operator=(const WritingMark&) = delete;
    ~WritingMark() { mMarks.Remove(mMarks.Find(mQueue)); }

private:
    Addresses& mMarks;
    GIPCQueueAddress mQueue;
};

GPPIPCManager* GPPIPCManager::sInstance = nullptr;
long GPPIPCManager::sReferences = 0;

void GPPIPCManager::AddReference(ManagerType type, GWaitBudget* budget) {
    if (sReferences == 0) sInstance = std::make_unique<GPPIPCManager>(type, budget).release();
    ++sReferences;
}

void GPPIPCManager::ReleaseReference() {
    if (sReferences == 0 || --sReferences > 0) return;
    const std::unique_ptr<GPPIPCManager> owner(std::exchange(sInstance, nullptr));
}

GShMemID GPPIPCManager::GetRegistryID(ManagerType type) {
    return GIPCMessageQueueMgr::GetRegistryID(type) + GShMemID("_PP");
}

GPPIPCManager* GPPIPCManager::GetInstance() noexcept {
    return sInstance;
}

GPPIPCManager::GPPIPCManager(ManagerType type, GWaitBudget* budget)
    : GIPCManager(budget),
      mSession(static_cast<std::int32_t>(GSessionInfo::GetInstance()->GetCurrentSessionID())),
      mServicesSession(mSession < 1) {
    using Scope = GIPCMessageQueueMgr::Scope;
    const GShMemID identifier = GetRegistryID(type);
    mSessionRegistry =
        std::make_unique<GIPCMessageQueueMgr>(identifier, mSession, Scope::cEverySession, budget);
    if (GetKernelName(mSession, identifier) == GetKernelName(cAnySession, identifier)) return;
    try {
        mGlobalRegistry =
            std::make_unique<GIPCMessageQueueMgr>(identifier, cAnySession, Scope::cOwnOnly, budget);
    } catch (const GException& failure) {
        // An ordinary user may not make global objects; his own session's do for him.
        if (!IsQueueFailure(failure)) throw;
    }
}

GPPIPCManager::~GPPIPCManager() {
    try {
        ForceProcessPendingMessages();
    } catch (...) {
        // Nobody is left to be told.
    }
    ShutDown();
}

// --- Receiving

void GPPIPCManager::StartListening() {
    auto inbox = std::make_unique<GIPCInbox>(*mSessionRegistry, GetBudget());
    // In the services' session both names are one object: a second entry would be a second message.
    if (mGlobalRegistry && !mServicesSession) {
        try {
            mGlobalInbox = std::make_unique<GIPCInbox>(*mGlobalRegistry, GetBudget());
        } catch (const GException& failure) {
            if (!IsQueueFailure(failure)) throw;
        }
    }
    mSessionInbox = std::move(inbox);
}

void GPPIPCManager::StopListening() {
    const std::unique_ptr<GIPCInbox> global = std::move(mGlobalInbox);
    const std::unique_ptr<GIPCInbox> session = std::move(mSessionInbox);
    if (global) global->Close();
    session->Close();
}

bool GPPIPCManager::AreInboxesIntact() {
    return mSessionInbox->IsIntact() && (!mGlobalInbox || mGlobalInbox->IsIntact());
}

GIPCMessageQueueMgr& GPPIPCManager::GetMessageQueueMgr() {
    return *mSessionRegistry;
}

long GPPIPCManager::GetRegistrationID() const noexcept {
    return mSessionInbox ? mSessionInbox->GetRegistrationID() : 0;
}

void GPPIPCManager::ReadInboxes(GTable<GSmartPtr<GIPCMessage>>& messages) {
    std::exception_ptr failure;
    for (GIPCInbox* inbox : {mSessionInbox.get(), mGlobalInbox.get()}) {
        if (inbox == nullptr) continue;
        try {
            inbox->Drain(messages);
        } catch (...) {
            failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
}

void GPPIPCManager::Receive(long signalNumber, const GEmptyMessage& message) {
    const std::lock_guard<PCriticalSection> lock(GetReceiverLock());
    GIPCManager::Receive(signalNumber, message);
}

// --- Finding a process

GTable<GIPCQueueAddress> GPPIPCManager::ReadQueues(Place place, long processID) {
    GTable<std::int32_t> registrationIDs;
    Addresses queues;
    GIPCMessageQueueMgr* registry = place == Place::cGlobal ? mGlobalRegistry.get() : mSessionRegistry.get();
    if (registry == nullptr) return queues;
    if (place == Place::cOtherSessions) {
        Addresses all;
        registry->GetRegistered(all);
        for (const GIPCQueueAddress& queue : all)
            if (queue.mProcessID == processID && queue.mSession != mSession) queues.Append(queue);
        return queues;
    }
    registry->GetRegisteredHere(processID, registrationIDs);
    for (const std::int32_t registrationID : registrationIDs)
        queues.Append({static_cast<std::int32_t>(registry->GetSession()),
                       static_cast<std::int32_t>(processID), registrationID});
    return queues;
}

// Calls tryQueues(queues) with the queues that a process has in each place, the best place first, until
// it returns true. A registry that cannot be read is taken for one that does not know the process; the
// failure is kept for the case that nothing else helps.
template <class TryQueues>
bool GPPIPCManager::TryPlaces(long processID, std::exception_ptr& failure, TryQueues tryQueues) {
    for (const Place place : {Place::cThisSession, Place::cGlobal, Place::cOtherSessions}) {
        Addresses queues;
        try {
            queues = ReadQueues(place, processID);
        } catch (const GException&) {
            if (!failure) failure = std::current_exception();
        }
        if (!queues.IsEmpty() && tryQueues(queues)) return true;
    }
    return false;
}

bool GPPIPCManager::CanOpenAny(const Addresses& queues, std::exception_ptr& failure) {
    for (long position = queues.GetCount() - 1; position >= 0; --position) {
        try {
            if (CanOpen(queues[position])) return true;
        } catch (const GException&) {
            if (!failure) failure = std::current_exception();
        }
    }
    return false;
}

GIPCManager::ListeningState GPPIPCManager::GetListeningState(long processID) {
    std::exception_ptr failure;
    bool isRegistered = false;
    bool canOpen = false;
    const bool isKnown = TryPlaces(processID, failure, [&](const Addresses& queues) {
        if (!std::exchange(isRegistered, true) && !IsRunning(processID)) return true;
        canOpen = CanOpenAny(queues, failure);
        return canOpen;
    });
    if (canOpen) return cListening;
    if (!isKnown && failure) std::rethrow_exception(failure);
    return isRegistered ? cNotUsable : cNotListening;
}

// --- Sending

void GPPIPCManager::SendToProcess(long processID, long type, const GBuffer& data, bool once) {
    const std::lock_guard<PCriticalSection> lock(GetReceiverLock());
    mTakenBudget = cTakenBudget;
    std::exception_ptr failure;
    bool isRegistered = false;
    const bool reached = TryPlaces(processID, failure, [&](const Addresses& queues) {
        isRegistered = true;
        return SendToAny(queues, type, data, once, failure);
    });
    if (reached || !failure) return;
    try {
        std::rethrow_exception(failure);
    } catch (const GException& reason) {
        if (isRegistered && IsQueueFailure(reason)) AddCorruptedProcess(processID);
        throw;
    }
}

// Sends to every queue that takes it; false when none did.
bool GPPIPCManager::SendToAny(const Addresses& queues, long type, const GBuffer& data, bool once,
                              std::exception_ptr& failure) {
    bool reached = false;
    for (const GIPCQueueAddress& queue : queues) {
        try {
            SendToQueue(queue, type, data, once);
            reached = true;
        } catch (const GException&) {
            if (!failure) failure = std::current_exception();
        }
    }
    return reached;
}

GIPCManager::Delivery GPPIPCManager::SendToQueue(const GIPCQueueAddress& address, long type,
                                                 const GBuffer& data, bool once) {
    const WritingMark mark(mBeingWritten, address);
    GIPCMessageQueue queue(address.mSession, address.mProcessID, address.mRegistrationID, GetBudget());
    const Delivery delivery = Post(queue, address, type, data, once);
    // From here on the message is on its way. Nothing may throw, or it would be sent another way, too.
    if (once && delivery == Delivery::cInQueue) WaitTillTaken(queue, type, data);
    return delivery;
}

void GPPIPCManager::WaitTillTaken(GIPCMessageQueue& queue, long type, const GBuffer& data) {
    try {
        for (; mTakenBudget >= 0 && queue.ContainsRawMessage(type, data); mTakenBudget -= cTakenInterval)
            MilliSleep(cTakenInterval);
    } catch (const GException&) {
        // What becomes of the queue after the message was put there is its owner's affair.
    }
}

void GPPIPCManager::SendToAll(long type, const GBuffer& data, bool once) {
    Addresses queues;
    mSessionRegistry->GetRegistered(queues);
    if (mGlobalRegistry) {
        Addresses global;
        mGlobalRegistry->GetRegistered(global);
        for (const GIPCQueueAddress& queue : global) queues.Append(queue);
    }
    GTable<std::int32_t> processIDs;
    for (const GIPCQueueAddress& queue : queues)
        if (!processIDs.Has(queue.mProcessID)) processIDs.Append(queue.mProcessID);
    for (const std::int32_t processID : processIDs) {
        try {
            SendToProcess(processID, type, data, once);
        } catch (const GException&) {
            // What one target cannot take is not the others' loss.
        }
    }
}

// --- Messages kept for later, and processes that are gone

void GPPIPCManager::DelayedTargetFailed(const MessageData&) {
    // Another queue of the process may be in order, so the process stays registered.
}

bool GPPIPCManager::IsDelayedTargetGone(const MessageData& message) {
    return !IsRunning(message.mQueue.mProcessID);
}

bool GPPIPCManager::IsBeingWritten(const GIPCQueueAddress& queue) const {
    return mBeingWritten.Has(queue);
}

long GPPIPCManager::GetDelayedLimit() const {
    return cMaxDelayedPerTarget;
}

void GPPIPCManager::PurgeProcess(long processID) {
    if (mGlobalRegistry) mGlobalRegistry->Unregister(processID);
    mSessionRegistry->Unregister(processID);
}
