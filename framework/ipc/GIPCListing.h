#pragma once

#include <cstdint>
#include <exception>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCQueueAddress.h"
#include "framework/ipc/GIPCRegistries.h"

/// GIPCListing: who is registered where, for the length of one piece of work. Each registry is read once,
/// when it is first needed, however many processes are looked up.
///
/// A registry that cannot be read is taken for one that knows nobody. One thread at a time.
class QUILLON_EXPORT GIPCListing {
public:
    using Queues = GTable<GIPCQueueAddress>;       ///< where the processes' queues are found
    using Tidying = GIPCMessageQueueMgr::Tidying;  ///< what reading a registry does with a crowded one

    /// The registries outlive it.
    explicit GIPCListing(GIPCRegistries& registries, Tidying tidying = Tidying::cNever);

    /// Calls tryQueues(queues) with the queues that a process has in a registry, one registry after the
    /// other, those that a sender prefers first, until it returns true.
    template <class TryQueues>
    void TryRegistries(long processID, TryQueues tryQueues) {
        for (Place& place : mPlaces) {
            const Queues queues = FindQueues(place, processID);
            if (!queues.IsEmpty() && tryQueues(queues)) return;
        }
    }
    /// Replaces `processIDs` with everybody who is registered anywhere.
    void GetProcessIDs(GTable<std::int32_t>& processIDs);
    /// Throws why, when not one of the registries that were needed so far could be read.
    void CheckSomethingWasRead() const;

private:
    struct Place {
        std::int32_t mSession;
        bool mIsRead;
        Queues mQueues;
    };

    void Read(Place& place);
    Queues FindQueues(Place& place, long processID);

    GIPCRegistries& mRegistries;
    Tidying mTidying;
    GTable<Place> mPlaces;
    bool mSomeRead = false;
    std::exception_ptr mFailure;
};
