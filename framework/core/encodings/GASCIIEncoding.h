#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"

/// GASCIIEncoding: 7-bit ASCII, the encoding of literals and numbers.
///
/// Bytes above 0x7F have no character: they become the default character with the result cReplaced.
/// Glyph names are those of the Unicode dictionaries, as far as their unit is below 0x80.
class QUILLON_EXPORT GASCIIEncoding : public GEncoding {
public:
    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GASCIIEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GASCIIEncoding* instance);

    using GEncoding::ConvertTo;
    long ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const override;
    long ConvertTo(const GBuffer& bytes, const GUnicodeEncoding* target, GBuffer& out) const override;
    bool GetGlyphName(const GCharCode& code, GBuffer& name) const override;
    bool GetCharCode(const GBuffer& glyphName, GCharCode& code) const override;
    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< as GetASCIIDescription() gives it
};
