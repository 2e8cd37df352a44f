#include "framework/ipc/GIPCInboxes.h"

#include <algorithm>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/ipc/GIPCClock.h"
#include "framework/ipc/GIPCFailure.h"
#include "framework/system/GSessionInfo.h"

namespace {

// There both names are one object: a second entry would be a second message.
bool RunsInServicesSession() {
    return GSessionInfo::GetInstance()->GetCurrentSessionID() < 1;
}

}  // namespace

GIPCInboxes::GIPCInboxes(GIPCRegistries& registries, GWaitBudget* budget)
    : mOfSession(std::make_unique<GIPCInbox>(registries.GetOfSession(), budget)) {
    if (registries.GetGlobal() == nullptr || RunsInServicesSession()) return;
    try {
        mGlobal = std::make_unique<GIPCInbox>(*registries.GetGlobal(), budget);
    } catch (const GException& failure) {
        if (!GIPCFailure::IsOfTarget(failure)) throw;
    }
}

void GIPCInboxes::Close() {
    GFirstFailure failure;
    if (mGlobal) failure.Run([this] { mGlobal->Close(); });
    failure.Run([this] { mOfSession->Close(); });
    failure.Throw();
}

void GIPCInboxes::Unregister() {
    GFirstFailure failure;
    if (mGlobal) failure.Run([this] { mGlobal->Unregister(); });
    failure.Run([this] { mOfSession->Unregister(); });
    failure.Throw();
}

bool GIPCInboxes::IsIntact() {
    return mOfSession->IsIntact() && (!mGlobal || mGlobal->IsIntact());
}

bool GIPCInboxes::HaveMessages() {
    return mOfSession->HasMessages() || (mGlobal && mGlobal->HasMessages());
}

bool GIPCInboxes::WaitForMessages(long milliseconds) {
    PIPEventImp* const global = mGlobal ? &mGlobal->GetEvent() : nullptr;
    const unsigned long long start = GIPCClock::GetNow();
    for (long pause = 1; !HaveMessages(); pause *= 2) {
        const long left = milliseconds - static_cast<long>(GIPCClock::GetNow() - start);
        if (left <= 0) return false;
        if (!PIPEventImp::WaitForEither(&mOfSession->GetEvent(), global, left)) return HaveMessages();
        if (HaveMessages()) return true;
        // Woken for nothing. Any process can set the event again and again, and must not keep this one busy.
        GIPCClock::Sleep(std::min(pause, left));
    }
    return true;
}

void GIPCInboxes::GetWakeHandles(GTable<void*>& handles) {
    for (GIPCInbox* inbox : {mOfSession.get(), mGlobal.get()})
        if (inbox != nullptr && inbox->GetEvent().IsThere()) handles.Append(inbox->GetEvent().GetHandle());
}

void GIPCInboxes::Drain(GTable<GSmartPtr<GIPCMessage>>& messages) {
    GFirstFailure failure;
    failure.Run([&] { mOfSession->Drain(messages); });
    if (mGlobal) failure.Run([&] { mGlobal->Drain(messages); });
    failure.Throw();
}
