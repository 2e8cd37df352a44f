#include "framework/streams/rows/GBitConvert.h"

#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/rows/GBitUtils.h"

namespace {

constexpr std::int32_t cNeededRoom = 4;  // a sample of 16 bits and what stood before it
constexpr std::int32_t cTableBits = 8;

void Require(bool holds) {
    if (!holds) throw GSimpleException(GExceptionID::cInvalidParameter);
}

}  // namespace

GBitConvert::GBitConvert(GHeldStream<GInStream> source, long columns, long colours, long fromBits,
                         long toBits)
    : GFilterInStream(std::move(source), cNeededRoom),
      mFromBits(static_cast<std::int32_t>(fromBits)),
      mToBits(static_cast<std::int32_t>(toBits)),
      mScaled() {
    GBitUtils::RowLength(columns, colours, fromBits);
    GBitUtils::RowLength(columns, colours, toBits);
    mRowSamples = static_cast<long long>(columns) * colours;
    if (mFromBits > cTableBits) return;
    for (std::uint32_t value = 0; value <= GBitUtils::GreatestOf(mFromBits); ++value) {
        mScaled[value] = static_cast<std::uint16_t>(GBitUtils::Scale(value, mFromBits, mToBits));
    }
}

void GBitConvert::Restart() {
    mSample = 0;
    mIn = Bits();
    mOut = Bits();
}

GFilterStep GBitConvert::Convert(GFilterWindow& window) {
    while (window.OutRoom() >= cNeededRoom) {
        if (mIn.count >= mFromBits) {
            TakeSample(window);
        } else if (window.InCount() > 0) {
            mIn.word = mIn.word << 8 | *window.in++;
            mIn.count += 8;
        } else {
            if (!window.isLast) return GFilterStep::cGoOn;
            return mSample == 0 && mIn.count == 0 ? GFilterStep::cEnd : GFilterStep::cTruncated;
        }
    }
    return GFilterStep::cGoOn;
}

void GBitConvert::TakeSample(GFilterWindow& window) {
    mIn.count -= mFromBits;
    const std::uint32_t value = mIn.word >> mIn.count & GBitUtils::GreatestOf(mFromBits);
    PutSample(window, mFromBits <= cTableBits ? mScaled[value] : GBitUtils::Scale(value, mFromBits, mToBits));
    if (++mSample < mRowSamples) return;
    mSample = 0;
    mIn.count = 0;
    if (mOut.count > 0) *window.out++ = static_cast<unsigned char>(mOut.word << (8 - mOut.count));
    mOut.count = 0;
}

void GBitConvert::PutSample(GFilterWindow& window, std::uint32_t value) {
    mOut.word = mOut.word << mToBits | value;
    mOut.count += mToBits;
    while (mOut.count >= 8) {
        mOut.count -= 8;
        *window.out++ = static_cast<unsigned char>(mOut.word >> mOut.count);
    }
}

GBitExpander::GBitExpander(GHeldStream<GInStream> source, long columns, long colours, long fromBits,
                           long toBits)
    : GBitConvert(std::move(source), columns, colours, fromBits, toBits) {
    Require(fromBits <= toBits);
}

GBitExpander* GBitExpander::CreateClone() const {
    return new GBitExpander(*this);
}

GBitCompressor::GBitCompressor(GHeldStream<GInStream> source, long columns, long colours, long fromBits,
                               long toBits)
    : GBitConvert(std::move(source), columns, colours, fromBits, toBits) {
    Require(fromBits >= toBits);
}

GBitCompressor* GBitCompressor::CreateClone() const {
    return new GBitCompressor(*this);
}
