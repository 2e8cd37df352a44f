#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/memory/GFastAllocatable.h"
#include "framework/core/memory/GRefCount.h"

/// GIPCMessage: one message that a process has received. Shared by reference on one thread.
class QUILLON_EXPORT GIPCMessage : public GRefCount, public GFastAllocatable {
public:
    GIPCMessage(long senderProcessID, long type, const GBuffer& data);
    GIPCMessage(long senderProcessID, long type, GBuffer&& data) noexcept;
    ~GIPCMessage() override;

    /// Who says to have sent it: any process can write any number here.
    long GetSenderProcessID() const noexcept { return mSenderProcessID; }
    long GetType() const noexcept { return mType; }
    const GBuffer& GetData() const noexcept { return mData; }

private:
    std::int32_t mSenderProcessID;
    std::int32_t mType;
    GBuffer mData;
};
