#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "PPlatformIPC.h"
#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/memory/GSmartPtr.h"
#include "framework/ipc/GIPCMessage.h"
#include "framework/ipc/GIPCMessageQueue.h"
#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "framework/ipc/GWaitBudget.h"

/// GIPCInbox: this process's entry in a registry and the queue behind it, for as long as it lives.
class QUILLON_EXPORT GIPCInbox {
public:
    /// Registers this process and makes its queue. Nobody can find the entry before the queue is there.
    /// Throws, having left nothing behind, what either throws. The registry outlives the inbox.
    explicit GIPCInbox(GIPCMessageQueueMgr& registry, GWaitBudget* budget = nullptr);
    GIPCInbox(const GIPCInbox&) = delete;
    GIPCInbox& operator=(const GIPCInbox&) = delete;
    /// Closes, and keeps failures to itself.
    ~GIPCInbox();

    /// Unregisters and closes the queue; throws only when both have been tried.
    void Close();
    /// Takes the entry back, so that nobody finds the queue any more.
    void Unregister();
    long GetRegistrationID() const noexcept { return mRegistrationID; }  ///< 1 to 32767; 0 once taken back
    /// Whether others find it: the entry stands in the registry, and the queue can be opened by its name.
    /// Throws GExceptionID::cCouldNotLockMutex when that could not be found out in time.
    bool IsIntact();
    /// True when anything is waiting, and when the queue makes no sense, so that draining it comes next.
    bool HasMessages();
    /// The event that whoever appends to the queue sets.
    PIPEventImp& GetEvent() noexcept { return *mEvent; }
    /// Appends what is waiting to `messages`. When the queue makes no sense, what could be read of it is
    /// in the table, the queue is made an empty one, so that it can be used again, and the exception is
    /// thrown. Any other failure leaves both as they were.
    void Drain(GTable<GSmartPtr<GIPCMessage>>& messages);

private:
    GIPCMessageQueueMgr& mRegistry;
    GWaitBudget* mBudget;
    std::int32_t mRegistrationID;  // 0 once unregistered
    std::optional<PIPEventImp> mEvent;
    std::unique_ptr<GIPCMessageQueue> mQueue;
};
