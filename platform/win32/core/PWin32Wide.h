#pragma once

#include <string>
#include <string_view>

#include "framework/core/text/GString.h"

/// The text as the wide functions of Windows take it, zero-terminated; valid until `text` changes or
/// goes.
inline const wchar_t* AsWide(const GString& text) {
    return reinterpret_cast<const wchar_t*>(text.GetUTF16Ptr());
}

/// The text as one of the standard library's, with any zeros in it.
inline std::wstring AsStandard(const GString& text) {
    return std::wstring(AsWide(text), static_cast<std::size_t>(text.GetLength()));
}

///@{ `length` wide characters as a string, composed.
inline GString FromWide(const wchar_t* text, long length) {
    return GString::FromUTF16(reinterpret_cast<const unsigned short*>(text), length);
}
inline GString FromWide(std::wstring_view text) {
    return FromWide(text.data(), static_cast<long>(text.size()));
}
///@}

///@{ The same, unit by unit as they are. For names by which the system is asked again: composed it would be
/// another name.
inline GString NameFromWide(const wchar_t* name, long length) {
    GString text;
    text.SetLength(length);
    for (long i = 0; i < length; ++i) text.SetChar(i, name[i]);
    return text;
}
inline GString NameFromWide(std::wstring_view name) {
    return NameFromWide(name.data(), static_cast<long>(name.size()));
}
///@}
