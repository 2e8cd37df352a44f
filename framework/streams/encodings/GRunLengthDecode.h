#pragma once

#include "framework/streams/GFilterInStream.h"

/// GRunLengthDecode: the reverse of GRunLengthEncode. A run of bytes as they are that is cut by the end
/// of the source gives those that are there, and then an unexpected end.
class QUILLON_EXPORT GRunLengthDecode : public GFilterInStream {
public:
    /// From a reference the source is borrowed, from a pointer owned.
    explicit GRunLengthDecode(GHeldStream<GInStream> source);

    GRunLengthDecode* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override {}
};
