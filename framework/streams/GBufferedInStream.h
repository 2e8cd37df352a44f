#pragma once

#include "framework/streams/GInStream.h"

/// GBufferedInStream: an input stream that can also step back.
class QUILLON_EXPORT GBufferedInStream : public GInStream {
public:
    /// Steps back by up to `count` bytes and returns how far it got. At least the bytes of the last
    /// Read can be given back.
    virtual long Unread(long count) = 0;
    /// Remembers the position for RollBack; a point set before is forgotten.
    virtual void SetRollBackPoint() = 0;
    /// Returns to the point and clears it. The result is the number of bytes that were given back,
    /// 0 when the stream stood before the point, -1 when no point is set (nothing happens then).
    virtual long RollBack() = 0;

protected:
    GBufferedInStream() = default;
    GBufferedInStream(const GBufferedInStream&) = default;
    GBufferedInStream& operator=(const GBufferedInStream&) = default;
};
