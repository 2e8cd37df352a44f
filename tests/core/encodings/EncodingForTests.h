#pragma once

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

/// What reading bytes gave, or writing UTF-16 or the bytes of another encoding.
template <class Text>
struct Converted {
    Text text;
    long result;
    bool operator==(const Converted&) const = default;
    friend void PrintTo(const Converted& converted, std::ostream* out) {
        *out << testing::PrintToString(converted.text) << ", " << converted.result;
    }
};
using Conversion = Converted<std::u16string>;
using Written = Converted<std::string>;

inline Conversion Read(const GEncoding* encoding, std::string_view bytes) {
    GBuffer out;
    const long result = encoding->ConvertTo(BufferOf(bytes), Unicode(), out);
    return {Plain(out), result};
}

inline Written Write(const GEncoding* encoding, const GBuffer& bytes, const GEncoding* source) {
    GBuffer out("old");
    const long result = encoding->ConvertFrom(bytes, source, out);
    return {BytesOf(out), result};
}

inline Written Write(const GEncoding* encoding, std::u16string_view units) {
    return Write(encoding, BufferOf(units), Unicode());
}
