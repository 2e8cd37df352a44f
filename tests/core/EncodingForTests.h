#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GMacExpertEncoding.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GPDFDocEncoding.h"
#include "framework/core/GShiftJISEncoding.h"
#include "framework/core/GStandardEncoding.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GUnicodeEncoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TextForTests.h"

// Not kept: the tests replace the instances.
inline const GASCIIEncoding* ASCII() {
    return GASCIIEncoding::GetInstance();
}
inline const GUnicodeEncoding* Unicode() {
    return GUnicodeEncoding::GetInstance();
}
inline const GUTF8Encoding* UTF8() {
    return GUTF8Encoding::GetInstance();
}
inline const GWinAnsiEncoding* WinAnsi() {
    return GWinAnsiEncoding::GetInstance();
}
inline const GMacRomanEncoding* MacRoman() {
    return GMacRomanEncoding::GetInstance();
}
inline const GMacExpertEncoding* MacExpert() {
    return GMacExpertEncoding::GetInstance();
}
inline const GStandardEncoding* Standard() {
    return GStandardEncoding::GetInstance();
}
inline const GPDFDocEncoding* PDFDoc() {
    return GPDFDocEncoding::GetInstance();
}
inline const GShiftJISEncoding* ShiftJIS() {
    return GShiftJISEncoding::GetInstance();
}

/// What reading bytes gave.
struct Conversion {
    std::u16string units;
    long result;
    bool operator==(const Conversion&) const = default;
};

inline Conversion Read(const GEncoding* encoding, std::string_view bytes) {
    GBuffer out;
    const long result = encoding->ConvertTo(BufferOf(bytes), Unicode(), out);
    return {UnitsOf(out), result};
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

inline void PrintTo(const Conversion& read, std::ostream* out) {
    *out << testing::PrintToString(read.units) << ", " << read.result;
}

inline void PrintTo(const Written& written, std::ostream* out) {
    *out << testing::PrintToString(written.bytes) << ", " << written.result;
}
