#include "framework/ipc/GIPCListing.h"

#include "framework/core/errors/GException.h"
#include "framework/ipc/GIPCFailure.h"

GIPCListing::GIPCListing(GIPCRegistries& registries, Tidying tidying)
    : mRegistries(registries), mTidying(tidying) {
    GTable<std::int32_t> sessions;
    registries.GetSessions(sessions);
    for (const std::int32_t session : sessions) mPlaces.Append({session, false, Queues()});
}

void GIPCListing::Read(Place& place) {
    if (place.mIsRead) return;
    place.mIsRead = true;
    try {
        if (mRegistries.Read(place.mSession, place.mQueues, mTidying)) mSomeRead = true;
    } catch (const GException& failure) {
        if (GIPCFailure::IsOfSender(failure)) throw;
        if (!mFailure) mFailure = std::current_exception();
    }
}

GIPCListing::Queues GIPCListing::FindQueues(Place& place, long processID) {
    Read(place);
    Queues queues;
    for (const GIPCQueueAddress& queue : place.mQueues)
        if (queue.mProcessID == processID) queues.Append(queue);
    return queues;
}

void GIPCListing::GetProcessIDs(GTable<std::int32_t>& processIDs) {
    processIDs.Clear();
    for (Place& place : mPlaces) {
        Read(place);
        for (const GIPCQueueAddress& queue : place.mQueues)
            if (!processIDs.Has(queue.mProcessID)) processIDs.Append(queue.mProcessID);
    }
}

void GIPCListing::CheckSomethingWasRead() const {
    if (mFailure && !mSomeRead) std::rethrow_exception(mFailure);
}
