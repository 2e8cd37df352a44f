#pragma once

#include <string>
#include <string_view>

#include "framework/core/GBuffer.h"
#include "framework/core/GEncoding.h"
#include "framework/core/GString.h"
#include "framework/core/GUnicodeEncoding.h"

// Shorthands between the framework's texts and the standard library's, which tests can print.

inline GBuffer BufferOf(std::string_view bytes) {
    return GBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<long>(bytes.size()));
}

inline GBuffer BufferOf(std::u16string_view units) {
    return GBuffer(reinterpret_cast<const unsigned char*>(units.data()), static_cast<long>(2 * units.size()));
}

inline std::string BytesOf(const GBuffer& buffer) {
    return std::string(reinterpret_cast<const char*>(buffer.GetRawData()),
                       static_cast<std::size_t>(buffer.GetLength()));
}

inline std::u16string UnitsOf(const GBuffer& utf16) {
    std::u16string units;
    for (long i = 0; i < utf16.GetLength() / 2; ++i) units += static_cast<char16_t>(utf16.GetWordAt(i));
    return units;
}

inline std::u16string UnitsOf(const GString& text) {
    return UnitsOf(text.GetBuffer(GUnicodeEncoding::GetInstance()));
}

/// A UTF-16 string of exactly these units.
inline GString StringOf(std::u16string_view units) {
    return GString(BufferOf(units), GUnicodeEncoding::GetInstance(), true);
}

inline GString StringOf(std::string_view bytes, const GEncoding* encoding) {
    return GString(BufferOf(bytes), encoding, true);
}
