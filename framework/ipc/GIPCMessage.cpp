#include "framework/ipc/GIPCMessage.h"

#include <utility>

GIPCMessage::GIPCMessage(long senderProcessID, long type, const GBuffer& data)
    : mSenderProcessID(static_cast<std::int32_t>(senderProcessID)),
      mType(static_cast<std::int32_t>(type)),
      mData(data) {}

GIPCMessage::GIPCMessage(long senderProcessID, long type, GBuffer&& data) noexcept
    : mSenderProcessID(static_cast<std::int32_t>(senderProcessID)),
      mType(static_cast<std::int32_t>(type)),
      mData(std::move(data)) {}

GIPCMessage::~GIPCMessage() = default;
