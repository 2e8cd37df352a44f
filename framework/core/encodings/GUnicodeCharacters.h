#pragma once

#include "framework/core/GExport.h"

/// GUnicodeCharacters: properties of single UTF-16 units by Unicode 14, the same on every machine and
/// in every locale. Surrogates have none. Safe on any thread.
struct QUILLON_EXPORT GUnicodeCharacters {
    /// Simple case mapping of one unit to one: what has no single unit as its counterpart (such as
    /// sharp s to upper case) stays as it is.
    static unsigned short ToLower(unsigned short unit) noexcept;
    static unsigned short ToUpper(unsigned short unit) noexcept;  ///< as ToLower(), the other way
    /// General category L*.
    static bool IsLetter(unsigned short unit) noexcept;
    /// General category Nd: decimal digits of all scripts.
    static bool IsDigit(unsigned short unit) noexcept;
    ///@{ The first and the second half of a surrogate pair.
    static constexpr bool IsHighSurrogate(unsigned short unit) noexcept { return (unit & 0xFC00) == 0xD800; }
    static constexpr bool IsLowSurrogate(unsigned short unit) noexcept { return (unit & 0xFC00) == 0xDC00; }
    ///@}
};
