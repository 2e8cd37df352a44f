#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"

/// GUTF8Encoding: UTF-8 (RFC 3629) in one to three bytes a UTF-16 unit.
///
/// Other than there, a surrogate is written, and read, on its own as three bytes, as in CESU-8 (Unicode
/// Technical Report 26), and a sequence of four bytes is invalid.
/// Reading accepts overlong forms and takes a byte-order mark for the character U+FEFF. A zero byte is read
/// as U+0000 with the result cReplaced. Invalid input (result cInvalid) stops the reading; what stands before
/// it has been converted. Writing writes nothing when the source's own bytes are invalid.
class QUILLON_EXPORT GUTF8Encoding : public GEncoding {
public:
    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GUTF8Encoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GUTF8Encoding* instance);

    using GEncoding::ConvertTo;
    long ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const override;
    long ConvertTo(const GBuffer& bytes, const GUnicodeEncoding* target, GBuffer& out) const override;
    /// Codes are the bytes of one character's sequence.
    bool GetGlyphName(const GCharCode& code, GBuffer& name) const override;
    bool GetCharCode(const GBuffer& glyphName, GCharCode& code) const override;
    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< as GetASCIIDescription() gives it
};
