#pragma once

#include "framework/streams/GFilterInStream.h"

/// GHexDecode: bytes from pairs of hexadecimal digits of either case, up to '>' (ISO 32000-1, 7.4.2).
///
/// White space (NUL, tab, LF, form feed, CR, blank) is skipped everywhere. An odd last digit is
/// followed by 0. Anything else is wrong data.
class QUILLON_EXPORT GHexDecode : public GFilterInStream {
public:
    /// From a reference the source is borrowed, from a pointer owned.
    explicit GHexDecode(GHeldStream<GInStream> source);

    GHexDecode* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;
    GFilterStep TakeByte(GFilterWindow& window);
    GFilterStep Finish(GFilterWindow& window) const;

    std::int32_t mHighDigit = -1;  // the value of the first digit of a pair, -1: none
};
