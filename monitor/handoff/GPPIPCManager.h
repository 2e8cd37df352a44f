#pragma once

#include "framework/core/GExport.h"
#include "framework/ipc/GIPCManager.h"

/// GPPIPCManager: the messages between the monitor and the processing applications.
///
/// A GIPCManager under rules of its own. Its registries are apart from those of other users of the
/// framework. There are two: the one of this session, and a global one where that is another object. A
/// process that listens stands in both, with a queue behind each; where the system refuses it global
/// objects, only in its session's. A sender looks into its own session's registry, then into the global
/// one, then into those of other sessions, and uses what it finds in the first of them that has a usable
/// queue of the target. So nobody gets a message twice.
///
/// A process's queue that cannot be opened is passed over while another one of it can. A message sent once
/// waits to be taken. Kept messages are tried on every tick without waiting; they are dropped when their
/// target has ended or their queue is gone, and beyond 64 for one target, oldest first.
class QUILLON_EXPORT GPPIPCManager : public GIPCManager {
public:
    using ManagerType = GIPCMessageQueueMgr::ManagerType;  ///< for all users, or one for tests

    /// @name The process-wide instance, counted: created by the first reference (whose arguments count)
    /// and destroyed with the last. When creating throws, no reference has been taken.
    /// @{

    /// Null for no limit; the budget outlives the instance.
    static void AddReference(ManagerType type = GIPCMessageQueueMgr::cNormal, GWaitBudget* budget = nullptr);
    static void ReleaseReference();                ///< one call too many does nothing
    static GPPIPCManager* GetInstance() noexcept;  ///< null when nobody holds a reference
    /// @}

    /// The registry of the processing applications: the messaging's own with "_PP" behind it.
    static GShMemID GetRegistryID(ManagerType type);

    /// Opens the registries; throws what that throws, except that a global registry which the system
    /// refuses is done without. `budget`, null for none, limits the waits for shared mutexes.
    explicit GPPIPCManager(ManagerType type = GIPCMessageQueueMgr::cNormal, GWaitBudget* budget = nullptr);
    /// Handles what is pending, and keeps failures to itself.
    ~GPPIPCManager() override;

    using GIPCManager::HasGlobalRegistry;  ///< false where the one of the session is enough

    static constexpr long cMaxDelayedPerTarget = 64;  ///< kept messages for one target
    /// For how many milliseconds sending once waits, however many targets and queues there are. The end of a
    /// job may take 3.3 seconds; the rest is for finding the processes and for putting the messages in.
    static constexpr long cTakenLimit = 3000;

private:
    static GIPCRules MakeRules(ManagerType type, GWaitBudget* budget);

    static GPPIPCManager* sInstance;
    static long sReferences;
};
