#pragma once

#include <string>
#include <string_view>

#include "framework/core/GEncoding.h"
#include "framework/core/GUnicodeEncoding.h"
#include "tests/core/TextForTests.h"

/// What reading bytes gave.
struct Conversion {
    std::u16string units;
    long result;
};

inline Conversion Read(const GEncoding* encoding, std::string_view bytes) {
    GBuffer out;
    const long result = encoding->ConvertTo(BufferOf(bytes), GUnicodeEncoding::GetInstance(), out);
    return {UnitsOf(out), result};
}

/// What writing UTF-16 gave.
struct Written {
    std::string bytes;
    long result;
};

inline Written Write(const GEncoding* encoding, std::u16string_view units) {
    GBuffer out;
    const long result = encoding->ConvertFrom(BufferOf(units), GUnicodeEncoding::GetInstance(), out);
    return {BytesOf(out), result};
}
