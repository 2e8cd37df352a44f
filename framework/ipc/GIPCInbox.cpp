#include "framework/ipc/GIPCInbox.h"

#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/system/GProcessInfo.h"

namespace {

long GetOwnProcessID() {
    return GProcessInfo::GetInstance()->GetCurrentProcessID();
}

bool IsAboutTheQueue(const GException& failure) {
    const long id = failure.GetExceptionID();
    return id != GExceptionID::cOutOfMemory && id != GExceptionID::cCouldNotLockMutex;
}

}  // namespace

GIPCInbox::GIPCInbox(GIPCMessageQueueMgr& registry, GWaitBudget* budget)
    : mRegistry(registry), mBudget(budget) {
    GSharedMemoryLocker locker(registry.GetRegistry());
    const long processID = GetOwnProcessID();
    mRegistrationID = static_cast<std::int32_t>(registry.Register(processID));
    try {
        bool created = false;
        mQueue = std::make_unique<GIPCMessageQueue>(registry.GetSession(), processID, mRegistrationID,
                                                    created, budget);
    } catch (...) {
        UnregisterQuietly();
        throw;
    }
}

GIPCInbox::~GIPCInbox() {
    try {
        Close();
    } catch (...) {
        // See UnregisterQuietly; and a handle that cannot be closed goes with the process.
    }
}

void GIPCInbox::Close() {
    const std::unique_ptr<GIPCMessageQueue> queue = std::move(mQueue);
    if (mRegistrationID != 0) Unregister();
    if (queue) queue->Close();
}

void GIPCInbox::Unregister() {
    mRegistry.Unregister(GetOwnProcessID(), std::exchange(mRegistrationID, 0));
}

void GIPCInbox::UnregisterQuietly() noexcept {
    try {
        Unregister();
    } catch (...) {
        // An entry that stays behind is removed by whoever finds that its queue is gone.
    }
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
        if (!IsAboutTheQueue(failure)) throw;
        return false;
    }
}

void GIPCInbox::Drain(GTable<GSmartPtr<GIPCMessage>>& messages) {
    const long before = messages.GetCount();
    try {
        mQueue->ReadPendingMessages(messages);
    } catch (const GException& failure) {
        if (!IsAboutTheQueue(failure)) {
            // The messages stay in the queue; handing them out now would deliver them twice.
            messages.Remove(before, messages.GetCount() - before);
        } else {
            mQueue->Reset();
        }
        throw;
    }
}
