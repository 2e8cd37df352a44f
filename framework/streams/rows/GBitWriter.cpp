#include "framework/streams/rows/GBitWriter.h"

#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/rows/GBitUtils.h"

namespace {

constexpr long cChunk = 4096;

}  // namespace

GBitWriter::GBitWriter(GHeldStream<GOutStream> target) : mTarget(std::move(target)) {}

GBitWriter::~GBitWriter() {
    try {
        Finish();
    } catch (...) {
        // Whoever wants to know calls Finish.
    }
}

void GBitWriter::WriteWord(std::uint32_t word, long bits) {
    if (bits < 1 || bits > 32) throw GSimpleException(GExceptionID::cInvalidParameter);
    const auto width = static_cast<std::int32_t>(bits);
    mBits = mBits << width | (word & GBitUtils::GreatestOf(width));
    for (mBitCount += width; mBitCount >= 8;) {
        mBitCount -= 8;
        mChunk += static_cast<unsigned char>(mBits >> mBitCount);
    }
    if (mChunk.GetLength() >= cChunk) Hand();
}

void GBitWriter::Finish() {
    if (mBitCount > 0) mChunk += static_cast<unsigned char>(mBits << (8 - mBitCount));
    mBitCount = 0;
    Hand();
}

// What is handed over is not kept, also when the target does not take it.
void GBitWriter::Hand() {
    if (mChunk.IsEmpty()) return;
    GBuffer bytes;
    bytes.Swap(mChunk);
    if (mTarget->Write(bytes) != bytes.GetLength()) throw GSimpleException(GExceptionID::cCouldNotWriteFile);
}
