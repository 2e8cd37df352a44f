#include "framework/ipc/GIPCOutbox.h"

#include "framework/core/errors/GException.h"
#include "framework/ipc/GIPCFailure.h"
#include "framework/system/GProcessInfo.h"

namespace {

/// Which processes still run, each asked about once: a look at the system takes longer than trying a queue.
class RunningProcesses {
public:
    bool Has(std::int32_t processID) {
        if (mRunning.Has(processID)) return true;
        if (!IsRunning(processID)) return false;
        mRunning.Append(processID);
        return true;
    }

private:
    // Whom the system tells nothing about may still run.
    static bool IsRunning(std::int32_t processID) {
        try {
            return GProcessInfo::GetInstance()->IsProcessRunning(processID);
        } catch (const GException&) {
            return true;
        }
    }

    GTable<std::int32_t> mRunning;
};

}  // namespace

void GIPCOutbox::Keep(const GIPCQueueAddress& queue, const GIPCPost& post) {
    mMessages.Append({queue, static_cast<std::int32_t>(post.mType), post.mData, post.mOnce});
    DropOldest(queue.mProcessID);
}

void GIPCOutbox::DropOldest(long processID) {
    long excess = -mRules.mKeptPerProcess;
    for (const MessageData& message : mMessages) {
        if (message.mQueue.mProcessID == processID) ++excess;
    }
    for (long position = 0; excess > 0; ++position) {
        if (mMessages[position].mQueue.mProcessID != processID) continue;
        mMessages.Remove(position--);
        --excess;
    }
}

void GIPCOutbox::Retry(GTable<std::int32_t>& broken) {
    RunningProcesses running;
    for (long position = 0; position < mMessages.GetCount();) {
        const std::int32_t processID = mMessages[position].mQueue.mProcessID;
        const Fate fate = Try(mMessages[position]);
        if (fate == Fate::cBroken) broken.Append(processID);
        if (fate == Fate::cLater || (fate == Fate::cNoRoom && running.Has(processID))) {
            ++position;
        } else {
            mMessages.Remove(position);
        }
    }
}

GIPCOutbox::Fate GIPCOutbox::Try(const MessageData& message) {
    if (mBeingWritten.Has(message.mQueue)) return Fate::cLater;
    const GIPCPost post{message.mType, message.mData, message.mOnce};
    try {
        const GIPCQueueAddress& address = message.mQueue;
        GIPCMessageQueue queue(address.mSession, address.mProcessID, address.mRegistrationID, mRules.mBudget);
        return post.AppendTo(queue) ? Fate::cDelivered : Fate::cNoRoom;
    } catch (const GException& failure) {
        return GIPCFailure::IsOfTarget(failure) ? Fate::cBroken : Fate::cLater;
    }
}

void GIPCOutbox::Discard(long processID) {
    for (long position = mMessages.GetCount() - 1; position >= 0; --position)
        if (mMessages[position].mQueue.mProcessID == processID) mMessages.Remove(position);
}
