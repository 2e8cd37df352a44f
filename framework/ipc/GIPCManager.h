#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/events/GReceiver.h"
#include "framework/core/events/GSignal.h"
#include "framework/core/memory/GSmartPtr.h"
#include "framework/ipc/GIPCDelivery.h"
#include "framework/ipc/GIPCInboxes.h"
#include "framework/ipc/GIPCOutbox.h"
#include "framework/ipc/GIPCReceiver.h"
#include "framework/ipc/GIPCReceivers.h"
#include "framework/ipc/GIPCRegistries.h"
#include "framework/ipc/GIPCRules.h"

/// GIPCManager: messages between the processes of a machine, in whatever session they run.
///
/// A process listens while at least one GIPCReceiver is registered: it stands in its session's registry
/// and owns a queue, which every tick of the repeater signal (GBasicSignals::DevoteTimeToRepeaters)
/// drains. Sending finds the target's queues in the registries and appends. A message that a queue has
/// no room for is kept and tried again on every tick.
///
/// A target whose queue is gone or broken is taken out of the registry once the sending call is over,
/// with the messages kept for it. Waits for shared mutexes have no limit unless the rules give a budget; one
/// that takes too long throws GExceptionID::cCouldNotLockMutex and is held against nobody.
///
/// It joins GIPCReceivers, GIPCInboxes, GIPCRegistries, GIPCDelivery and GIPCOutbox; GIPCRules say in what
/// managers differ. Sending and ticking may happen on different threads; everything else on one at a time.
class QUILLON_EXPORT GIPCManager : public GReceiver<GEmptyMessage> {
public:
    /// What GetListeningState() finds.
    enum ListeningState {
        cNotListening = 0,  ///< not registered anywhere
        cNotUsable = 1,     ///< registered, but not running or without a usable queue
        cListening = 2      ///< a message would be put into a queue of it now
    };

    /// Counted: the first call creates the framework's instance, the matching last one destroys it.
    static void Initialize();
    static void Finalize();  ///< one call too many does nothing
    /// Null outside the two.
    static GIPCManager* GetInstance() noexcept;

    /// `budget`, null for none, limits the waits for shared mutexes and outlives the manager.
    explicit GIPCManager(GWaitBudget* budget = nullptr);
    /// The rules are copied; what they point at outlives the manager.
    explicit GIPCManager(const GIPCRules& rules);
    ~GIPCManager() override;

    /// @name Receiving
    /// @{

    /// The receiver is not owned. When the process cannot start to listen, nothing has changed.
    void Register(long type, GIPCReceiver& receiver);
    /// The last receiver to go ends the listening, also when that throws.
    void Unregister(long type, GIPCReceiver& receiver);
    /// Whether a receiver is registered, so that this process has a queue.
    bool IsListening() const noexcept { return mInboxes != nullptr; }
    /// 0 when not listening.
    long GetRegistrationID() const noexcept;
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
    /// For a program's loop, between two ticks: waits until a message has come, at most so many
    /// milliseconds; true when one is there. A sender that does not set the events (see GetWakeHandles) is
    /// noticed at the end only. Only waits while not listening.
    bool WaitForMessages(long milliseconds);
    /// For loops that wait for other things, too: the handles of the events that senders set, one or two,
    /// none where the system has refused them. On Windows HANDLEs of events, which a wait that sees them set
    /// resets. Valid until the listening ends or begins anew. They may be set for nothing, and never, so a
    /// wait needs a limit and a pause after it was woken for nothing.
    GTable<void*> GetWakeHandles();
    /// @}

    /// @name Sending. A process that is not registered is sent nothing, and that is no failure. A
    /// payload that no queue could hold throws GExceptionID::cMessageTooLarge; a queue that is gone or
    /// broken throws cGeneral or the number of what is wrong with it.
    /// @{

    /// Without data.
    void Send(long processID, long type);
    /// With data, which is copied into the queues.
    void SendRaw(long processID, long type, const GBuffer& data);
    /// A queue in which the same type and payload is waiting counts as having got it. Where the rules want
    /// it, waits for the message to be taken.
    void SendOnce(long processID, long type);
    /// The same with data.
    void SendOnceRaw(long processID, long type, const GBuffer& data);
    /// To everybody registered. A target that cannot be reached costs the others nothing and is not
    /// reported.
    void Broadcast(long type);
    void BroadcastRaw(long type, const GBuffer& data);  ///< the same with data
    void BroadcastOnce(long type);                      ///< what is waiting in a queue is not put there again
    void BroadcastOnceRaw(long type, const GBuffer& data);  ///< the same with data

    /// How many processes a message was for, by what became of it. Those that do not listen are in neither.
    struct Told {
        long mReached = 0;  ///< they have the message, or it is kept for them
        long mFailed = 0;   ///< they listen, but their queue is broken or its mutex was not to be had
    };
    /// Sends once to all processes that are registered and wanted, and only then waits, once for all of them.
    /// A target that cannot be reached costs the others nothing. Registries that are nearly full are tidied
    /// on the way. Throws GExceptionID::cMessageTooLarge, what keeps it from reading any registry, and what
    /// `isWanted` throws, before anything is sent.
    Told SendOnceRaw(const std::function<bool(std::int32_t)>& isWanted, long type, const GBuffer& data);

    /// Messages that are kept for a later attempt.
    long GetDelayedCount() const noexcept { return mOutbox.GetCount(); }
    /// @}

    ListeningState GetListeningState(long processID);  ///< how a sender would find that process now
    /// Returns once the process is registered in the registry of this session, looking every 100 ms
    /// without a limit; throws GExceptionID::cTargetNotRunning when it ends first.
    void WaitTillListening(long processID);

protected:
    /// Opens the registries, which otherwise happens when they are first needed.
    void OpenRegistries() { mRegistries.Open(); }
    /// False when the rules want none, when it is the session's own, or when the system refuses it.
    bool HasGlobalRegistry() { return mRegistries.GetGlobal() != nullptr; }

private:
    using Attempt = GIPCDelivery::Attempt;

    void StopListening();
    void ProcessReceivedMessages();
    void Dispatch(const GTable<GSmartPtr<GIPCMessage>>& messages);
    void SendToProcess(long processID, const GIPCPost& post);
    void SendToAll(const GIPCPost& post);
    void SendDelayedMessages();
    void Blame(long processID, const std::exception_ptr& failure);
    void CleanupCorruptedProcesses() noexcept;
    bool AreUsable(const GIPCListing::Queues& queues);
    bool IsUsable(const GIPCQueueAddress& queue);
    void UpdateSubscription();

    const GIPCRules mRules;
    GIPCRegistries mRegistries;
    GIPCOutbox mOutbox;
    GIPCReceivers mReceivers;
    std::unique_ptr<GIPCInboxes> mInboxes;  // null while not listening
    GTable<std::int32_t> mCorrupted;        // whose queues could not be used during the current call
    bool mSubscribed = false;

    static GIPCManager* sInstance;
    static long sInitialized;
};
