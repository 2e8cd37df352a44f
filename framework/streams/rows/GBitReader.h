#pragma once

#include <cstdint>

#include "framework/core/bytes/GBuffer.h"
#include "framework/streams/GHeldStream.h"
#include "framework/streams/GInStream.h"

/// GBitReader: words of 1 to 32 bits from a stream, highest bit first. It reads the stream in chunks of
/// 4096 bytes, ahead of the words. One thread at a time.
class QUILLON_EXPORT GBitReader {
public:
    /// From a reference the source is borrowed, from a pointer it is owned.
    explicit GBitReader(GHeldStream<GInStream> source);

    /// The next `bits` bits in `word`. False at the end of the data, and where less than a byte of it is
    /// left and less than is asked for: what fills the last byte. Throws GExceptionID::cInvalidParameter
    /// for other widths and GExceptionID::cUnexpectedEndOfData when a byte or more is left, but not
    /// enough.
    bool ReadWord(std::uint32_t& word, long bits);
    /// Passes over the bits up to the next whole byte.
    void SkipToByte();
    /// Back to the start of the source.
    void Reset();

private:
    bool Pull();

    GHeldStream<GInStream> mSource;
    GBuffer mChunk;
    std::int32_t mPosition = 0;
    std::uint64_t mBits = 0;  // not delivered yet, at the bottom
    std::int32_t mBitCount = 0;
};
