#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>

#include "framework/core/GExport.h"
#include "framework/core/text/GString.h"

/// GStandardString: the short ways between GString and the standard library's strings, in UTF-8 and UTF-16.
///
/// The UTF-8 is that of everybody else, with four bytes for a character beyond U+FFFF; GUTF8Encoding, which
/// the framework's own formats use, has six for it. What is not well-formed becomes U+FFFD on its way to or
/// from UTF-8. Zeros inside a text are characters like any other. UTF-16 is composed on its way in: "e" and
/// U+0301 become U+00E9.
///
/// Throws only for want of memory. Any thread, as far as the GString allows it. What returns or takes strings
/// of the standard library stands in this header, so that they are made by the program's own copy of it.
struct QUILLON_EXPORT GStandardString {
    /// The text of well-formed UTF-8; each sequence that is none becomes U+FFFD.
    static GString FromUTF8(std::string_view text) { return Decode(text.data(), GetLength(text)); }
    /// UTF-8; each surrogate without its partner becomes U+FFFD.
    static std::string ToUTF8(const GString& text) {
        const GBuffer bytes = Encode(text);
        return std::string(bytes.GetPtr(), static_cast<std::size_t>(bytes.GetLength()));
    }

    /// The units, composed; surrogates are not checked.
    static GString FromUTF16(std::u16string_view text) {
        return GString::FromUTF16(reinterpret_cast<const unsigned short*>(text.data()), GetLength(text));
    }
    /// The units as they are.
    static std::u16string ToUTF16(const GString& text) { return GetUnits<char16_t>(text); }

    /// The same as FromUTF16, where wchar_t is UTF-16, as on Windows.
    template <class Wide = wchar_t>
    requires(sizeof(Wide) == sizeof(char16_t)) static GString
        FromWide(std::basic_string_view<std::type_identity_t<Wide>> text) {
        return GString::FromUTF16(reinterpret_cast<const unsigned short*>(text.data()), GetLength(text));
    }
    /// The same as ToUTF16, where wchar_t is UTF-16, as on Windows.
    template <class Wide = wchar_t>
    requires(sizeof(Wide) == sizeof(char16_t)) static std::basic_string<Wide> ToWide(const GString& text) {
        return GetUnits<Wide>(text);
    }

private:
    static GString Decode(const char* utf8, long length);
    static GBuffer Encode(const GString& text);

    // A length that no string can have is refused as want of memory.
    template <class View>
    static long GetLength(View text) {
        return static_cast<long>(std::min<std::size_t>(text.size(), 0x7FFFFFFF));
    }
    template <class Unit>
    static std::basic_string<Unit> GetUnits(const GString& text) {
        const auto* const units = reinterpret_cast<const Unit*>(text.GetUTF16Ptr());
        return std::basic_string<Unit>(units, static_cast<std::size_t>(text.GetLength()));
    }
};
