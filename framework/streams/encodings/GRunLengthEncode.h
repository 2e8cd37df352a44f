#pragma once

#include "framework/streams/GFilterInStream.h"

/// GRunLengthEncode: runs of up to 128 bytes, each behind a length byte, and 128 at the end
/// (ISO 32000-1, 7.4.5).
///
/// Length bytes 0 to 127 stand before 1 to 128 bytes as they are, 129 to 255 before one byte that is to
/// be repeated 128 to 2 times (257 less the length byte). Two equal bytes where a run begins make a
/// repeat; inside a run of other bytes it takes three to end it.
class QUILLON_EXPORT GRunLengthEncode : public GFilterInStream {
public:
    /// From a reference the source is borrowed, from a pointer owned.
    explicit GRunLengthEncode(GHeldStream<GInStream> source);

    GRunLengthEncode* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override {}
};
