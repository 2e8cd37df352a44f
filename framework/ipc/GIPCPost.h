#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/ipc/GIPCMessageQueue.h"

/// GIPCPost: a message that is to be sent. It borrows its data.
struct GIPCPost {
    long mType;
    const GBuffer& mData;
    bool mOnce;  ///< a queue in which the same message is waiting counts as having got it

    /// False when there is no room.
    bool AppendTo(GIPCMessageQueue& queue) const {
        return mOnce ? queue.TryToAddRawMessageOnce(mType, mData) : queue.TryToAddRawMessage(mType, mData);
    }
};
