#include "framework/core/encodings/GLatinCharset.h"

#include <string_view>

#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GSimpleEncoding.h"

namespace {

constexpr unsigned short cNoBreakSpace = 0x00A0;
constexpr unsigned short cSoftHyphen = 0x00AD;

// The glyph list knows the two glyphs only as the characters of their first codes. With these the
// second codes are kept apart, and a text comes back from the encoding as it went in.
unsigned short GetUnitOfSecondCode(std::string_view glyph) {
    return glyph == "space" ? cNoBreakSpace : cSoftHyphen;
}

}  // namespace

void GLatinCharset::AddMappings(GSimpleEncoding& encoding, unsigned char GLatinCharsetRow::*column) {
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
