#include "framework/ipc/GIPCReceiver.h"

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/ipc/GIPCManager.h"

GIPCReceiver::~GIPCReceiver() {
    while (!mTypes.IsEmpty()) {
        try {
            Unregister(mTypes.GetLast());
        } catch (...) {
            // The receiver is off the list all the same; what failed was the end of listening.
        }
    }
}

void GIPCReceiver::Register(long type) {
    const auto key = static_cast<std::int32_t>(type);
    if (mTypes.Has(key)) return;
    if (mTypes.IsEmpty()) mRegisteredWith = mManager != nullptr ? mManager : GIPCManager::GetInstance();
    if (mRegisteredWith == nullptr) throw GSimpleException(GExceptionID::cIPCNotInitialized);
    mTypes.Reserve(mTypes.GetCount() + 1);
    mRegisteredWith->Register(type, *this);
    mTypes.Append(key);
}

void GIPCReceiver::Unregister(long type) {
    const long position = mTypes.Find(static_cast<std::int32_t>(type));
    if (position < 0) return;
    mTypes.Remove(position);
    mRegisteredWith->Unregister(type, *this);
}
