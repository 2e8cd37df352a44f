#pragma once

#include <string>
#include <string_view>

#include "framework/core/GString.h"

/// Between the literals of tests and the framework's strings.
inline GString Text(std::u16string_view text) {
    return GString::FromUTF16(reinterpret_cast<const unsigned short*>(text.data()),
                              static_cast<long>(text.size()));
}

inline std::u16string Plain(const GString& text) {
    std::u16string plain;
    for (long i = 0; i < text.GetLength(); ++i) plain += static_cast<char16_t>(text[i]);
    return plain;
}

/// For the traces of tests: what is not printable ASCII is shown by its number.
inline std::string Readable(std::u16string_view text) {
    std::string readable;
    for (const char16_t unit : text) {
        if (unit >= 0x20 && unit < 0x7F) {
            readable += static_cast<char>(unit);
        } else {
            readable += '<';
            readable += std::to_string(static_cast<unsigned>(unit));
            readable += '>';
        }
    }
    return readable;
}
