#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/ipc/GIPCPost.h"
#include "framework/ipc/GIPCQueueAddress.h"
#include "framework/ipc/GIPCRules.h"

/// GIPCOutbox: messages that found a full queue and are kept for a later attempt, in the order in which
/// they were sent.
///
/// A kept message ends when its queue takes it, when its queue is gone or makes no sense, when its process
/// has ended, or when newer ones for the same process push it out. One thread at a time.
class QUILLON_EXPORT GIPCOutbox {
public:
    /// A kept message.
    struct MessageData {
        GIPCQueueAddress mQueue;  ///< where it is to go
        std::int32_t mType;       ///< of the message
        GBuffer mData;            ///< a copy of the data
        bool mOnce;               ///< dropped when the same message is waiting there by then
    };

    /// The rules outlive it.
    explicit GIPCOutbox(const GIPCRules& rules) noexcept : mRules(rules) {}
    GIPCOutbox(const GIPCOutbox&) = delete;
    GIPCOutbox& operator=(const GIPCOutbox&) = delete;

    long GetCount() const noexcept { return mMessages.GetCount(); }  ///< messages that are kept
    /// Keeps a copy behind the others. Beyond the number that the rules allow for one process, its oldest
    /// goes.
    void Keep(const GIPCQueueAddress& queue, const GIPCPost& post);
    /// Tries each message once; what still finds no room keeps its place. Appends to `broken` the processes
    /// whose queue is gone or makes no sense. Throws nothing but for want of memory.
    void Retry(GTable<std::int32_t>& broken);
    /// Drops what is kept for a process.
    void Discard(long processID);
    void Clear() noexcept { mMessages.Clear(); }  ///< drops all

    /// Keeps the outbox away from a queue that is being written to, for its own lifetime.
    class WritingMark {
    public:
        /// Both outlive the mark.
        WritingMark(GIPCOutbox& outbox, const GIPCQueueAddress& queue)
            : mMarks(outbox.mBeingWritten), mQueue(queue) {
            mMarks.Append(queue);
        }
        WritingMark(const WritingMark&) = delete;
        WritingMark& operator=(const WritingMark&) = delete;
        ~WritingMark() { mMarks.Remove(mMarks.Find(mQueue)); }

    private:
        GTable<GIPCQueueAddress>& mMarks;
        GIPCQueueAddress mQueue;
    };

private:
    enum class Fate { cDelivered, cNoRoom, cBroken, cLater };

    Fate Try(const MessageData& message);
    void DropOldest(long processID);

    const GIPCRules& mRules;
    GTable<MessageData> mMessages;
    GTable<GIPCQueueAddress> mBeingWritten;
};
