#pragma once

#include "framework/core/encodings/GSimpleEncoding.h"

/// GMacRomanEncoding: the MacRoman column of the Latin character set (ISO 32000-1, Annex D).
///
/// Code 0xCA is the no-break space U+00A0, in both directions. The mathematical glyphs that the
/// system encoding of the same name has beyond this column have no code here.
class QUILLON_EXPORT GMacRomanEncoding : public GSimpleEncoding {
public:
    GMacRomanEncoding();

    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GMacRomanEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GMacRomanEncoding* instance);

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;
};
