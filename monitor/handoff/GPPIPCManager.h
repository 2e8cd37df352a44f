#pragma once

#include <exception>
#include <memory>

#include "framework/ipc/GIPCManager.h"

/// GPPIPCManager: the messages between the monitor and the processing applications.
///
/// It differs from its base in the registries it uses, which are apart from those of other users of the
/// framework, and in that a message sent once waits to be taken. There are two registries: the one of
/// this session, and a global one where that is another object. A process that listens stands in both,
/// with a queue behind each; where the system refuses it global objects, only in its session's. A sender
/// looks into its own session's registry, then into the global one, then into those of other sessions,
/// and uses what it finds in the first of them that has a usable queue of the target. So nobody gets a
/// message twice.
///
/// A process's queue that cannot be opened is passed over while another one of it can. Kept messages are
/// tried on every tick without waiting; they are dropped when their target has ended or their queue is
/// gone, and beyond 64 for one target, oldest first.
///
/// Sending once and ticking may happen on different threads; everything else on one at a time.
class GPPIPCManager : public GIPCManager {
public:
    using ManagerType = GIPCMessageQueueMgr::ManagerType;

    /// @name The process-wide instance, counted: created by the first reference (whose arguments count)
    /// and destroyed with the last. When creating throws, no reference has been taken.
    /// @{
    static void AddReference(ManagerType type = GIPCMessageQueueMgr::cNormal, GWaitBudget* budget = nullptr);
    static void ReleaseReference();
    static GPPIPCManager* GetInstance() noexcept;
    /// @}

    /// The registry of the processing applications: the messaging's own with "_PP" behind it.
    static GShMemID GetRegistryID(ManagerType type);

    /// Opens the registries; throws what that throws, except that a global registry which the system
    /// refuses is done without. `budget`, null for none, limits the waits for shared mutexes.
    explicit GPPIPCManager(ManagerType type = GIPCMessageQueueMgr::cNormal, GWaitBudget* budget = nullptr);
    /// Handles what is pending, and keeps failures to itself.
    ~GPPIPCManager() override;

    /// The process runs in the session of the services, or its session is unknown.
    bool RunsInServicesSession() const noexcept { return mServicesSession; }
    bool HasGlobalRegistry() const noexcept { return mGlobalRegistry != nullptr; }

    void Receive(long signalNumber, const GEmptyMessage& message) override;
    /// cListening as soon as one of its queues can be opened. Throws 40202 when that could not be found
    /// out in time.
    ListeningState GetListeningState(long processID) override;
    long GetRegistrationID() const noexcept override;

    static constexpr long cMaxDelayedPerTarget = 64;
    /// Milliseconds that sending once waits for a target, and how often it looks. All queues of one target
    /// share them: whoever registers many of them cannot make the wait longer.
    static constexpr long cTakenBudget = 3000;
    static constexpr long cTakenInterval = 300;

protected:
    void StartListening() override;
    void StopListening() override;
    bool AreInboxesIntact() override;
    GIPCMessageQueueMgr& GetMessageQueueMgr() override;
    void ReadInboxes(GTable<GSmartPtr<GIPCMessage>>& messages) override;
    void SendToProcess(long processID, long type, const GBuffer& data, bool once) override;
    void SendToAll(long type, const GBuffer& data, bool once) override;
    Delivery SendToQueue(const GIPCQueueAddress& queue, long type, const GBuffer& data, bool once) override;
    void DelayedTargetFailed(const MessageData& message) override;
    bool IsDelayedTargetGone(const MessageData& message) override;
    bool IsBeingWritten(const GIPCQueueAddress& queue) const override;
    long GetDelayedLimit() const override;
    void PurgeProcess(long processID) override;

private:
    class WritingMark;
    using Addresses = GTable<GIPCQueueAddress>;
    /// Where a process can be registered, in the order in which a sender looks.
    enum class Place { cThisSession, cGlobal, cOtherSessions };

    Addresses ReadQueues(Place place, long processID);
    template <class TryQueues>
    bool TryPlaces(long processID, std::exception_ptr& failure, TryQueues tryQueues);
    bool SendToAny(const Addresses& queues, long type, const GBuffer& data, bool once,
                   std::exception_ptr& failure);
    bool CanOpenAny(const Addresses& queues, std::exception_ptr& failure);
    void WaitTillTaken(GIPCMessageQueue& queue, long type, const GBuffer& data);

    std::int32_t mSession;
    bool mServicesSession;
    std::unique_ptr<GIPCMessageQueueMgr> mSessionRegistry;
    std::unique_ptr<GIPCMessageQueueMgr> mGlobalRegistry;  // null: the same as the session's, or refused
    std::unique_ptr<GIPCInbox> mSessionInbox;              // null while not listening
    std::unique_ptr<GIPCInbox> mGlobalInbox;               // null as well where one is enough
    Addresses mBeingWritten;
    std::int32_t mTakenBudget = 0;  // what is left of it for the current target

    static GPPIPCManager* sInstance;
    static long sReferences;
};
