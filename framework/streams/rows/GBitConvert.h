#pragma once

#include <array>

#include "framework/streams/GFilterInStream.h"

/// GBitConvert: rows of samples of one width as rows of samples of another.
///
/// A row is `columns` pixels of `colours` samples, highest bit first, and fills whole bytes, the last one
/// with zero bits. Values are scaled: the greatest stays the greatest, what lies between becomes the
/// nearest. Of an unfinished last row the bytes that its samples fill are delivered; then the end is
/// unexpected.
class QUILLON_EXPORT GBitConvert : public GFilterInStream {
protected:
    /// Widths are 1 to 16 bits. Throws GExceptionID::cInvalidParameter when there can be no such rows.
    GBitConvert(GHeldStream<GInStream> source, long columns, long colours, long fromBits, long toBits);
    GBitConvert(const GBitConvert& other) = default;

private:
    /// Bits that do not make a sample, or a byte, yet; at the bottom.
    struct Bits {
        std::uint32_t word = 0;
        std::int32_t count = 0;
    };

    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;
    void TakeSample(GFilterWindow& window);
    void PutSample(GFilterWindow& window, std::uint32_t value);

    std::int32_t mFromBits;
    std::int32_t mToBits;
    long long mRowSamples = 0;
    long long mSample = 0;  // of the row
    Bits mIn;
    Bits mOut;
    std::array<std::uint16_t, 256> mScaled;  // all values of samples of up to eight bits
};

/// To samples of more bits, or as many; fewer throw GExceptionID::cInvalidParameter.
class QUILLON_EXPORT GBitExpander : public GBitConvert {
public:
    /// As GBitConvert.
    GBitExpander(GHeldStream<GInStream> source, long columns, long colours, long fromBits, long toBits);
    GBitExpander* CreateClone() const override;
};

/// To samples of fewer bits, or as many; more throw GExceptionID::cInvalidParameter.
class QUILLON_EXPORT GBitCompressor : public GBitConvert {
public:
    /// As GBitConvert.
    GBitCompressor(GHeldStream<GInStream> source, long columns, long colours, long fromBits, long toBits);
    GBitCompressor* CreateClone() const override;
};
