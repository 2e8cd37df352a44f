#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/memory/GFastAllocatable.h"
#include "framework/core/memory/GRefCount.h"

/// GIPCMessage: one message that a process has received. Shared by reference on one thread.
class QUILLON_EXPORT GIPCMessage : public GRefCount, public GFastAllocatable {
public:
    ///@{ Copies the data, or takes it over.
    GIPCMessage(long senderProcessID, long type, const GBuffer& data);
    GIPCMessage(long senderProcessID, long type, GBuffer&& data) noexcept;
    ///@}
    ~GIPCMessage() override;

    /// Who says to have sent it: any process can write any number here.
    long GetSenderProcessID() const noexcept { return mSenderProcessID; }
    /// As the sender gave it; receivers are registered by it.
    long GetType() const noexcept { return mType; }
    const GBuffer& GetData() const noexcept { return mData; }  ///< any bytes; valid as long as the message

private:
    std::int32_t mSenderProcessID;
    std::int32_t mType;
    GBuffer mData;
};
