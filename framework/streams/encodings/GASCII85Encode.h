#pragma once

#include "framework/streams/encodings/GTextEncode.h"

/// GASCII85Encode: four bytes as five characters from '!' to 'u', four zero bytes as 'z', one to three
/// bytes at the end as one character more than they are, and "~>".
class QUILLON_EXPORT GASCII85Encode : public GTextEncode {
public:
    /// `breakLines`: lines of 80 characters, parted by LF, which never stands inside "~>".
    explicit GASCII85Encode(GHeldStream<GInStream> source, bool breakLines = false);

    GASCII85Encode* CreateClone() const override;

private:
    GFilterStep Encode(GFilterWindow& window) const override;
    static void EncodeBytesPartial(GFilterWindow& window);
};
