#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"

template <class T>
class GTable;

/// GUnicodeEncoding: UTF-16 in the machine's byte order without a byte-order mark, the pivot of all
/// conversions.
///
/// A character is one 16-bit unit; surrogates are not checked. Bytes whose count is odd are invalid
/// (result cInvalid): the whole units before the odd byte are what is converted.
///
/// The glyph dictionaries (names of the published Adobe glyph list and the compatibility characters
/// of Unicode 14) are built by Initialize or on first need, by whichever thread comes first, and
/// freed by Finalize.
class QUILLON_EXPORT GUnicodeEncoding : public GEncoding {
public:
    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GUnicodeEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GUnicodeEncoding* instance);
    /// Builds the glyph dictionaries now instead of on first need.
    static void Initialize();
    /// Frees the glyph dictionaries; no other thread may be using them.
    static void Finalize();

    using GEncoding::ConvertTo;
    long ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const override;
    long ConvertTo(const GBuffer& bytes, const GUnicodeEncoding* target, GBuffer& out) const override;
    /// Codes are single units. Of several names of a unit this is the one that the Latin and expert
    /// character sets use, otherwise the first in alphabetical order.
    bool GetGlyphName(const GCharCode& code, GBuffer& name) const override;
    /// A glyph that stands for several units gives a code of all of them, in order.
    bool GetCharCode(const GBuffer& glyphName, GCharCode& code) const override;
    const GBuffer& GetASCIIDescription() const override;
    /// Composes, as EnsureComposedUnicode does.
    void Normalize(GBuffer& bytes) const override;
    /// Counts up to the first zero unit; `text` need not be aligned.
    long GetLength(const unsigned char* text) const override;

    /// All names of a unit in alphabetical order; `names` becomes empty when it has none.
    virtual void GetGlyphNameTable(const GCharCode& code, GTable<GBuffer>& names) const;
    /// The plain unit that stands for a compatibility character (such as "1" for superscript one);
    /// one step. False, `compatible` untouched, when `code` is no such character.
    virtual bool GetCompatChar(const GCharCode& code, GCharCode& compatible) const;
    /// Replaces every base character that is followed by combining marks with the precomposed
    /// character, as far as Unicode has one (canonical composition; Hangul letters become
    /// syllables). Marks are taken in the order in which they stand, without reordering; a mark that
    /// does not compose stays and ends its base's turn. Linear time. Text in which nothing composes
    /// is left untouched and uncopied, an odd last byte where it is. Returns `utf16`.
    virtual GBuffer& EnsureComposedUnicode(GBuffer& utf16) const;

    static const GBuffer sDescription;  ///< as GetASCIIDescription() gives it
};
