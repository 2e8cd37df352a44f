#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCMessage.h"

class GIPCManager;

/// GIPCReceiver: base of what handles messages from other processes.
///
/// Registered for a message type, it is handed each message of that type, on the thread that fires the
/// repeater signal. It takes its registrations back when it is destroyed. Used on its manager's thread.
class QUILLON_EXPORT GIPCReceiver {
public:
    /// `manager` null is the framework's own instance at the time of registering. A manager that goes
    /// first takes the registrations with it; one that was given must not be gone when registering.
    explicit GIPCReceiver(GIPCManager* manager = nullptr) noexcept : mManager(manager) {}
    GIPCReceiver(const GIPCReceiver&) = delete;
    GIPCReceiver& operator=(const GIPCReceiver&) = delete;
    virtual ~GIPCReceiver();

    /// May register and unregister receivers, this one too. What it throws leaves the tick that
    /// delivered the message, after the other messages of that tick were delivered.
    virtual void HandleIPCMessage(const GIPCMessage& message) = 0;

    /// From the first registration on this process listens. Registering twice is as good as once. Throws
    /// GExceptionID::cIPCNotInitialized when there is no manager, and what the manager throws.
    void Register(long type);
    /// The last registration to go ends the listening. A type that is not registered is no error.
    void Unregister(long type);

private:
    friend class GIPCReceivers;

    void ForgetRegistrations() noexcept { mTypes.Clear(); }

    GIPCManager* mManager;                   // null: the framework's own
    GIPCManager* mRegisteredWith = nullptr;  // while there are registrations
    GTable<std::int32_t> mTypes;
};
