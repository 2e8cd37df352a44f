#pragma once

#include "framework/core/GExport.h"

class GBuffer;

/// GOutStream: a target of bytes that is written front to back in chunks. One thread at a time.
class QUILLON_EXPORT GOutStream {
public:
    virtual ~GOutStream();

    /// Writes `data` and returns how many bytes were taken; fewer than given means that the target
    /// is full. Every other failure is thrown.
    virtual long Write(const GBuffer& data) = 0;
    /// Moves forward by `count` bytes and returns how far it got; 0 from a stream that cannot skip.
    virtual long long Skip(long long count);
    /// Hands what is still held back to the target; a stream that holds nothing back does nothing.
    virtual void Flush();
    /// Back to the start, for a stream that can go back; otherwise nothing.
    virtual void Reset();

protected:
    GOutStream() = default;
    GOutStream(const GOutStream&) = default;
    GOutStream& operator=(const GOutStream&) = default;
};
