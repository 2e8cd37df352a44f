#pragma once

#include <cstdint>

#include "framework/core/bytes/GBuffer.h"
#include "framework/streams/GHeldStream.h"
#include "framework/streams/GOutStream.h"

/// GBitWriter: words of 1 to 32 bits into a stream, highest bit first. One thread at a time.
///
/// A target that takes fewer bytes than it was given makes the call throw
/// GExceptionID::cCouldNotWriteFile.
class QUILLON_EXPORT GBitWriter {
public:
    /// From a reference the target is borrowed, from a pointer it is owned.
    explicit GBitWriter(GHeldStream<GOutStream> target);
    GBitWriter(const GBitWriter&) = delete;
    GBitWriter& operator=(const GBitWriter&) = delete;
    /// Finishes, unless that has been done since the last word; what the target throws is lost.
    ~GBitWriter();

    /// Writes the lower `bits` bits of `word`. Other widths throw GExceptionID::cInvalidParameter.
    void WriteWord(std::uint32_t word, long bits);
    /// Fills the last byte with zero bits and hands all to the target. Words that follow begin a byte.
    void Finish();

private:
    void Hand();

    GHeldStream<GOutStream> mTarget;
    GBuffer mChunk;           // whole bytes that the target has not been given
    std::uint64_t mBits = 0;  // less than a byte, at the bottom
    std::int32_t mBitCount = 0;
};
