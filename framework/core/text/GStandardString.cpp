#include "framework/core/text/GStandardString.h"

#include <iterator>

#include "framework/core/encodings/GUnicodeCharacters.h"

namespace {

constexpr char32_t cReplacement = 0xFFFD;

/// How many bytes begin with these leads, and what the second of them may be (Unicode 15, table 3-7).
struct LeadRow {
    unsigned char first, last;
    int length;
    unsigned char low, high;
};
constexpr LeadRow cLeads[] = {
    {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF}, {0xE1, 0xEC, 3, 0x80, 0xBF},
    {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF}, {0xF0, 0xF0, 4, 0x90, 0xBF},
    {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F},
};

// Of a sequence that breaks off, what was right of it counts as one bad character.
char32_t ReadCharacter(const unsigned char*& at, const unsigned char* end) {
    const unsigned char lead = *at++;
    if (lead < 0x80) return lead;
    const auto* const row = std::ranges::find_if(
        cLeads, [&](const LeadRow& each) { return lead >= each.first && lead <= each.last; });
    if (row == std::end(cLeads)) return cReplacement;
    char32_t code = lead & (0x7F >> row->length);
    for (int i = 1; i < row->length; ++i) {
        const unsigned char low = i == 1 ? row->low : 0x80;
        const unsigned char high = i == 1 ? row->high : 0xBF;
        if (at == end || *at < low || *at > high) return cReplacement;
        code = code << 6 | (*at++ & 0x3F);
    }
    return code;
}

char32_t ReadCharacter(const unsigned short*& at, const unsigned short* end) {
    const unsigned short unit = *at++;
    if (GUnicodeCharacters::IsLowSurrogate(unit)) return cReplacement;
    if (!GUnicodeCharacters::IsHighSurrogate(unit)) return unit;
    if (at == end || !GUnicodeCharacters::IsLowSurrogate(*at)) return cReplacement;
    return 0x10000 + ((unit & 0x3FFU) << 10 | (*at++ & 0x3FFU));
}

void Append(std::u16string& units, char32_t code) {
    if (code > 0xFFFF) {
        units += static_cast<char16_t>(0xD7C0 + (code >> 10));
        code = 0xDC00 + (code & 0x3FF);
    }
    units += static_cast<char16_t>(code);
}

void Append(std::string& bytes, char32_t code) {
    const int more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr unsigned cMarks[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(cMarks[more] | code >> (6 * more));
    for (int i = more - 1; i >= 0; --i) bytes += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
}

}  // namespace

GString GStandardString::Decode(const char* utf8, long length) {
    std::u16string units;
    const auto* at = reinterpret_cast<const unsigned char*>(utf8);
    for (const auto* const end = at + length; at != end;) Append(units, ReadCharacter(at, end));
    return FromUTF16(units);
}

GBuffer GStandardString::Encode(const GString& text) {
    std::string bytes;
    const unsigned short* at = text.GetUTF16Ptr();
    for (const auto* const end = at + text.GetLength(); at != end;) Append(bytes, ReadCharacter(at, end));
    return GBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), GetLength(bytes));
}
