#include "framework/ipc/GIPCRegistries.h"

#include "framework/core/errors/GException.h"
#include "framework/ipc/GIPCFailure.h"
#include "framework/system/GSessionInfo.h"

namespace {

constexpr std::int32_t cAllSessions = -1;

GBuffer GetPath(long session) {
    GBuffer path;
    GSessionInfo::GetInstance()->GetSessionPath(path, session);
    return path;
}

}  // namespace

void GIPCRegistries::Open() {
    using Scope = GIPCMessageQueueMgr::Scope;
    if (mOfSession) return;
    auto ofSession = std::make_unique<GIPCMessageQueueMgr>(mRules.mRegistryID,
                                                           GSessionInfo::GetInstance()->GetCurrentSessionID(),
                                                           Scope::cEverySession, mRules.mBudget);
    if (IsGlobalAnotherOne()) {
        try {
            mGlobal = std::make_unique<GIPCMessageQueueMgr>(mRules.mRegistryID, cAllSessions, Scope::cOwnOnly,
                                                            mRules.mBudget);
        } catch (const GException& failure) {
            // An ordinary user may not make global objects; those of his session do for him.
            if (!GIPCFailure::IsOfTarget(failure)) throw;
        }
    }
    mOfSession = std::move(ofSession);
}

bool GIPCRegistries::IsGlobalAnotherOne() const {
    return mRules.mUsesGlobalRegistry &&
           GetPath(GSessionInfo::GetInstance()->GetCurrentSessionID()) != GetPath(cAllSessions);
}

void GIPCRegistries::Close() noexcept {
    mGlobal.reset();
    mOfSession.reset();
}

GIPCMessageQueueMgr& GIPCRegistries::GetOfSession() {
    Open();
    return *mOfSession;
}

GIPCMessageQueueMgr* GIPCRegistries::GetGlobal() {
    Open();
    return mGlobal.get();
}

void GIPCRegistries::GetSessions(GTable<std::int32_t>& sessions) {
    GTable<std::int32_t> all;
    GetOfSession().GetSessions(all);
    sessions.Clear();
    if (mRules.mUsesGlobalRegistry) {
        // A queue in the same session is the one that its owner surely has.
        sessions.Append(static_cast<std::int32_t>(mOfSession->GetSession()));
        if (mGlobal) sessions.Append(cAllSessions);
    }
    for (const std::int32_t session : all)
        if (!sessions.Has(session)) sessions.Append(session);
}

bool GIPCRegistries::Read(long session, GTable<GIPCQueueAddress>& queues,
                          GIPCMessageQueueMgr::Tidying tidying) {
    Open();
    GIPCMessageQueueMgr& registry = mGlobal && session == cAllSessions ? *mGlobal : *mOfSession;
    return registry.ReadSession(session, queues, tidying);
}

void GIPCRegistries::Purge(long processID) {
    Open();
    if (mGlobal) mGlobal->Unregister(processID);
    mOfSession->Unregister(processID);
}
