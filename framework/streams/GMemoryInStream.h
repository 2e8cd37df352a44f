#pragma once

#include <cstdint>

#include "framework/streams/GBufferedInStream.h"

/// GMemoryInStream: reads a buffer that the caller keeps alive, unchanged in length or longer.
///
/// A buffer that has become shorter than the position reads as ended. Read never targets the buffer
/// that is being read.
class QUILLON_EXPORT GMemoryInStream : public GBufferedInStream {
public:
    explicit GMemoryInStream(const GBuffer& data);  ///< borrows the buffer
    /// The same for a pointer, which is not owned and not null.
    explicit GMemoryInStream(const GBuffer* data);

    GMemoryInStream* CreateClone() const override;
    long Read(GBuffer& out, long maxBytes) override;
    /// A negative count steps back, at most to the start; the result is negative then.
    long long Skip(long long count) override;
    void Reset() override;
    long Unread(long count) override;
    void SetRollBackPoint() override;
    long RollBack() override;

    /// The length of the whole buffer in bytes.
    long GetLength() const;
    /// The position in bytes from the start of the buffer.
    long GetPosition() const { return mPosition; }

private:
    const GBuffer* mData;  // not owned
    std::int32_t mPosition = 0;
    std::int32_t mRollBackPoint = -1;  // -1: none
};
