#include "framework/ipc/GIPCReceivers.h"

#include "framework/core/errors/GFirstFailure.h"
#include "framework/core/memory/GRefCount.h"
#include "framework/ipc/GIPCReceiver.h"

/// The receivers of one type. It outlives its entry in the table while a message is handed out.
struct GIPCReceivers::List : public GRefCount {
    GTable<GIPCReceiver*> mReceivers;
};

GIPCReceivers::GIPCReceivers() = default;

GIPCReceivers::~GIPCReceivers() {
    for (auto& entry : mLists)
        for (GIPCReceiver* receiver : entry.GetValue()->mReceivers) receiver->ForgetRegistrations();
}

void GIPCReceivers::Add(long type, GIPCReceiver& receiver) {
    const auto key = static_cast<std::int32_t>(type);
    if (const GSmartPtr<List>* list = mLists.Find(key)) {
        GTable<GIPCReceiver*>& receivers = (*list)->mReceivers;
        if (!receivers.Has(&receiver)) receivers.Append(&receiver);
        return;
    }
    const GSmartPtr<List> list(new List);
    list->mReceivers.Append(&receiver);
    mLists.Set(key, list);
}

void GIPCReceivers::Remove(long type, GIPCReceiver& receiver) {
    const auto key = static_cast<std::int32_t>(type);
    const GSmartPtr<List>* list = mLists.Find(key);
    if (list == nullptr) return;
    GTable<GIPCReceiver*>& receivers = (*list)->mReceivers;
    const long position = receivers.Find(&receiver);
    if (position >= 0) receivers.Remove(position);
    if (receivers.IsEmpty()) mLists.Remove(key);
}

void GIPCReceivers::Dispatch(const GIPCMessage& message) {
    const GSmartPtr<List>* found = mLists.Find(static_cast<std::int32_t>(message.GetType()));
    if (found == nullptr) return;
    const GSmartPtr<List> list = *found;
    GFirstFailure failure;
    GTableIterator<GIPCReceiver*> receivers(list->mReceivers);
    while (GIPCReceiver** receiver = receivers.Next())
        failure.Run([&] { (*receiver)->HandleIPCMessage(message); });
    failure.Throw();
}
