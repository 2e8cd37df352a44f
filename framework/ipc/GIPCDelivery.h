#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <vector>

#include "framework/core/GExport.h"
#include "framework/ipc/GIPCListing.h"
#include "framework/ipc/GIPCOutbox.h"
#include "framework/ipc/GIPCPost.h"
#include "framework/ipc/GIPCRules.h"
#include "framework/ipc/GWaitBudget.h"

/// GIPCDelivery: one message on its way to one process or to many.
///
/// Registries are read once for all of them, and each queue is opened once: to put the message in, and kept
/// open where the message is then waited for. One thread at a time.
class QUILLON_EXPORT GIPCDelivery {
public:
    /// What became of the message to one process.
    struct Attempt {
        bool mIsRegistered = false;   ///< some registry has an entry of the process
        bool mListens = false;        ///< at least one queue is there, whether it could be used or not
        bool mIsReached = false;      ///< at least one queue has it, or it is kept for one
        bool mIsComplete = false;     ///< every queue that was tried has it, or it is kept for it
        std::exception_ptr mFailure;  ///< the first one; null when there was none
    };

    /// The rules, the outbox and the message outlive it.
    GIPCDelivery(const GIPCRules& rules, GIPCListing& listing, GIPCOutbox& outbox, const GIPCPost& post);
    GIPCDelivery(const GIPCDelivery&) = delete;
    GIPCDelivery& operator=(const GIPCDelivery&) = delete;
    ~GIPCDelivery();

    /// Puts the message into every queue that the process has in the first registry where that works for
    /// one of them. What does not fit is kept for later. Throws only what no target can help
    /// (GIPCFailure::IsOfSender), above all GExceptionID::cMessageTooLarge.
    Attempt PostTo(long processID);
    /// Waits until every queue's owner has taken a message sent once, or until the rules' limit has passed
    /// since the delivery began. Looks after 1, 2, 4 milliseconds and so on up to 300. Throws nothing of what
    /// the queues do meanwhile: the message is on its way.
    void WaitTillTaken();

private:
    struct Waiting;

    void PostTo(const GIPCListing::Queues& queues, Attempt& attempt);
    void PostTo(const GIPCQueueAddress& address, Attempt& attempt);
    bool IsTaken(Waiting& waiting) const noexcept;
    bool AreAllTaken();

    const GIPCRules& mRules;
    GIPCListing& mListing;
    GIPCOutbox& mOutbox;
    const GIPCPost& mPost;
    GWaitBudget mNoWaits;  // for looking: a mutex that somebody holds is not waited for
    unsigned long long mStart;
    std::vector<std::unique_ptr<Waiting>> mWaiting;
};
