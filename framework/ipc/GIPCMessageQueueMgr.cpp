#include "framework/ipc/GIPCMessageQueueMgr.h"

#include <exception>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/ipc/GIPCMessageQueue.h"
#include "framework/system/GOSVersion.h"
#include "framework/system/GProcessInfo.h"
#include "framework/system/GSessionInfo.h"
#include "framework/system/PSystem.h"

namespace {

using Entry = GIPCRegistryEntries::Entry;

// Whether a registry may lie in the name space of the whole machine.
bool SharesOneNameSpace() {
    if (PSystem::GetPlatformCode() != PSystem::cPlatformWindows) return true;
    return !GOSVersion::HasGlobalMutexes(PSystem::GetOSCode());
}

Entry MakeEntry(long processID, long registrationID) {
    return {static_cast<std::int32_t>(processID), static_cast<std::int32_t>(registrationID)};
}

/// The generator behind the standard library's rand_r, whatever the library at hand does.
class RegistrationIDs {
public:
    explicit RegistrationIDs(std::uint32_t seed) noexcept : mState(seed) {}
    /// 1 to 32767.
    std::int32_t Draw() noexcept {
        std::uint32_t candidate = 0;
        do {
            mState = mState * 1103515245U + 12345U;
            candidate = (mState >> 16) & 0x7FFF;
        } while (candidate == 0);
        return static_cast<std::int32_t>(candidate);
    }

private:
    std::uint32_t mState;
};

}  // namespace

const GShMemID& GIPCMessageQueueMgr::GetRegistryID(ManagerType type) {
    return GShMemID::GetSpecialID(type == cTest ? GShMemID::cTestRegistry : GShMemID::cRegistry);
}

GBuffer GIPCMessageQueueMgr::GetMemoryPath() {
    return GetMemoryPath(GSessionInfo::GetInstance()->GetCurrentSessionID());
}

GBuffer GIPCMessageQueueMgr::GetMemoryPath(long session) {
    GBuffer path;
    GSessionInfo::GetInstance()->GetSessionPath(path, session);
    return path;
}

GIPCMessageQueueMgr::GIPCMessageQueueMgr(ManagerType type, GWaitBudget* budget)
    : GIPCMessageQueueMgr(GetRegistryID(type), GSessionInfo::GetInstance()->GetCurrentSessionID(),
                          Scope::cEverySession, budget) {}

GIPCMessageQueueMgr::GIPCMessageQueueMgr(const GShMemID& identifier, long session, Scope scope,
                                         GWaitBudget* budget)
    : mIdentifier(identifier),
      mSession(static_cast<std::int32_t>(session)),
      mScope(scope),
      mBudget(budget),
      mRegistry(GetMemoryPath(session), identifier, {cRegistryLength, GIPCRegistryEntries::GetLength(1)},
                mCreated, budget, &GIPCRegistryEntries::CheckOrWriteHeader) {}

GIPCMessageQueueMgr::~GIPCMessageQueueMgr() {
    // Whoever sends to an entry that stays behind finds its queue gone, and then removes it.
    RunQuietly([this] { UnregisterOwn(); });
}

// --- Entering

std::int32_t GIPCMessageQueueMgr::FindUnusedRegistrationID(const GIPCRegistryEntries& entries) {
    RegistrationIDs candidates(GIPCRegistryEntries::CountUpSeed(mRegistry));
    std::int32_t candidate = candidates.Draw();
    while (entries.HasRegistrationID(candidate)) candidate = candidates.Draw();
    return candidate;
}

long GIPCMessageQueueMgr::Register(long processID) {
    mOwn.Reserve(mOwn.GetCount() + 1);
    // One hold for the search and the entry: nobody else can take the ID in between.
    GSharedMemoryLocker locker(mRegistry);
    GIPCRegistryEntries entries(mRegistry);
    if (entries.IsFull()) Tidy(mRegistry, mSession, entries);
    if (entries.IsFull()) throw GSimpleException(GExceptionID::cNotEnoughSpace);
    const Entry entry = MakeEntry(processID, FindUnusedRegistrationID(entries));
    entries.Append(entry);
    entries.Write(mRegistry, entries.GetCount() - 1);
    mOwn.Append({mSession, entry.mProcessID, entry.mRegistrationID});
    return entry.mRegistrationID;
}

void GIPCMessageQueueMgr::Clear() {
    GSharedMemoryLocker locker(mRegistry);
    mRegistry.RestoreLength(cRegistryLength);
    GIPCRegistryEntries::RemoveAll(mRegistry);
}

void GIPCMessageQueueMgr::Unregister(long processID, long registrationID) {
    {
        GSharedMemoryLocker locker(mRegistry);
        GIPCRegistryEntries entries(mRegistry);
        const long position = entries.Find(MakeEntry(processID, registrationID));
        if (position < 0) return;
        entries.Remove(position);
        entries.Write(mRegistry, position);
    }
    ForgetOwn(processID, registrationID);
}

void GIPCMessageQueueMgr::Unregister(long processID) {
    GSharedMemoryLocker locker(mRegistry);
    GIPCRegistryEntries entries(mRegistry);
    const long before = entries.GetCount();
    entries.KeepIf([=](const Entry& entry) { return entry.mProcessID != processID; });
    if (entries.GetCount() < before) entries.Write(mRegistry, 0);
}

void GIPCMessageQueueMgr::UnregisterOwn() {
    while (!mOwn.IsEmpty()) {
        const GIPCQueueAddress own = mOwn.GetLast();
        Unregister(own.mProcessID, own.mRegistrationID);
        // It may have been purged by somebody else, and then was not found.
        ForgetOwn(own.mProcessID, own.mRegistrationID);
    }
}

void GIPCMessageQueueMgr::ForgetOwn(long processID, long registrationID) {
    const Entry entry = MakeEntry(processID, registrationID);
    const long position = mOwn.Find({mSession, entry.mProcessID, entry.mRegistrationID});
    if (position >= 0) mOwn.Remove(position);
}

// Removes the entries that do not count and those of processes that have ended. When that makes no room,
// somebody has filled the registry on purpose; entries without a queue go, too. The segment is locked.
void GIPCMessageQueueMgr::Tidy(GSharedMemory& registry, long session, GIPCRegistryEntries& entries) {
    const GTable<std::int32_t> running = GProcessInfo::GetInstance()->GetRunningProcessIDs();
    const long before = entries.GetCount();
    entries.KeepWhatCounts();
    entries.KeepIf([&](const Entry& entry) { return running.Has(entry.mProcessID); });
    if (entries.IsFull()) {
        const GBuffer path = GetMemoryPath(session);
        entries.KeepIf([&](const Entry& entry) {
            return GIPCMessageQueue::Exists(path, entry.mProcessID, entry.mRegistrationID);
        });
    }
    if (entries.GetCount() < before) entries.Write(registry, 0);
}

// --- Looking up

bool GIPCMessageQueueMgr::IsRegistered(long processID) {
    GTable<std::int32_t> registrationIDs;
    GetRegisteredHere(processID, registrationIDs);
    return !registrationIDs.IsEmpty();
}

void GIPCMessageQueueMgr::GetRegisteredHere(long processID, GTable<std::int32_t>& registrationIDs) {
    registrationIDs.Clear();
    GTable<GIPCQueueAddress> queues;
    ReadSession(mSession, queues);
    for (const GIPCQueueAddress& queue : queues)
        if (queue.mProcessID == processID) registrationIDs.Append(queue.mRegistrationID);
}

// The pseudo-session only where it is a name space of its own, and this registry's own session even when
// the system does not list it.
void GIPCMessageQueueMgr::GetSessions(GTable<std::int32_t>& sessions) const {
    sessions.Clear();
    if (mScope == Scope::cEverySession) {
        GTable<std::int32_t> all;
        GSessionInfo::GetInstance()->GetSessionIDs(all);
        for (const std::int32_t session : all)
            if (session >= 0 || session == mSession || SharesOneNameSpace()) sessions.Append(session);
    }
    if (!sessions.Has(mSession)) sessions.Append(mSession);
}

bool GIPCMessageQueueMgr::ReadSession(long session, GTable<GIPCQueueAddress>& queues, Tidying tidying) {
    if (session == mSession) {
        Read(mRegistry, session, queues, tidying);
        return true;
    }
    const GBuffer path = GetMemoryPath(session);
    if (!PSharedMemory::Exists(path, GIPPrefix::AddPrefix(GIPPrefix::cSharedMemory, mIdentifier)))
        return false;
    GSharedMemory registry(path, mIdentifier, mBudget, &GIPCRegistryEntries::CheckOrWriteHeader);
    Read(registry, session, queues, tidying);
    return true;
}

void GIPCMessageQueueMgr::Read(GSharedMemory& registry, long session, GTable<GIPCQueueAddress>& queues,
                               Tidying tidying) {
    GSharedMemoryLocker locker(registry);
    GIPCRegistryEntries entries(registry);
    // What keeps it from being tidied does not keep it from being read.
    if (tidying == Tidying::cWhenCrowded && entries.IsCrowded())
        RunQuietly([&] { Tidy(registry, session, entries); });
    entries.CollectQueues(session, queues);
}

// Calls visit(queues) with the queues in each session's registry until it returns false. Anybody can spoil
// the registry of his session, so one that cannot be read must not hide the others.
template <class Visit>
void GIPCMessageQueueMgr::VisitSessions(Visit visit) {
    GTable<std::int32_t> sessions;
    GetSessions(sessions);
    std::exception_ptr failure;
    bool someRead = false;
    for (const std::int32_t session : sessions) {
        GTable<GIPCQueueAddress> queues;
        try {
            if (!ReadSession(session, queues)) continue;
        } catch (const GMemoryException&) {
            throw;
        } catch (const GException&) {
            if (!failure) failure = std::current_exception();
            continue;
        }
        someRead = true;
        if (!visit(queues)) return;
    }
    if (failure && !someRead) std::rethrow_exception(failure);
}

void GIPCMessageQueueMgr::GetRegistered(long processID, long& session,
                                        GTable<std::int32_t>& registrationIDs) {
    registrationIDs.Clear();
    VisitSessions([&](const GTable<GIPCQueueAddress>& queues) {
        for (const GIPCQueueAddress& queue : queues) {
            if (queue.mProcessID != processID) continue;
            session = queue.mSession;
            registrationIDs.Append(queue.mRegistrationID);
        }
        return registrationIDs.IsEmpty();
    });
}

void GIPCMessageQueueMgr::GetRegistered(GTable<GIPCQueueAddress>& queues) {
    queues.Clear();
    VisitSessions([&](const GTable<GIPCQueueAddress>& found) {
        for (const GIPCQueueAddress& queue : found) queues.Append(queue);
        return true;
    });
}
