#include "framework/ipc/GIPCManager.h"

#include <mutex>
#include <utility>

#include "framework/core/errors/GAtScopeEnd.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/core/events/GBasicSignals.h"
#include "framework/ipc/GIPCClock.h"
#include "framework/ipc/GIPCFailure.h"
#include "framework/system/GProcessInfo.h"

namespace {

constexpr long cListeningInterval = 100;  // milliseconds between two looks for a process to listen

using Lock = std::lock_guard<PCriticalSection>;

GIPCRules MakeRules(GWaitBudget* budget) {
    GIPCRules rules;
    rules.mBudget = budget;
    return rules;
}

bool IsRunning(long processID) {
    return GProcessInfo::GetInstance()->IsProcessRunning(processID);
}

}  // namespace

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

GIPCManager::GIPCManager(GWaitBudget* budget) : GIPCManager(MakeRules(budget)) {}

GIPCManager::GIPCManager(const GIPCRules& rules) : mRules(rules), mRegistries(mRules), mOutbox(mRules) {}

GIPCManager::~GIPCManager() {
    mOutbox.Clear();
    RunQuietly([this] { StopListening(); });
}

// --- Receiving

void GIPCManager::Register(long type, GIPCReceiver& receiver) {
    mReceivers.Add(type, receiver);
    if (mInboxes) return;
    try {
        mInboxes = std::make_unique<GIPCInboxes>(mRegistries, mRules.mBudget);
        UpdateSubscription();
    } catch (...) {
        RunQuietly([&] { Unregister(type, receiver); });
        throw;
    }
}

void GIPCManager::Unregister(long type, GIPCReceiver& receiver) {
    mReceivers.Remove(type, receiver);
    if (mReceivers.IsEmpty() && mInboxes) StopListening();
}

void GIPCManager::StopListening() {
    const std::unique_ptr<GIPCInboxes> inboxes = std::move(mInboxes);
    UpdateSubscription();
    GFirstFailure failure;
    if (inboxes) failure.Run([&] { inboxes->Close(); });
    mRegistries.Close();
    failure.Throw();
}

long GIPCManager::GetRegistrationID() const noexcept {
    return mInboxes ? mInboxes->GetRegistrationID() : 0;
}

bool GIPCManager::IsStillRegistered() {
    return mInboxes && mInboxes->IsIntact();
}

void GIPCManager::Reregister() {
    if (!mInboxes) return;
    std::unique_ptr<GIPCInboxes> old;
    {
        // One mutex guards all registries: a sender finds the old entries or the new ones, never both.
        GSharedMemoryLocker locker(mRegistries.GetOfSession().GetRegistry());
        old = std::exchange(mInboxes, std::make_unique<GIPCInboxes>(mRegistries, mRules.mBudget));
        RunQuietly([&] { old->Unregister(); });
    }
    GTable<GSmartPtr<GIPCMessage>> messages;
    RunQuietly([&] { old->Drain(messages); });
    Dispatch(messages);
}

bool GIPCManager::WaitForMessages(long milliseconds) {
    if (mInboxes) return mInboxes->WaitForMessages(milliseconds);
    GIPCClock::Sleep(milliseconds);
    return false;
}

GTable<void*> GIPCManager::GetWakeHandles() {
    GTable<void*> handles;
    if (mInboxes) mInboxes->GetWakeHandles(handles);
    return handles;
}

void GIPCManager::UpdateSubscription() {
    const bool wanted = mInboxes || mOutbox.GetCount() > 0;
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
    const Lock lock(GetReceiverLock());
    if (signalNumber == GBasicSignals::cRepeaterSignal) ForceProcessPendingMessages();
}

void GIPCManager::ForceProcessPendingMessages() {
    GFirstFailure failure;
    failure.Run([this] { SendDelayedMessages(); });
    failure.Run([this] { ProcessReceivedMessages(); });
    failure.Throw();
}

void GIPCManager::ProcessReceivedMessages() {
    if (!mInboxes) return;
    GTable<GSmartPtr<GIPCMessage>> messages;
    GFirstFailure failure;
    failure.Run([&] { mInboxes->Drain(messages); });
    failure.Run([&] { Dispatch(messages); });
    failure.Throw();
}

void GIPCManager::Dispatch(const GTable<GSmartPtr<GIPCMessage>>& messages) {
    GFirstFailure failure;
    for (const GSmartPtr<GIPCMessage>& message : messages)
        failure.Run([&] { mReceivers.Dispatch(*message); });
    failure.Throw();
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
    SendToProcess(processID, {type, data, false});
}

void GIPCManager::SendOnceRaw(long processID, long type, const GBuffer& data) {
    SendToProcess(processID, {type, data, true});
}

void GIPCManager::BroadcastRaw(long type, const GBuffer& data) {
    SendToAll({type, data, false});
}

void GIPCManager::BroadcastOnceRaw(long type, const GBuffer& data) {
    SendToAll({type, data, true});
}

void GIPCManager::SendToProcess(long processID, const GIPCPost& post) {
    const Lock lock(GetReceiverLock());
    const GAtScopeEnd cleanup([this]() noexcept { CleanupCorruptedProcesses(); });
    GIPCListing listing(mRegistries);
    GIPCDelivery delivery(mRules, listing, mOutbox, post);
    const Attempt attempt = delivery.PostTo(processID);
    const bool succeeded = mRules.mOneQueueIsEnough ? attempt.mIsReached : attempt.mIsComplete;
    if (!succeeded && attempt.mFailure) {
        Blame(processID, attempt.mFailure);
        std::rethrow_exception(attempt.mFailure);
    }
    if (!attempt.mIsRegistered) listing.CheckSomethingWasRead();
    delivery.WaitTillTaken();
}

GIPCManager::Told GIPCManager::SendOnceRaw(const std::function<bool(std::int32_t)>& isWanted, long type,
                                           const GBuffer& data) {
    const Lock lock(GetReceiverLock());
    const GAtScopeEnd cleanup([this]() noexcept { CleanupCorruptedProcesses(); });
    const GIPCPost post{type, data, true};
    GIPCListing listing(mRegistries, GIPCListing::Tidying::cWhenCrowded);
    GIPCDelivery delivery(mRules, listing, mOutbox, post);
    GTable<std::int32_t> registered;
    listing.GetProcessIDs(registered);
    GTable<std::int32_t> wanted;
    for (const std::int32_t processID : registered)
        if (isWanted(processID)) wanted.Append(processID);
    Told told;
    for (const std::int32_t processID : wanted) {
        const Attempt attempt = delivery.PostTo(processID);
        if (attempt.mIsReached) {
            ++told.mReached;
        } else if (attempt.mListens) {
            ++told.mFailed;
            Blame(processID, attempt.mFailure);
        }
    }
    listing.CheckSomethingWasRead();
    delivery.WaitTillTaken();
    return told;
}

void GIPCManager::SendToAll(const GIPCPost& post) {
    const Lock lock(GetReceiverLock());
    const GAtScopeEnd cleanup([this]() noexcept { CleanupCorruptedProcesses(); });
    GIPCListing listing(mRegistries);
    GIPCDelivery delivery(mRules, listing, mOutbox, post);
    GTable<std::int32_t> processIDs;
    listing.GetProcessIDs(processIDs);
    listing.CheckSomethingWasRead();
    for (const std::int32_t processID : processIDs) {
        try {
            const Attempt attempt = delivery.PostTo(processID);
            if (!attempt.mIsReached && attempt.mFailure) Blame(processID, attempt.mFailure);
        } catch (const GException&) {
            // What one target cannot take is not the others' loss.
        }
    }
    delivery.WaitTillTaken();
}

void GIPCManager::SendDelayedMessages() {
    GTable<std::int32_t> broken;
    mOutbox.Retry(broken);
    // Where one queue is enough, another one of the process may be in order.
    if (!mRules.mOneQueueIsEnough)
        for (const std::int32_t processID : broken) mCorrupted.Append(processID);
    CleanupCorruptedProcesses();
}

// --- Processes whose queues are gone or broken

void GIPCManager::Blame(long processID, const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const GException& reason) {
        if (GIPCFailure::IsOfTarget(reason)) mCorrupted.Append(static_cast<std::int32_t>(processID));
    }
}

void GIPCManager::CleanupCorruptedProcesses() noexcept {
    while (!mCorrupted.IsEmpty()) {
        const std::int32_t processID = mCorrupted.GetLast();
        mCorrupted.Remove(mCorrupted.GetCount() - 1);
        // An entry that cannot be removed now is met again by the next message to that process.
        RunQuietly([&] { mRegistries.Purge(processID); });
        mOutbox.Discard(processID);
    }
    RunQuietly([this] { UpdateSubscription(); });
}

// --- Asking and waiting

GIPCManager::ListeningState GIPCManager::GetListeningState(long processID) {
    GIPCListing listing(mRegistries);
    bool isRegistered = false;
    bool isUsable = false;
    GFirstFailure failure;
    listing.TryRegistries(processID, [&](const GIPCListing::Queues& queues) {
        if (!std::exchange(isRegistered, true) && !IsRunning(processID)) return true;
        failure.Run([&] { isUsable = AreUsable(queues); });
        return isUsable || !mRules.mOneQueueIsEnough;
    });
    if (isUsable) return cListening;
    failure.Throw();
    if (isRegistered) return cNotUsable;
    listing.CheckSomethingWasRead();
    return cNotListening;
}

// The newest queue is the most likely one to be in order. What cannot be found out about one is thrown only
// when no other one decides.
bool GIPCManager::AreUsable(const GIPCListing::Queues& queues) {
    GFirstFailure failure;
    for (long position = queues.GetCount() - 1; position >= 0; --position) {
        bool isUsable = false;
        const bool isKnown = failure.Run([&] { isUsable = IsUsable(queues[position]); });
        if (isKnown && isUsable == mRules.mOneQueueIsEnough) return isUsable;
    }
    failure.Throw();
    return !mRules.mOneQueueIsEnough;
}

// Throws what does not tell (GIPCFailure).
bool GIPCManager::IsUsable(const GIPCQueueAddress& queue) {
    try {
        const GIPCMessageQueue opened(queue.mSession, queue.mProcessID, queue.mRegistrationID,
                                      mRules.mBudget);
        return true;
    } catch (const GException& failure) {
        if (!GIPCFailure::IsOfTarget(failure)) throw;
        return false;
    }
}

void GIPCManager::WaitTillListening(long processID) {
    while (IsRunning(processID)) {
        if (mRegistries.GetOfSession().IsRegistered(processID)) return;
        GIPCClock::Sleep(cListeningInterval);
    }
    throw GSimpleException(GExceptionID::cTargetNotRunning);
}
