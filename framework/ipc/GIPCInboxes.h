#pragma once

#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/memory/GSmartPtr.h"
#include "framework/ipc/GIPCInbox.h"
#include "framework/ipc/GIPCMessage.h"
#include "framework/ipc/GIPCRegistries.h"

/// GIPCInboxes: where this process can be found while it listens: an inbox in its session's registry and,
/// if there is one, another in the registry that all sessions share.
///
/// One thread at a time.
class QUILLON_EXPORT GIPCInboxes {
public:
    /// Throws, having left nothing behind, what making the session's inbox throws. The other one is done
    /// without where the system refuses it. The registries outlive the inboxes.
    GIPCInboxes(GIPCRegistries& registries, GWaitBudget* budget);

    /// Unregisters and closes both; throws only when all has been tried.
    void Close();
    /// Takes the entries back, so that nobody finds the queues any more; throws like Close.
    void Unregister();
    /// That of the session's registry.
    long GetRegistrationID() const noexcept { return mOfSession->GetRegistrationID(); }
    /// Whether others find both. Throws GExceptionID::cCouldNotLockMutex when that could not be found out in
    /// time.
    bool IsIntact();
    /// Waits until a message has come, at most so many milliseconds; true when one is there. Without events
    /// it looks at the end only.
    bool WaitForMessages(long milliseconds);
    /// Appends the system's handles of the events that there are.
    void GetWakeHandles(GTable<void*>& handles);
    /// Appends what is waiting to `messages`, as GIPCInbox does; throws only when both have been tried.
    void Drain(GTable<GSmartPtr<GIPCMessage>>& messages);

private:
    bool HaveMessages();

    std::unique_ptr<GIPCInbox> mOfSession;
    std::unique_ptr<GIPCInbox> mGlobal;  // null where one is enough
};
