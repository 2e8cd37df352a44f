#include "framework/ipc/GIPCDelivery.h"

#include <algorithm>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/core/trace/GTraceLog.h"
#include "framework/ipc/GIPCClock.h"
#include "framework/ipc/GIPCFailure.h"
#include "framework/ipc/GIPCMessageQueue.h"

namespace {

constexpr long cLongestPause = 300;  // milliseconds between two looks

constexpr const char* cCategory = "Messages";  // in the trace log

void TraceTarget(long processID, const char* what, unsigned long long start) {
    GTraceLog::TraceQuietly(cCategory, [&] {
        return GString("process ") + GString(processID) + GString(what) + GString(" after ") +
               GString(GIPCClock::GetNow() - start) + GString(" ms");
    });
}

const char* OutcomeOf(const GIPCDelivery::Attempt& attempt) {
    if (attempt.mIsReached) return " has the message in its queue";
    if (!attempt.mIsRegistered) return " is not registered";
    return attempt.mListens ? " could not be reached" : " does not listen";
}

void TraceFailure(long processID, const GException& failure) {
    GTraceLog::TraceQuietly(cCategory, [&] {
        return GString("process ") + GString(processID) + GString(": ") + failure.GetFullDescription();
    });
}

}  // namespace

/// An open queue in which the message waits to be taken.
struct GIPCDelivery::Waiting {
    Waiting(std::unique_ptr<GIPCMessageQueue> queue, GIPCOutbox& outbox, const GIPCQueueAddress& address)
        : mProcessID(address.mProcessID), mQueue(std::move(queue)), mMark(outbox, address) {}

    long mProcessID;

    std::unique_ptr<GIPCMessageQueue> mQueue;
    GIPCOutbox::WritingMark mMark;
};

GIPCDelivery::GIPCDelivery(const GIPCRules& rules, GIPCListing& listing, GIPCOutbox& outbox,
                           const GIPCPost& post)
    : mRules(rules),
      mListing(listing),
      mOutbox(outbox),
      mPost(post),
      mNoWaits(0),
      mStart(GIPCClock::GetNow()) {}

GIPCDelivery::~GIPCDelivery() = default;

GIPCDelivery::Attempt GIPCDelivery::PostTo(long processID) {
    Attempt attempt;
    mListing.TryRegistries(processID, [&](const GIPCListing::Queues& queues) {
        attempt.mIsRegistered = true;
        PostTo(queues, attempt);
        return attempt.mIsReached || !mRules.mOneQueueIsEnough;
    });
    TraceTarget(processID, OutcomeOf(attempt), mStart);
    return attempt;
}

void GIPCDelivery::PostTo(const GIPCListing::Queues& queues, Attempt& attempt) {
    attempt.mIsComplete = true;
    for (const GIPCQueueAddress& address : queues) {
        try {
            PostTo(address, attempt);
            attempt.mIsReached = true;
        } catch (const GException& failure) {
            TraceFailure(address.mProcessID, failure);
            if (GIPCFailure::IsOfSender(failure)) throw;
            if (!attempt.mFailure) attempt.mFailure = std::current_exception();
            if (!GIPCFailure::IsOfTarget(failure)) attempt.mListens = true;
            attempt.mIsComplete = false;
        }
    }
}

void GIPCDelivery::PostTo(const GIPCQueueAddress& address, Attempt& attempt) {
    auto queue = std::make_unique<GIPCMessageQueue>(address.mSession, address.mProcessID,
                                                    address.mRegistrationID, mRules.mBudget);
    attempt.mListens = true;
    if (!mPost.AppendTo(*queue)) {
        if (!GIPCMessageQueue::RawDataFitsEmptyQueue(mPost.mData))
            throw GSimpleException(GExceptionID::cMessageTooLarge);
        mOutbox.Keep(address, mPost);
        TraceTarget(address.mProcessID, " has a full queue; the message is kept for it", mStart);
    } else if (mPost.mOnce && mRules.mTakenLimit > 0) {
        queue->SetBudget(&mNoWaits);
        mWaiting.push_back(std::make_unique<Waiting>(std::move(queue), mOutbox, address));
    }
}

void GIPCDelivery::WaitTillTaken() {
    for (long pause = 1; !AreAllTaken(); pause = std::min(2 * pause, cLongestPause)) {
        const unsigned long long waited = GIPCClock::GetNow() - mStart;
        if (waited >= static_cast<unsigned long long>(mRules.mTakenLimit)) break;
        GIPCClock::Sleep(std::min(pause, mRules.mTakenLimit - static_cast<long>(waited)));
    }
    for (const auto& waiting : mWaiting)
        TraceTarget(waiting->mProcessID, " has not taken the message", mStart);
}

// Forgets the queues whose owners have taken the message.
bool GIPCDelivery::AreAllTaken() {
    std::erase_if(mWaiting, [this](const auto& waiting) {
        if (!IsTaken(*waiting)) return false;
        TraceTarget(waiting->mProcessID, " has taken the message", mStart);
        return true;
    });
    return mWaiting.empty();
}

bool GIPCDelivery::IsTaken(Waiting& waiting) const noexcept {
    try {
        return !waiting.mQueue->ContainsRawMessage(mPost.mType, mPost.mData);
    } catch (const GException& failure) {
        // A mutex that is held: perhaps the owner is just taking it. What else becomes of a queue after the
        // message was put there is its owner's affair.
        return GIPCFailure::IsOfTarget(failure);
    } catch (...) {
        return true;
    }
}
