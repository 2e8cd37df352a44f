#pragma once

#include "framework/core/GExport.h"
#include "framework/core/encodings/GUnicodeCharacters.h"

class GBuffer;
class GString;

/// PText: what the operating system knows about text, and the case mapping that does not ask it.
/// Safe on any thread.
struct QUILLON_EXPORT PText {
    /// Converts bytes of a code page (0: the system's default) to UTF-16; `utf16` may be `bytes`.
    /// Returns 1, 2 when something became the default character (GEncoding::GetDefaultCharacter),
    /// or 4, with an empty output, for a code page that the system does not have.
    static long CodePageToUTF16(long codePage, const GBuffer& bytes, GBuffer& utf16);
    /// The reverse, with the same results. An odd last byte of `utf16` is not converted.
    static long UTF16ToCodePage(long codePage, const GBuffer& utf16, GBuffer& bytes);
    /// How the user's locale orders two texts: -1, 0 or 1. The native build, which serves tests
    /// only, orders by units, after ToLower when the case is to be ignored.
    static int CompareForUser(const GString& a, const GString& b, bool ignoreCase);
    ///@{ GUnicodeCharacters' case mapping: one unit to one, the same in every locale.
    static unsigned short ToLower(unsigned short unit) noexcept { return GUnicodeCharacters::ToLower(unit); }
    static unsigned short ToUpper(unsigned short unit) noexcept { return GUnicodeCharacters::ToUpper(unit); }
    ///@}
};
