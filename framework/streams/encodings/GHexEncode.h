#pragma once

#include "framework/streams/encodings/GTextEncode.h"

/// GHexEncode: each byte as two hexadecimal digits, in upper case, and '>' at the end.
class QUILLON_EXPORT GHexEncode : public GTextEncode {
public:
    /// `breakLines`: lines of 80 characters, parted by LF.
    explicit GHexEncode(GHeldStream<GInStream> source, bool breakLines = false);

    GHexEncode* CreateClone() const override;

private:
    GFilterStep Encode(GFilterWindow& window) const override;
};
