#pragma once

#include <concepts>

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GMacExpertEncoding.h"
#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "tests/core/TextForTests.h"

// Functions, since the tests replace the instances.
inline constexpr auto ASCII = &GASCIIEncoding::GetInstance;
inline constexpr auto Unicode = &GUnicodeEncoding::GetInstance;
inline constexpr auto UTF8 = &GUTF8Encoding::GetInstance;
inline constexpr auto WinAnsi = &GWinAnsiEncoding::GetInstance;
inline constexpr auto MacRoman = &GMacRomanEncoding::GetInstance;
inline constexpr auto MacExpert = &GMacExpertEncoding::GetInstance;
inline constexpr auto Standard = &GStandardEncoding::GetInstance;
inline constexpr auto PDFDoc = &GPDFDocEncoding::GetInstance;
inline constexpr auto ShiftJIS = &GShiftJISEncoding::GetInstance;

/// What reading bytes gave.
struct Conversion {
    std::u16string units;
    long result;
    bool operator==(const Conversion&) const = default;
};

inline Conversion Read(const GEncoding* encoding, std::string_view bytes) {
    GBuffer out;
    const long result = encoding->ConvertTo(BufferOf(bytes), Unicode(), out);
    return {Plain(out), result};
}

/// What writing UTF-16, or the bytes of another encoding, gave.
struct Written {
    std::string bytes;
    long result;
    bool operator==(const Written&) const = default;
};

inline Written Write(const GEncoding* encoding, const GBuffer& bytes, const GEncoding* source) {
    GBuffer out("old");
    const long result = encoding->ConvertFrom(bytes, source, out);
    return {BytesOf(out), result};
}

inline Written Write(const GEncoding* encoding, std::u16string_view units) {
    return Write(encoding, BufferOf(units), Unicode());
}

template <class Result>
void PrintTo(const Result& result,
             std::ostream* out) requires std::same_as<Result, Conversion> || std::same_as<Result, Written> {
    const auto& [text, code] = result;
    *out << testing::PrintToString(text) << ", " << code;
}
