#include "framework/core/encodings/GLatinEncodings.h"

#include <string_view>

#include "framework/core/encodings/GCharacterTables.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/memory/GReplaceable.h"

namespace {

constexpr unsigned short cNoBreakSpace = 0x00A0;
constexpr unsigned short cSoftHyphen = 0x00AD;
constexpr unsigned short cBullet = 0x2022;

constinit GReplaceable<GStandardEncoding> sStandard;
constinit GReplaceable<GMacRomanEncoding> sMacRoman;
constinit GReplaceable<GWinAnsiEncoding> sWinAnsi;
constinit GReplaceable<GPDFDocEncoding> sPDFDoc;

// The glyph list knows the two glyphs only as the characters of their first codes. With these the
// second codes are kept apart, and a text comes back from the encoding as it went in.
unsigned short GetUnitOfSecondCode(std::string_view glyph) {
    return glyph == "space" ? cNoBreakSpace : cSoftHyphen;
}

// Maps every code that stands in the column to its glyph. A column's second codes for "space" and "hyphen"
// mean the no-break space and the soft hyphen.
void AddMappings(GSimpleEncoding& encoding, unsigned char GLatinCharsetRow::*column) {
    std::string_view previous;
    for (const GLatinCharsetRow& row : GCharacterTables::GetLatinCharset()) {
        const bool isSecond = previous == row.glyph;
        previous = row.glyph;
        if (row.*column == 0) continue;
        const GBuffer glyph = BorrowLiteral(row.glyph);
        if (isSecond)
            encoding.AddMapping(row.*column, glyph, GetUnitOfSecondCode(row.glyph));
        else
            encoding.AddMapping(row.*column, glyph);
    }
}

}  // namespace

constinit const GBuffer GStandardEncoding::sDescription(cLiteral<"StandardEncoding">);

GStandardEncoding::GStandardEncoding() {
    AddMappings(*this, &GLatinCharsetRow::standard);
}

GStandardEncoding* GStandardEncoding::GetInstance() {
    return sStandard.Get([] { return new GStandardEncoding; });
}

void GStandardEncoding::SetInstance(GStandardEncoding* instance) {
    sStandard.Set(instance);
}

const GBuffer& GStandardEncoding::GetASCIIDescription() const {
    return sDescription;
}

constinit const GBuffer GMacRomanEncoding::sDescription(cLiteral<"MacRomanEncoding">);

GMacRomanEncoding::GMacRomanEncoding() {
    AddMappings(*this, &GLatinCharsetRow::macRoman);
}

GMacRomanEncoding* GMacRomanEncoding::GetInstance() {
    return sMacRoman.Get([] { return new GMacRomanEncoding; });
}

void GMacRomanEncoding::SetInstance(GMacRomanEncoding* instance) {
    sMacRoman.Set(instance);
}

const GBuffer& GMacRomanEncoding::GetASCIIDescription() const {
    return sDescription;
}

constinit const GBuffer GWinAnsiEncoding::sDescription(cLiteral<"WinAnsiEncoding">);

GWinAnsiEncoding::GWinAnsiEncoding() {
    AddMapping(149, BorrowLiteral("bullet"), cBullet);
    AddMappings(*this, &GLatinCharsetRow::winAnsi);
}

GWinAnsiEncoding* GWinAnsiEncoding::GetInstance() {
    return sWinAnsi.Get([] { return new GWinAnsiEncoding; });
}

void GWinAnsiEncoding::SetInstance(GWinAnsiEncoding* instance) {
    sWinAnsi.Set(instance);
}

const GBuffer& GWinAnsiEncoding::GetASCIIDescription() const {
    return sDescription;
}

constinit const GBuffer GPDFDocEncoding::sDescription(cLiteral<"PDFDocEncoding">);

GPDFDocEncoding::GPDFDocEncoding() {
    AddMappings(*this, &GLatinCharsetRow::pdfDoc);
}

GPDFDocEncoding* GPDFDocEncoding::GetInstance() {
    return sPDFDoc.Get([] { return new GPDFDocEncoding; });
}

void GPDFDocEncoding::SetInstance(GPDFDocEncoding* instance) {
    sPDFDoc.Set(instance);
}

const GBuffer& GPDFDocEncoding::GetASCIIDescription() const {
    return sDescription;
}
