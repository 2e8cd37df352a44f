#include "framework/streams/rows/GPNGRow.h"

#include <cstring>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/rows/GBitUtils.h"
#include "framework/streams/rows/GPNGKernels.h"

std::int32_t GPNGRow::CheckedLength(long columns, long colours, long bits) {
    if ((bits != 1 && bits != 2 && bits != 4 && bits != 8 && bits != 16) || colours > cMaxColours)
        throw GSimpleException(GExceptionID::cInvalidParameter);
    return GBitUtils::RowLength(columns, colours, bits);
}

GPNGRow::GPNGRow(std::int32_t pixelLength) : mPixelLength(pixelLength) {}

void GPNGRow::MakeRoom(std::int32_t count) {
    const auto needed = static_cast<std::size_t>(mPixelLength) + static_cast<std::size_t>(mPosition) +
                        static_cast<std::size_t>(count);
    if (mRow.size() < needed) mRow.resize(needed);
    if (mAbove.size() < needed) mAbove.resize(needed);
}

void GPNGRow::Encode(GPNGTag tag, const unsigned char* in, std::int32_t count, unsigned char* out) {
    MakeRoom(count);
    unsigned char* const row = mRow.data() + mPixelLength + mPosition;
    std::memcpy(row, in, static_cast<std::size_t>(count));
    GPNGKernels::Encode(tag, row, mAbove.data() + mPixelLength + mPosition, mPixelLength, count, out);
    mPosition += count;
}

void GPNGRow::Decode(GPNGTag tag, const unsigned char* in, std::int32_t count, unsigned char* out) {
    MakeRoom(count);
    unsigned char* const row = mRow.data() + mPixelLength + mPosition;
    GPNGKernels::Decode(tag, in, row, mAbove.data() + mPixelLength + mPosition, mPixelLength, count);
    std::memcpy(out, row, static_cast<std::size_t>(count));
    mPosition += count;
}

void GPNGRow::Finish() {
    mRow.swap(mAbove);
    mPosition = 0;
}

void GPNGRow::Restart() {
    mRow.clear();
    mAbove.clear();
    mPosition = 0;
}
