#include "framework/streams/rows/GLinePadder.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

GLinePadder::GLinePadder(GHeldStream<GInStream> source, long width, long paddedWidth, long value)
    : GFilterInStream(std::move(source), 1),
      mWidth(static_cast<std::int32_t>(width)),
      mPaddedWidth(static_cast<std::int32_t>(paddedWidth)),
      mValue(static_cast<unsigned char>(value)) {
    if (width < 1 || paddedWidth < width || paddedWidth > GBuffer::cMaxLength || value < 0 || value > 0xFF)
        throw GSimpleException(GExceptionID::cInvalidParameter);
}

GLinePadder* GLinePadder::CreateClone() const {
    return new GLinePadder(*this);
}

void GLinePadder::Restart() {
    mPadding = false;
    mPosition = 0;
}

GFilterStep GLinePadder::Convert(GFilterWindow& window) {
    while (window.OutRoom() > 0) {
        if (!mPadding) {
            mPosition += static_cast<std::int32_t>(window.CopyThrough(mWidth - mPosition));
            if (mPosition < mWidth && !window.isLast) return GFilterStep::cGoOn;
            if (mPosition < mWidth && window.InCount() > 0) return GFilterStep::cGoOn;
            if (mPosition == 0) return GFilterStep::cEnd;
            mPadding = true;
        }
        const long count = std::min<long>(window.OutRoom(), mPaddedWidth - mPosition);
        std::memset(window.out, mValue, static_cast<std::size_t>(count));
        window.out += count;
        mPosition += static_cast<std::int32_t>(count);
        if (mPosition < mPaddedWidth) return GFilterStep::cGoOn;
        Restart();
    }
    return GFilterStep::cGoOn;
}
