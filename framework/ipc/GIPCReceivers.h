#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/memory/GSmartPtr.h"
#include "framework/ipc/GIPCMessage.h"

class GIPCReceiver;

/// GIPCReceivers: who wants the messages of which type, and the handing out.
///
/// Receivers are not owned. One thread at a time.
class QUILLON_EXPORT GIPCReceivers {
public:
    GIPCReceivers();
    GIPCReceivers(const GIPCReceivers&) = delete;
    GIPCReceivers& operator=(const GIPCReceivers&) = delete;
    /// The receivers that are left forget their registrations.
    ~GIPCReceivers();

    bool IsEmpty() const noexcept { return mLists.IsEmpty(); }  ///< whether nobody is registered for any type
    /// Behind the others of the type; one that is there stays where it is.
    void Add(long type, GIPCReceiver& receiver);
    void Remove(long type, GIPCReceiver& receiver);  ///< one that is not there is no error
    /// Hands the message to each receiver of its type, in order. They may be added and removed meanwhile,
    /// also by each other: one that is added is served as well, one that is removed is not. Throws the
    /// first of what they threw, after the last one.
    void Dispatch(const GIPCMessage& message);

private:
    struct List;

    GDict<std::int32_t, GSmartPtr<List>> mLists;
};
