#include "framework/ipc/GIPCInbox.h"

#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/ipc/GIPCFailure.h"
#include "framework/system/GProcessInfo.h"

namespace {

long GetOwnProcessID() {
    return GProcessInfo::GetInstance()->GetCurrentProcessID();
}

// Any process can spoil the numbers of a registry. Who wants to listen must not be kept out by that.
std::int32_t Enter(GIPCMessageQueueMgr& registry, long processID) {
    try {
        return static_cast<std::int32_t>(registry.Register(processID));
    } catch (const GException& failure) {
        const long id = failure.GetExceptionID();
        if (id != GExceptionID::cNotEnoughData && id != GExceptionID::cSharedMemoryReadFailed) throw;
    }
    registry.Clear();
    return static_cast<std::int32_t>(registry.Register(processID));
}

}  // namespace

GIPCInbox::GIPCInbox(GIPCMessageQueueMgr& registry, GWaitBudget* budget)
    : mRegistry(registry), mBudget(budget) {
    GSharedMemoryLocker locker(registry.GetRegistry());
    const long processID = GetOwnProcessID();
    mRegistrationID = Enter(registry, processID);
    try {
        mEvent.emplace(GIPCMessageQueue::MakeEvent(processID, mRegistrationID));
        bool created = false;
        mQueue = std::make_unique<GIPCMessageQueue>(registry.GetSession(), processID, mRegistrationID,
                                                    created, budget);
    } catch (...) {
        RunQuietly([this] { Unregister(); });
        throw;
    }
}

GIPCInbox::~GIPCInbox() {
    // An entry that stays behind is removed by whoever finds that its queue is gone.
    RunQuietly([this] { Close(); });
}

void GIPCInbox::Close() {
    const std::unique_ptr<GIPCMessageQueue> queue = std::move(mQueue);
    GFirstFailure failure;
    failure.Run([this] { Unregister(); });
    if (queue) failure.Run([&] { queue->Close(); });
    failure.Throw();
}

void GIPCInbox::Unregister() {
    const std::int32_t registrationID = std::exchange(mRegistrationID, 0);
    if (registrationID != 0) mRegistry.Unregister(GetOwnProcessID(), registrationID);
}

bool GIPCInbox::IsIntact() {
    try {
        GTable<std::int32_t> registrationIDs;
        mRegistry.GetRegisteredHere(GetOwnProcessID(), registrationIDs);
        if (!registrationIDs.Has(mRegistrationID)) return false;
        GIPCMessageQueue queue(mRegistry.GetSession(), GetOwnProcessID(), mRegistrationID, mBudget);
        queue.GetLength();
        return true;
    } catch (const GException& failure) {
        if (!GIPCFailure::IsOfTarget(failure)) throw;
        return false;
    }
}

bool GIPCInbox::HasMessages() {
    try {
        return mQueue->HasMessages();
    } catch (const GException& failure) {
        return GIPCFailure::IsOfTarget(failure);
    }
}

void GIPCInbox::Drain(GTable<GSmartPtr<GIPCMessage>>& messages) {
    const long before = messages.GetCount();
    try {
        mQueue->ReadPendingMessages(messages);
    } catch (const GException& failure) {
        if (!GIPCFailure::IsOfTarget(failure)) {
            // The messages stay in the queue; handing them out now would deliver them twice.
            messages.Remove(before, messages.GetCount() - before);
        } else {
            mQueue->Reset();
        }
        throw;
    }
}
