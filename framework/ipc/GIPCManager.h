#pragma once

#include <cstdint>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/events/GEmptyMessage.h"
#include "framework/core/events/GReceiver.h"
#include "framework/core/memory/GSmartPtr.h"
#include "framework/ipc/GIPCInbox.h"
#include "framework/ipc/GIPCMessageQueue.h"
#include "framework/ipc/GIPCMessageQueueMgr.h"
#include "framework/ipc/GIPCQueueAddress.h"
#include "framework/ipc/GIPCReceiver.h"

class GException;

/// GIPCManager: messages between the processes of a machine, in whatever session they run.
///
/// A process listens while at least one GIPCReceiver is registered: it stands in its session's registry
/// and owns a queue, which every tick of the repeater signal (GBasicSignals::DevoteTimeToRepeaters)
/// drains. Sending finds the target's queues in the registries and appends. A message that a queue has
/// no room for is kept and tried again on every tick.
///
/// A target whose queue is missing or broken is taken out of the registry once the sending call is over,
/// with the messages kept for it. Waits for shared mutexes have no limit unless a budget is given; one
/// that takes too long throws 40202 and is held against nobody.
///
/// One thread at a time. Subclasses change which registries are used by overriding the hooks.
class QUILLON_EXPORT GIPCManager : public GReceiver<GEmptyMessage> {
public:
    enum ListeningState {
        cNotListening = 0,  ///< not registered anywhere
        cNotUsable = 1,     ///< registered, but not running or without a usable queue
        cListening = 2
    };

    /// Counted: the first call creates the framework's instance, the matching last one destroys it.
    static void Initialize();
    static void Finalize();
    /// Null outside the two.
    static GIPCManager* GetInstance() noexcept;

    /// `budget`, null for none, limits the waits for shared mutexes and outlives the manager.
    explicit GIPCManager(GWaitBudget* budget = nullptr);
    ~GIPCManager() override;

    /// @name Receiving
    /// @{

    /// The receiver is not owned. When the process cannot start to listen, nothing has changed.
    void Register(long type, GIPCReceiver& receiver);
    /// The last receiver to go ends the listening, also when that throws.
    void Unregister(long type, GIPCReceiver& receiver);
    bool IsListening() const noexcept { return mListening; }
    /// 0 when not listening.
    virtual long GetRegistrationID() const noexcept;
    /// Whether others still find this process: each of its entries stands in its registry, and each of its
    /// queues can be opened. Any process may have removed or spoiled them. False while not listening.
    /// Throws GExceptionID::cCouldNotLockMutex when that could not be found out in time.
    bool IsStillRegistered();
    /// Listens with new entries and new queues in place of the present ones. The receivers stay, and get
    /// what waited in the old queues. When it throws, the process still listens as before. Does nothing
    /// while not listening.
    void Reregister();
    /// The repeater signal: sends what was kept, then hands out what was received.
    void Receive(long signalNumber, const GEmptyMessage& message) override;
    /// The same on demand. Throws what a receiver threw, and what was wrong with the own queue (which
    /// is made an empty one after its good messages have been delivered).
    void ForceProcessPendingMessages();
    /// @}

    /// @name Sending. A process that is not registered is sent nothing, and that is no failure. A
    /// payload that no queue could hold throws 40153; a queue that is gone or broken throws 2450 or
    /// the number of what is wrong with it.
    /// @{
    void Send(long processID, long type);
    void SendRaw(long processID, long type, const GBuffer& data);
    /// A queue in which the same type and payload is waiting counts as having got it.
    void SendOnce(long processID, long type);
    void SendOnceRaw(long processID, long type, const GBuffer& data);
    /// To everybody registered. A target that cannot be reached costs the others nothing and is not
    /// reported.
    void Broadcast(long type);
    void BroadcastRaw(long type, const GBuffer& data);
    void BroadcastOnce(long type);
    void BroadcastOnceRaw(long type, const GBuffer& data);
    long GetDelayedCount() const noexcept { return mDelayed.GetCount(); }
    /// @}

    virtual ListeningState GetListeningState(long processID);
    /// Returns once the process is registered in the registry of this session, looking every 100 ms
    /// without a limit; throws 40152 when it ends first.
    void WaitTillListening(long processID);

    /// Replaces PSystem::MilliSleep for all managers; null brings it back.
    using SleepFunction = void (*)(long milliseconds);
    static void SetSleepFunction(SleepFunction sleep) noexcept;

protected:
    /// A message kept for later.
    struct MessageData {
        GIPCQueueAddress mQueue;
        std::int32_t mType;
        GBuffer mData;
        bool mOnce;
    };
    /// What became of a message handed to a queue.
    enum class Delivery { cInQueue, cKept };

    /// @name Hooks
    /// @{

    /// Registers the process and opens its queue or queues; throws without having changed anything.
    virtual void StartListening();
    /// Closes and unregisters everything, and throws only then.
    virtual void StopListening();
    virtual bool AreInboxesIntact();
    /// The registry of this session.
    virtual GIPCMessageQueueMgr& GetMessageQueueMgr();
    /// Drains the own queue or queues; may throw after having added what could be read.
    virtual void ReadInboxes(GTable<GSmartPtr<GIPCMessage>>& messages);
    virtual void SendToProcess(long processID, long type, const GBuffer& data, bool once);
    virtual void SendToAll(long type, const GBuffer& data, bool once);
    virtual Delivery SendToQueue(const GIPCQueueAddress& queue, long type, const GBuffer& data, bool once);
    /// A kept message met a queue that is gone or broken; it is dropped after this.
    virtual void DelayedTargetFailed(const MessageData& message);
    /// True when a kept message, which still does not fit, is not to be kept any longer.
    virtual bool IsDelayedTargetGone(const MessageData& message);
    /// True while a message for this queue must not be tried.
    virtual bool IsBeingWritten(const GIPCQueueAddress& queue) const;
    /// How many messages are kept for one process, at most; the oldest ones go first.
    virtual long GetDelayedLimit() const;
    /// Takes a process out of the registries that this process may change.
    virtual void PurgeProcess(long processID);
    /// @}

    GWaitBudget* GetBudget() const noexcept { return mBudget; }
    static void MilliSleep(long milliseconds);
    /// Appends to an open queue, or keeps the message (40153 when no queue could ever hold it).
    Delivery Post(GIPCMessageQueue& queue, const GIPCQueueAddress& address, long type, const GBuffer& data,
                  bool once);
    void AddCorruptedProcess(long processID);
    void CleanupCorruptedProcesses() noexcept;
    /// True for failures that tell something about the queue: not for a mutex that was not to be had in
    /// time, for a message that is too large, and for want of memory.
    static bool IsQueueFailure(const GException& failure);
    static bool IsRunning(long processID);
    /// Whether the queue is there and in order. Throws what does not tell (see IsQueueFailure).
    bool CanOpen(const GIPCQueueAddress& address);
    void SendDelayedMessages();
    void ProcessReceivedMessages();
    /// Subscribes to the repeater signal while there is something to do on it.
    void UpdateSubscription();
    /// Stops listening and unsubscribes, keeping failures to itself. The destructor of a subclass that
    /// overrides a hook calls this first: afterwards its hooks are gone.
    void ShutDown() noexcept;

private:
    struct ReceiverList;

    /// Cleans up after the corrupted processes at the end of a call, whichever way it ends.
    class CleanupScope {
    public:
        explicit CleanupScope(GIPCManager& manager) noexcept : mManager(manager) {}
        CleanupScope(const CleanupScope&) = delete;
        CleanupScope& operator=(const CleanupScope&) = delete;
        ~CleanupScope() { mManager.CleanupCorruptedProcesses(); }

    private:
        GIPCManager& mManager;
    };

    void AddReceiver(long type, GIPCReceiver& receiver);
    void RemoveReceiver(long type, GIPCReceiver& receiver);
    void Dispatch(const GIPCMessage& message);
    void KeepForLater(const GIPCQueueAddress& address, long type, const GBuffer& data, bool once);
    bool IsDone(const MessageData& message, GTable<std::int32_t>& waiting);
    bool TryDelayedMessage(const MessageData& message);
    static bool Append(GIPCMessageQueue& queue, long type, const GBuffer& data, bool once);

    GWaitBudget* mBudget;
    bool mListening = false;
    bool mSubscribed = false;
    std::unique_ptr<GIPCMessageQueueMgr> mQueueMgr;
    std::unique_ptr<GIPCInbox> mInbox;  // null while not listening
    GTable<std::int32_t> mCorrupted;
    GTable<MessageData> mDelayed;
    GDict<std::int32_t, GSmartPtr<ReceiverList>> mReceivers;

    static GIPCManager* sInstance;
    static long sInitialized;
};
