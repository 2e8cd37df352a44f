#pragma once

#include "framework/core/encodings/GSimpleEncoding.h"

/// GWinAnsiEncoding: the WinAnsi column of the Latin character set (ISO 32000-1, Annex D).
///
/// Code 0xA0 is the no-break space U+00A0 and code 0xAD the soft hyphen U+00AD, in both directions.
/// The codes 0x7F, 0x81, 0x8D, 0x8F, 0x90 and 0x9D have no character.
class QUILLON_EXPORT GWinAnsiEncoding : public GSimpleEncoding {
public:
    GWinAnsiEncoding();

    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GWinAnsiEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GWinAnsiEncoding* instance);

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;
};
