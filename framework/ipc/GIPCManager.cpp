#include "framework/ipc/GIPCManager.h"

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/core/memory/GRefCount.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/PSystem.h"

namespace {

constexpr long cListeningInterval = 100;  // milliseconds between two looks for a process to listen
constexpr long cNoLimit = 0x7FFFFFFF;

GIPCManager::SleepFunction sSleep = nullptr;

}  // namespace

/// The receivers of one type. It outlives its entry in the table while a message is handed out.
struct GIPCManager::ReceiverList : public GRefCount {
    GTable<GIPCReceiver*> mReceivers;
};

GIPCManager* GIPCManager::sInstance = nullptr;
long GIPCManager::sInitialized = 0;

void GIPCManager::Initialize() {
    if (sInitialized == 0) sInstance = std::make_unique<GIPCManager>().release();
    ++sInitialized;
}

void GIPCManager::Finalize() {
    if (sInitialized == 0 || --sInitialized > 0) return;
    const std::unique_ptr<GIPCManager> owner(std::exchange(sInstance, nullptr));
}

GIPCManager* GIPCManager::GetInstance() noexcept {
    return sInstance;
}

GIPCManager::GIPCManager(GWaitBudget* budget) : mBudget(budget) {}

GIPCManager::~GIPCManager() {
    ShutDown();
}

void GIPCManager::ShutDown() noexcept {
    mDelayed.Clear();
    if (mListening) {
        mListening = false;
        RunQuietly([this] { StopListening(); });
    }
    RunQuietly([this] { UpdateSubscription(); });
    for (auto& entry : mReceivers)
        for (GIPCReceiver* receiver : entry.GetValue()->mReceivers) receiver->ForgetRegistrations();
    mReceivers.Clear();
}

// --- Receiving

void GIPCManager::Register(long type, GIPCReceiver& receiver) {
    AddReceiver(type, receiver);
    if (mListening) return;
    try {
        StartListening();
        mListening = true;
        UpdateSubscription();
    } catch (...) {
        RunQuietly([&] { Unregister(type, receiver); });
        throw;
    }
}

void GIPCManager::Unregister(long type, GIPCReceiver& receiver) {
    RemoveReceiver(type, receiver);
    if (!mListening || !mReceivers.IsEmpty()) return;
    mListening = false;
    UpdateSubscription();
    StopListening();
}

void GIPCManager::AddReceiver(long type, GIPCReceiver& receiver) {
    const auto key = static_cast<std::int32_t>(type);
    if (const GSmartPtr<ReceiverList>* list = mReceivers.Find(key)) {
        GTable<GIPCReceiver*>& receivers = (*list)->mReceivers;
        if (!receivers.Has(&receiver)) receivers.Append(&receiver);
        return;
    }
    const GSmartPtr<ReceiverList> list(new ReceiverList);
    list->mReceivers.Append(&receiver);
    mReceivers.Set(key, list);
}

void GIPCManager::RemoveReceiver(long type, GIPCReceiver& receiver) {
    const auto key = static_cast<std::int32_t>(type);
    const GSmartPtr<ReceiverList>* list = mReceivers.Find(key);
    if (list == nullptr) return;
    GTable<GIPCReceiver*>& receivers = (*list)->mReceivers;
    const long position = receivers.Find(&receiver);
    if (position >= 0) receivers.Remove(position);
    if (receivers.IsEmpty()) mReceivers.Remove(key);
}

long GIPCManager::GetRegistrationID() const noexcept {
    return mInbox ? mInbox->GetRegistrationID() : 0;
}

void GIPCManager::StartListening() {
    mInbox = std::make_unique<GIPCInbox>(GetMessageQueueMgr(), mBudget);
}

void GIPCManager::StopListening() {
    // In this order they go at the end: the inbox still needs the registry.
    const std::unique_ptr<GIPCMessageQueueMgr> registry = std::move(mQueueMgr);
    const std::unique_ptr<GIPCInbox> inbox = std::move(mInbox);
    inbox->Close();
}

bool GIPCManager::AreInboxesIntact() {
    return mInbox->IsIntact();
}

bool GIPCManager::IsStillRegistered() {
    return mListening && AreInboxesIntact();
}

void GIPCManager::Reregister() {
    if (!mListening) return;
    GTable<GSmartPtr<GIPCMessage>> messages;
    RunQuietly([&] { ReadInboxes(messages); });
    GFirstFailure steps;
    steps.Run([this] { StartListening(); });
    for (const GSmartPtr<GIPCMessage>& message : messages) steps.Run([&] { Dispatch(*message); });
    steps.Throw();
}

GIPCMessageQueueMgr& GIPCManager::GetMessageQueueMgr() {
    if (!mQueueMgr) mQueueMgr = std::make_unique<GIPCMessageQueueMgr>(GIPCMessageQueueMgr::cNormal, mBudget);
    return *mQueueMgr;
}

void GIPCManager::UpdateSubscription() {
    const bool wanted = mListening || !mDelayed.IsEmpty();
    if (wanted == mSubscribed) return;
    GSignal<GEmptyMessage>& repeaters = GBasicSignals::GetRepeaters();
    if (wanted) {
        repeaters.Subscribe(*this);
    } else {
        repeaters.Unsubscribe(*this);
    }
    mSubscribed = wanted;
}

void GIPCManager::Receive(long signalNumber, const GEmptyMessage&) {
    if (signalNumber == GBasicSignals::cRepeaterSignal) ForceProcessPendingMessages();
}

void GIPCManager::ForceProcessPendingMessages() {
    GFirstFailure steps;
    steps.Run([this] { SendDelayedMessages(); });
    steps.Run([this] { ProcessReceivedMessages(); });
    steps.Throw();
}

void GIPCManager::ProcessReceivedMessages() {
    if (!mListening) return;
    GTable<GSmartPtr<GIPCMessage>> messages;
    GFirstFailure steps;
    steps.Run([&] { ReadInboxes(messages); });
    for (const GSmartPtr<GIPCMessage>& message : messages) steps.Run([&] { Dispatch(*message); });
    steps.Throw();
}

void GIPCManager::ReadInboxes(GTable<GSmartPtr<GIPCMessage>>& messages) {
    mInbox->Drain(messages);
}

void GIPCManager::Dispatch(const GIPCMessage& message) {
    const GSmartPtr<ReceiverList>* found = mReceivers.Find(static_cast<std::int32_t>(message.GetType()));
    if (found == nullptr) return;
    const GSmartPtr<ReceiverList> list = *found;
    GFirstFailure steps;
    GTableIterator<GIPCReceiver*> receivers(list->mReceivers);
    while (GIPCReceiver** receiver = receivers.Next())
        steps.Run([&] { (*receiver)->HandleIPCMessage(message); });
    steps.Throw();
}

// --- Sending

void GIPCManager::Send(long processID, long type) {
    SendRaw(processID, type, GBuffer::cEmptyBuffer);
}

void GIPCManager::SendOnce(long processID, long type) {
    SendOnceRaw(processID, type, GBuffer::cEmptyBuffer);
}

void GIPCManager::Broadcast(long type) {
    BroadcastRaw(type, GBuffer::cEmptyBuffer);
}

void GIPCManager::BroadcastOnce(long type) {
    BroadcastOnceRaw(type, GBuffer::cEmptyBuffer);
}

void GIPCManager::SendRaw(long processID, long type, const GBuffer& data) {
    const CleanupScope cleanup(*this);
    SendToProcess(processID, type, data, false);
}

void GIPCManager::SendOnceRaw(long processID, long type, const GBuffer& data) {
    const CleanupScope cleanup(*this);
    SendToProcess(processID, type, data, true);
}

void GIPCManager::BroadcastRaw(long type, const GBuffer& data) {
    const CleanupScope cleanup(*this);
    SendToAll(type, data, false);
}

void GIPCManager::BroadcastOnceRaw(long type, const GBuffer& data) {
    const CleanupScope cleanup(*this);
    SendToAll(type, data, true);
}

void GIPCManager::SendToProcess(long processID, long type, const GBuffer& data, bool once) {
    long session = 0;
    GTable<std::int32_t> registrationIDs;
    GetMessageQueueMgr().GetRegistered(processID, session, registrationIDs);
    for (const std::int32_t registrationID : registrationIDs)
        SendToQueue(
            {static_cast<std::int32_t>(session), static_cast<std::int32_t>(processID), registrationID}, type,
            data, once);
}

void GIPCManager::SendToAll(long type, const GBuffer& data, bool once) {
    GTable<GIPCQueueAddress> queues;
    GetMessageQueueMgr().GetRegistered(queues);
    for (const GIPCQueueAddress& queue : queues) {
        try {
            SendToQueue(queue, type, data, once);
        } catch (const GException&) {
            // What one target cannot take is not the others' loss.
        }
    }
}

GIPCManager::Delivery GIPCManager::SendToQueue(const GIPCQueueAddress& address, long type,
                                               const GBuffer& data, bool once) {
    try {
        GIPCMessageQueue queue(address.mSession, address.mProcessID, address.mRegistrationID, mBudget);
        const Delivery delivery = Post(queue, address, type, data, once);
        queue.Close();
        return delivery;
    } catch (const GException& failure) {
        if (IsQueueFailure(failure)) AddCorruptedProcess(address.mProcessID);
        throw;
    }
}

bool GIPCManager::Append(GIPCMessageQueue& queue, long type, const GBuffer& data, bool once) {
    return once ? queue.TryToAddRawMessageOnce(type, data) : queue.TryToAddRawMessage(type, data);
}

GIPCManager::Delivery GIPCManager::Post(GIPCMessageQueue& queue, const GIPCQueueAddress& address, long type,
                                        const GBuffer& data, bool once) {
    if (Append(queue, type, data, once)) return Delivery::cInQueue;
    if (!GIPCMessageQueue::RawDataFitsEmptyQueue(data))
        throw GSimpleException(GExceptionID::cMessageTooLarge);
    KeepForLater(address, type, data, once);
    return Delivery::cKept;
}

// --- Messages kept for later

void GIPCManager::KeepForLater(const GIPCQueueAddress& address, long type, const GBuffer& data, bool once) {
    mDelayed.Append({address, static_cast<std::int32_t>(type), data, once});
    long excess = -GetDelayedLimit();
    for (const MessageData& message : mDelayed) excess += message.mQueue.mProcessID == address.mProcessID;
    for (long position = 0; excess > 0; ++position) {
        if (mDelayed[position].mQueue.mProcessID != address.mProcessID) continue;
        mDelayed.Remove(position--);
        --excess;
    }
    UpdateSubscription();
}

long GIPCManager::GetDelayedLimit() const {
    return cNoLimit;
}

void GIPCManager::SendDelayedMessages() {
    GTable<std::int32_t> waiting;
    for (long position = 0; position < mDelayed.GetCount();) {
        if (IsDone(mDelayed[position], waiting)) {
            mDelayed.Remove(position);
        } else {
            ++position;
        }
    }
    CleanupCorruptedProcesses();
    UpdateSubscription();
}

// True for a message that was delivered or is not to be kept. The processes in `waiting` are known to be
// worth waiting for: finding that out takes longer than trying a queue.
bool GIPCManager::IsDone(const MessageData& message, GTable<std::int32_t>& waiting) {
    if (IsBeingWritten(message.mQueue)) return false;
    try {
        if (TryDelayedMessage(message)) return true;
    } catch (const GException& failure) {
        if (!IsQueueFailure(failure)) return false;
        DelayedTargetFailed(message);
        return true;
    }
    if (waiting.Has(message.mQueue.mProcessID)) return false;
    if (IsDelayedTargetGone(message)) return true;
    waiting.Append(message.mQueue.mProcessID);
    return false;
}

bool GIPCManager::TryDelayedMessage(const MessageData& message) {
    const GIPCQueueAddress& address = message.mQueue;
    GIPCMessageQueue queue(address.mSession, address.mProcessID, address.mRegistrationID, mBudget);
    const bool appended = Append(queue, message.mType, message.mData, message.mOnce);
    queue.Close();
    return appended;
}

void GIPCManager::DelayedTargetFailed(const MessageData& message) {
    AddCorruptedProcess(message.mQueue.mProcessID);
}

bool GIPCManager::IsDelayedTargetGone(const MessageData&) {
    return false;
}

bool GIPCManager::IsBeingWritten(const GIPCQueueAddress&) const {
    return false;
}

// --- Corrupted processes

bool GIPCManager::IsQueueFailure(const GException& failure) {
    const long id = failure.GetExceptionID();
    return id != GExceptionID::cMessageTooLarge && id != GExceptionID::cCouldNotLockMutex &&
           id != GExceptionID::cOutOfMemory;
}

void GIPCManager::AddCorruptedProcess(long processID) {
    const auto key = static_cast<std::int32_t>(processID);
    if (!mCorrupted.Has(key)) mCorrupted.Append(key);
}

void GIPCManager::CleanupCorruptedProcesses() noexcept {
    while (!mCorrupted.IsEmpty()) {
        const std::int32_t processID = mCorrupted.GetLast();
        mCorrupted.Remove(mCorrupted.GetCount() - 1);
        // An entry that cannot be removed now is met again by the next message to that process.
        RunQuietly([&] { PurgeProcess(processID); });
        for (long position = mDelayed.GetCount() - 1; position >= 0; --position)
            if (mDelayed[position].mQueue.mProcessID == processID) mDelayed.Remove(position);
    }
    RunQuietly([this] { UpdateSubscription(); });
}

void GIPCManager::PurgeProcess(long processID) {
    GetMessageQueueMgr().Unregister(processID);
}

// --- Asking and waiting

bool GIPCManager::IsRunning(long processID) {
    return GProcessInfo::GetInstance()->IsProcessRunning(processID);
}

GIPCManager::ListeningState GIPCManager::GetListeningState(long processID) {
    long session = 0;
    GTable<std::int32_t> registrationIDs;
    GetMessageQueueMgr().GetRegistered(processID, session, registrationIDs);
    if (registrationIDs.IsEmpty()) return cNotListening;
    if (!IsRunning(processID)) return cNotUsable;
    for (long position = registrationIDs.GetCount() - 1; position >= 0; --position)
        if (!CanOpen({static_cast<std::int32_t>(session), static_cast<std::int32_t>(processID),
                      registrationIDs[position]}))
            return cNotUsable;
    return cListening;
}

bool GIPCManager::CanOpen(const GIPCQueueAddress& address) {
    try {
        GIPCMessageQueue queue(address.mSession, address.mProcessID, address.mRegistrationID, mBudget);
        queue.Close();
        return true;
    } catch (const GException& failure) {
        if (!IsQueueFailure(failure)) throw;
        return false;
    }
}

void GIPCManager::WaitTillListening(long processID) {
    while (IsRunning(processID)) {
        if (GetMessageQueueMgr().IsRegistered(processID)) return;
        MilliSleep(cListeningInterval);
    }
    throw GSimpleException(GExceptionID::cTargetNotRunning);
}

void GIPCManager::SetSleepFunction(SleepFunction sleep) noexcept {
    sSleep = sleep;
}

void GIPCManager::MilliSleep(long milliseconds) {
    if (sSleep != nullptr) {
        sSleep(milliseconds);
    } else {
        PSystem::MilliSleep(milliseconds);
    }
}
