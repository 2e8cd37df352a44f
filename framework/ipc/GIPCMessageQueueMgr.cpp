#include "framework/ipc/GIPCMessageQueueMgr.h"

#include <array>
#include <cstring>
#include <ctime>
#include <exception>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/ipc/GShMemWord.h"
#include "framework/system/GSessionInfo.h"
#include "framework/system/PSystem.h"

namespace {

constexpr long cVersion = 1;
constexpr long cVersionOffset = 0;
constexpr long cSeedOffset = 4;
constexpr long cEndOffset = 8;    // where the end offset stands
constexpr long cFirstEntry = 12;  // and what it is in an empty registry
constexpr long cEntrySize = 8;    // process ID, registration ID

// The systems whose kernel objects know no sessions, so that all processes share one name space.
constexpr long cFirstWithoutSessions = 3003;
constexpr long cLastWithoutSessions = 3008;

bool SharesOneNameSpace() {
    if (PSystem::GetPlatformCode() != PSystem::cPlatformWindows) return true;
    const long code = PSystem::GetOSCode();
    return code >= cFirstWithoutSessions && code <= cLastWithoutSessions;
}

long GetRunTime() {
    return static_cast<long>(static_cast<long long>(std::clock()) * 1000 / CLOCKS_PER_SEC);
}

/// The generator behind the standard library's rand_r, whatever the library at hand does.
class RegistrationIDs {
public:
    explicit RegistrationIDs(std::uint32_t seed) noexcept : mState(seed) {}
    /// 1 to 32767.
    std::int32_t Draw() noexcept {
        std::uint32_t candidate = 0;
        do {
            mState = mState * 1103515245u + 12345u;
            candidate = (mState >> 16) & 0x7FFF;
        } while (candidate == 0);
        return static_cast<std::int32_t>(candidate);
    }

private:
    std::uint32_t mState;
};

}  // namespace

/// A copy of what a registry holds: nothing in it changes while it is looked at.
struct GIPCMessageQueueMgr::Entries {
    std::array<unsigned char, cMaxEntries * cEntrySize> mBytes;
    long mCount = 0;

    unsigned char* At(long position) noexcept { return mBytes.data() + position * cEntrySize; }
    const unsigned char* At(long position) const noexcept { return mBytes.data() + position * cEntrySize; }
    std::int32_t GetProcessID(long position) const noexcept { return GShMemWord::Get(At(position)); }
    std::int32_t GetRegistrationID(long position) const noexcept {
        return GShMemWord::Get(At(position) + GShMemWord::cSize);
    }
    bool HasRegistrationID(std::int32_t registrationID) const noexcept {
        for (long position = 0; position < mCount; ++position)
            if (GetRegistrationID(position) == registrationID) return true;
        return false;
    }
    void Collect(long processID, GTable<std::int32_t>& registrationIDs) const {
        for (long position = 0; position < mCount; ++position)
            if (GetProcessID(position) == processID) registrationIDs.Append(GetRegistrationID(position));
    }
    long Find(long processID, long registrationID) const noexcept {
        for (long position = 0; position < mCount; ++position)
            if (GetProcessID(position) == processID && GetRegistrationID(position) == registrationID)
                return position;
        return -1;
    }
};

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
      mRegistry(GetMemoryPath(session), identifier, cRegistryLength, mCreated, budget, &CheckOrWriteHeader) {}

GIPCMessageQueueMgr::~GIPCMessageQueueMgr() {
    try {
        UnregisterOwn();
    } catch (...) {
        // Whoever sends to an entry that stays behind finds its queue gone, and then removes it.
    }
}

void GIPCMessageQueueMgr::CheckOrWriteHeader(GSharedMemory& registry, bool created) {
    registry.SetCursor(cVersionOffset);
    if (created) {
        registry.WriteInt32(cVersion);
        registry.WriteInt32(GetRunTime());
        registry.WriteInt32(cFirstEntry);
    } else if (registry.ReadInt32() != cVersion) {
        throw GSimpleException(GExceptionID::cUnknownIPCVersion);
    }
}

GIPCMessageQueueMgr::Entries GIPCMessageQueueMgr::ReadEntries(GSharedMemory& registry) {
    GSharedMemoryLocker locker(registry);
    registry.SetCursor(cEndOffset);
    const long end = registry.ReadInt32();
    if (end < cFirstEntry || end > cRegistryLength || (end - cFirstEntry) % cEntrySize != 0)
        throw GSimpleException(GExceptionID::cNotEnoughData);
    Entries entries;
    registry.ReadBytes(entries.mBytes.data(), end - cFirstEntry);
    entries.mCount = (end - cFirstEntry) / cEntrySize;
    return entries;
}

void GIPCMessageQueueMgr::WriteEntry(long position, const unsigned char* entry) {
    mRegistry.SetCursor(cFirstEntry + position * cEntrySize);
    mRegistry.WriteBytes(entry, cEntrySize);
}

void GIPCMessageQueueMgr::WriteCount(long count) {
    mRegistry.SetCursor(cEndOffset);
    mRegistry.WriteInt32(cFirstEntry + count * cEntrySize);
}

long GIPCMessageQueueMgr::FindUnusedRegistrationID(const Entries& entries) {
    mRegistry.SetCursor(cSeedOffset);
    const std::uint32_t seed = static_cast<std::uint32_t>(mRegistry.ReadInt32()) + 1;
    mRegistry.SetCursor(cSeedOffset);
    mRegistry.WriteInt32(static_cast<std::int32_t>(seed));
    RegistrationIDs candidates(seed);
    std::int32_t candidate = candidates.Draw();
    while (entries.HasRegistrationID(candidate)) candidate = candidates.Draw();
    return candidate;
}

long GIPCMessageQueueMgr::Register(long processID) {
    mOwn.Reserve(mOwn.GetCount() + 1);
    // One hold for the search and the entry: nobody else can take the ID in between.
    GSharedMemoryLocker locker(mRegistry);
    const Entries entries = ReadEntries(mRegistry);
    const long registrationID = FindUnusedRegistrationID(entries);
    if (entries.mCount == cMaxEntries) throw GSimpleException(GExceptionID::cNotEnoughSpace);
    unsigned char entry[cEntrySize];
    GShMemWord::Put(entry, static_cast<std::int32_t>(processID));
    GShMemWord::Put(entry + GShMemWord::cSize, static_cast<std::int32_t>(registrationID));
    WriteEntry(entries.mCount, entry);
    WriteCount(entries.mCount + 1);
    mOwn.Append({mSession, static_cast<std::int32_t>(processID), static_cast<std::int32_t>(registrationID)});
    return registrationID;
}

void GIPCMessageQueueMgr::Unregister(long processID, long registrationID) {
    {
        GSharedMemoryLocker locker(mRegistry);
        const Entries entries = ReadEntries(mRegistry);
        const long position = entries.Find(processID, registrationID);
        if (position < 0) return;
        WriteEntry(position, entries.At(entries.mCount - 1));
        WriteCount(entries.mCount - 1);
    }
    ForgetOwn(processID, registrationID);
}

void GIPCMessageQueueMgr::Unregister(long processID) {
    GSharedMemoryLocker locker(mRegistry);
    Entries entries = ReadEntries(mRegistry);
    const long before = entries.mCount;
    long kept = 0;
    for (long position = 0; position < before; ++position) {
        if (entries.GetProcessID(position) == processID) continue;
        std::memmove(entries.At(kept++), entries.At(position), cEntrySize);
    }
    if (kept == before) return;
    mRegistry.SetCursor(cFirstEntry);
    mRegistry.WriteBytes(entries.mBytes.data(), kept * cEntrySize);
    WriteCount(kept);
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
    const long position = mOwn.Find(
        {mSession, static_cast<std::int32_t>(processID), static_cast<std::int32_t>(registrationID)});
    if (position >= 0) mOwn.Remove(position);
}

bool GIPCMessageQueueMgr::IsRegistered(long processID) {
    GTable<std::int32_t> registrationIDs;
    GetRegisteredHere(processID, registrationIDs);
    return !registrationIDs.IsEmpty();
}

void GIPCMessageQueueMgr::GetRegisteredHere(long processID, GTable<std::int32_t>& registrationIDs) {
    registrationIDs.Clear();
    ReadEntries(mRegistry).Collect(processID, registrationIDs);
}

// The sessions to search: the pseudo-session only where it is a name space of its own, and this
// registry's own session even when the system does not list it.
void GIPCMessageQueueMgr::FindSessions(GTable<std::int32_t>& sessions) const {
    sessions.Clear();
    if (mScope == Scope::cEverySession) {
        GTable<std::int32_t> all;
        GSessionInfo::GetInstance()->GetSessionIDs(all);
        for (const std::int32_t session : all)
            if (session >= 0 || session == mSession || SharesOneNameSpace()) sessions.Append(session);
    }
    if (!sessions.Has(mSession)) sessions.Append(mSession);
}

bool GIPCMessageQueueMgr::ReadSession(long session, Entries& entries) {
    if (session == mSession) {
        entries = ReadEntries(mRegistry);
        return true;
    }
    const GBuffer path = GetMemoryPath(session);
    if (!PSharedMemory::Exists(path, GIPPrefix::AddPrefix(GIPPrefix::cSharedMemory, mIdentifier)))
        return false;
    GSharedMemory registry(path, mIdentifier, mBudget, &CheckOrWriteHeader);
    entries = ReadEntries(registry);
    registry.Close();
    return true;
}

// Calls visit(session, entries) for each session's registry until it returns false. Anybody can spoil
// the registry of his session, so one that cannot be read must not hide the others.
template <class Visit>
void GIPCMessageQueueMgr::VisitSessions(Visit visit) {
    GTable<std::int32_t> sessions;
    FindSessions(sessions);
    Entries entries;
    std::exception_ptr failure;
    bool someRead = false;
    for (const std::int32_t session : sessions) {
        try {
            if (!ReadSession(session, entries)) continue;
        } catch (const GMemoryException&) {
            throw;
        } catch (const GException&) {
            if (!failure) failure = std::current_exception();
            continue;
        }
        someRead = true;
        if (!visit(session, entries)) return;
    }
    if (failure && !someRead) std::rethrow_exception(failure);
}

void GIPCMessageQueueMgr::GetRegistered(long processID, long& session,
                                        GTable<std::int32_t>& registrationIDs) {
    registrationIDs.Clear();
    VisitSessions([&](long visited, const Entries& entries) {
        entries.Collect(processID, registrationIDs);
        if (!registrationIDs.IsEmpty()) session = visited;
        return registrationIDs.IsEmpty();
    });
}

void GIPCMessageQueueMgr::GetRegistered(GTable<GIPCQueueAddress>& queues) {
    queues.Clear();
    VisitSessions([&](long session, const Entries& entries) {
        for (long position = 0; position < entries.mCount; ++position)
            queues.Append({static_cast<std::int32_t>(session), entries.GetProcessID(position),
                           entries.GetRegistrationID(position)});
        return true;
    });
}
