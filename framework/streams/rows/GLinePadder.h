#pragma once

#include "framework/streams/GFilterInStream.h"

/// GLinePadder: rows of bytes, made longer. An unfinished last row becomes as long as the others.
class QUILLON_EXPORT GLinePadder : public GFilterInStream {
public:
    /// From `width` bytes to `paddedWidth` by bytes of `value`. Throws GExceptionID::cInvalidParameter
    /// for a width below 1, a smaller padded one, and what is no byte.
    GLinePadder(GHeldStream<GInStream> source, long width, long paddedWidth, long value = 0);

    GLinePadder* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;

    std::int32_t mWidth;
    std::int32_t mPaddedWidth;
    unsigned char mValue;
    bool mPadding = false;       // the row's own bytes are through
    std::int32_t mPosition = 0;  // in the padded row
};
