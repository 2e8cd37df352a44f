#include "framework/streams/rows/GBitReader.h"

#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/rows/GBitUtils.h"

namespace {

constexpr long cChunk = 4096;

}  // namespace

GBitReader::GBitReader(GHeldStream<GInStream> source) : mSource(std::move(source)) {}

bool GBitReader::Pull() {
    mChunk.Clear();
    mPosition = 0;
    return mSource->Read(mChunk, cChunk) > 0;
}

bool GBitReader::ReadWord(std::uint32_t& word, long bits) {
    if (bits < 1 || bits > 32) throw GSimpleException(GExceptionID::cInvalidParameter);
    while (mBitCount < bits) {
        if (mPosition == mChunk.GetLength() && !Pull()) {
            if (mBitCount >= 8) throw GSimpleException(GExceptionID::cUnexpectedEndOfData);
            return false;
        }
        mBits = mBits << 8 | mChunk.GetRawData()[mPosition++];
        mBitCount += 8;
    }
    mBitCount -= static_cast<std::int32_t>(bits);
    word = static_cast<std::uint32_t>(mBits >> mBitCount) & GBitUtils::GreatestOf(static_cast<int>(bits));
    return true;
}

void GBitReader::SkipToByte() {
    mBitCount = mBitCount / 8 * 8;
}

void GBitReader::Reset() {
    mSource->Reset();
    mChunk.Clear();
    mPosition = 0;
    mBitCount = 0;
}
