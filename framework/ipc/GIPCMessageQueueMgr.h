#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCQueueAddress.h"
#include "framework/ipc/GSharedMemory.h"

/// GIPCMessageQueueMgr: the registry in which listening processes stand with their queues.
///
/// Each session has one: a segment of 32-bit words, low byte first, that holds the version (1), a seed
/// for new registration IDs, the end offset (12 when empty), and entries of process ID and registration
/// ID in no particular order, 1024 at most. One mutex guards the registries of all sessions.
///
/// Every call locks, within the budget given to the constructor (40202 past it), and throws 40161 or
/// 40163, changing nothing, when the segment makes no sense. A registry of another session that cannot
/// be read is passed over as long as any other registry can. One thread at a time.
class QUILLON_EXPORT GIPCMessageQueueMgr {
public:
    enum ManagerType { cNormal = 0, cTest = 1 };
    enum class Scope {
        cEverySession,  ///< looking up searches the registries of all sessions
        cOwnOnly        ///< looking up searches this registry alone
    };
    static constexpr long cRegistryLength = 8204;  ///< bytes behind the segment's size word
    static constexpr long cMaxEntries = 1024;

    /// The registry of the current session.
    explicit GIPCMessageQueueMgr(ManagerType type = cNormal, GWaitBudget* budget = nullptr);
    /// A registry under another identifier, of `session` (-1: the name space that all sessions share).
    /// Throws 40154 for another version, 40168 for another size.
    GIPCMessageQueueMgr(const GShMemID& identifier, long session, Scope scope, GWaitBudget* budget = nullptr);
    GIPCMessageQueueMgr(const GIPCMessageQueueMgr&) = delete;
    GIPCMessageQueueMgr& operator=(const GIPCMessageQueueMgr&) = delete;
    /// Takes back this object's own registrations, as far as that works, last one first.
    ~GIPCMessageQueueMgr();

    long GetSession() const noexcept { return mSession; }
    /// The segment, for holding its lock over several calls.
    GSharedMemory& GetRegistry() noexcept { return mRegistry; }
    /// The name space of the current session.
    static GBuffer GetMemoryPath();
    /// The identifier of the registries of a type.
    static const GShMemID& GetRegistryID(ManagerType type);

    /// Enters the process and returns the ID of the registration, 1 to 32767. Throws 40160, entering
    /// nothing, when the registry is full.
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

private:
    struct Entries;

    static GBuffer GetMemoryPath(long session);
    static void CheckOrWriteHeader(GSharedMemory& registry, bool created);
    static Entries ReadEntries(GSharedMemory& registry);
    void WriteEntry(long position, const unsigned char* entry);
    void WriteCount(long count);
    void FindSessions(GTable<std::int32_t>& sessions) const;
    bool ReadSession(long session, Entries& entries);
    template <class Visit>
    void VisitSessions(Visit visit);
    long FindUnusedRegistrationID(const Entries& entries);
    void ForgetOwn(long processID, long registrationID);

    GShMemID mIdentifier;
    std::int32_t mSession;
    Scope mScope;
    GWaitBudget* mBudget;
    bool mCreated = false;
    GSharedMemory mRegistry;
    GTable<GIPCQueueAddress> mOwn;  // in order of registration
};
