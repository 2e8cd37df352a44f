#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCQueueAddress.h"
#include "framework/ipc/GIPCRegistryEntries.h"
#include "framework/ipc/GSharedMemory.h"

/// GIPCMessageQueueMgr: the registry in which listening processes stand with their queues.
///
/// Each session has one: a segment of 32-bit words, low byte first, that holds the version (1), a seed
/// for new registration IDs, the end offset (12 when empty), and entries of process ID and registration
/// ID in no particular order, 1024 at most. One mutex guards the registries of all sessions. Which entries
/// count, GIPCRegistryEntries says; the others are left out whenever a process is looked up.
///
/// Every call locks, within the budget given to the constructor (GExceptionID::cCouldNotLockMutex past
/// it), and throws GExceptionID::cNotEnoughData or cSharedMemoryReadFailed, changing nothing, when the
/// segment makes no sense. A registry of another session that cannot be read is passed over as long as any
/// other registry can. One thread at a time.
class QUILLON_EXPORT GIPCMessageQueueMgr {
public:
    /// Which registry of a session is meant: that of everybody, or one for tests.
    enum ManagerType { cNormal = 0, cTest = 1 };
    /// Where a process is looked for.
    enum class Scope {
        cEverySession,  ///< looking up searches the registries of all sessions
        cOwnOnly        ///< looking up searches this registry alone
    };
    /// As many as the segment has room for.
    static constexpr long cMaxEntries = GIPCRegistryEntries::cMaxCount;
    /// Bytes behind the segment's size word: 8204.
    static constexpr long cRegistryLength = GIPCRegistryEntries::GetLength(cMaxEntries);

    /// The registry of the current session.
    explicit GIPCMessageQueueMgr(ManagerType type = cNormal, GWaitBudget* budget = nullptr);
    /// A registry under another identifier, of `session` (-1: the name space that all sessions share).
    /// An existing one of another size is used as it is, and traced, when it has room for an entry;
    /// throws GExceptionID::cSharedMemorySizeDiffers otherwise, and cUnknownIPCVersion for another version.
    GIPCMessageQueueMgr(const GShMemID& identifier, long session, Scope scope, GWaitBudget* budget = nullptr);
    GIPCMessageQueueMgr(const GIPCMessageQueueMgr&) = delete;
    GIPCMessageQueueMgr& operator=(const GIPCMessageQueueMgr&) = delete;
    /// Takes back this object's own registrations, as far as that works, last one first.
    ~GIPCMessageQueueMgr();

    /// Its number, -1 for the name space that all sessions share.
    long GetSession() const noexcept { return mSession; }
    /// The segment, for holding its lock over several calls.
    GSharedMemory& GetRegistry() noexcept { return mRegistry; }
    /// Makes the registry of this object an empty one. For one whose numbers make no sense: nobody can enter
    /// or be found in it, and it would stay so for as long as somebody has it open.
    void Clear();
    /// The name space of the current session.
    static GBuffer GetMemoryPath();
    /// The identifier of the registries of a type.
    static const GShMemID& GetRegistryID(ManagerType type);

    /// Enters the process and returns the ID of the registration, 1 to 32767. A full registry is tidied
    /// first; when it stays full, throws GExceptionID::cNotEnoughSpace, entering nothing.
    long Register(long processID);
    /// Removes that entry; the last one takes its place. None changes nothing.
    void Unregister(long processID, long registrationID);
    /// Removes all entries of a process, keeping the order of the others.
    void Unregister(long processID);
    /// Takes back what this object registered, last one first; unlike the destructor it throws.
    void UnregisterOwn();

    /// Whether this registry knows the process; no other session is asked.
    bool IsRegistered(long processID);
    /// The registrations of a process in this registry.
    void GetRegisteredHere(long processID, GTable<std::int32_t>& registrationIDs);
    /// The registrations of a process in the first session that knows it; none, and `session`
    /// untouched, when no session does.
    void GetRegistered(long processID, long& session, GTable<std::int32_t>& registrationIDs);
    /// All registrations of all sessions.
    void GetRegistered(GTable<GIPCQueueAddress>& queues);

    /// @name Looking up step by step.
    /// @{

    /// Replaces `sessions` with those whose registries are to be searched, in that order.
    void GetSessions(GTable<std::int32_t>& sessions) const;
    /// Whether reading a registry also tidies it.
    enum class Tidying {
        cNever,       ///< it stays as it is
        cWhenCrowded  ///< when more than three quarters of it are taken
    };
    /// Appends the queues that a session's registry holds. False when that session has no registry.
    bool ReadSession(long session, GTable<GIPCQueueAddress>& queues, Tidying tidying = Tidying::cNever);
    /// @}

private:
    static GBuffer GetMemoryPath(long session);
    static void Read(GSharedMemory& registry, long session, GTable<GIPCQueueAddress>& queues,
                     Tidying tidying);
    static void Tidy(GSharedMemory& registry, long session, GIPCRegistryEntries& entries);
    template <class Visit>
    void VisitSessions(Visit visit);
    std::int32_t FindUnusedRegistrationID(const GIPCRegistryEntries& entries);
    void ForgetOwn(long processID, long registrationID);

    GShMemID mIdentifier;
    std::int32_t mSession;
    Scope mScope;
    GWaitBudget* mBudget;
    bool mCreated = false;
    GSharedMemory mRegistry;
    GTable<GIPCQueueAddress> mOwn;  // in order of registration
};
