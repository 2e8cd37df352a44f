#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeCharacters.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/text/GStringSupport.h"

// --- Choice of an encoding ---------------------------------------------------------------------

const GEncoding* GStringSupport::GetBuffer(const GString& text, GBuffer& out) {
    return GetBuffer(text, out, {GASCIIEncoding::GetInstance(), GWinAnsiEncoding::GetInstance()});
}

const GEncoding* GStringSupport::GetBuffer(const GString& text, GBuffer& out,
                                           const GTable<const GEncoding*>& candidates) {
    for (const GEncoding* candidate : candidates)
        if (candidate != nullptr && text.GetBuffer(out, candidate) == GEncoding::cConverted) return candidate;
    const GEncoding* utf8 = GUTF8Encoding::GetInstance();
    text.GetBuffer(out, utf8);
    return utf8;
}

const GEncoding* GStringSupport::AssignEncoding(const GBuffer& bytes, GString& text) {
    return AssignEncoding(bytes, text,
                          {GASCIIEncoding::GetInstance(), GUTF8Encoding::GetInstance(),
                           GWinAnsiEncoding::GetInstance(), GMacRomanEncoding::GetInstance()});
}

const GEncoding* GStringSupport::AssignEncoding(const GBuffer& bytes, GString& text,
                                                const GTable<const GEncoding*>& candidates) {
    const GEncoding* chosen = nullptr;
    for (const GEncoding* candidate : candidates) {
        if (candidate == nullptr) continue;
        chosen = candidate;
        GBuffer utf16;
        if (candidate->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), utf16) == GEncoding::cConverted)
            break;
    }
    if (chosen != nullptr)
        text.Set(bytes, chosen, true);
    else
        text = GString();
    return chosen;
}

// --- Email addresses ---------------------------------------------------------------------------

namespace {

constexpr long cLongestLocalPart = 64;
constexpr long cLongestDomain = 253;
constexpr long cLongestLabel = 63;

bool IsASCIIDigit(unsigned short unit) {
    return unit >= '0' && unit <= '9';
}

bool IsLetterOrDigit(unsigned short unit) {
    return IsASCIIDigit(unit) || GUnicodeCharacters::IsLetter(unit);
}

bool IsLocalPartUnit(unsigned short unit) {
    constexpr std::u16string_view cSigns = u"!#$%&'*+-/=?^_`{|}~";
    return IsLetterOrDigit(unit) || cSigns.find(static_cast<char16_t>(unit)) != std::u16string_view::npos;
}

// The parts between dots; all of them must pass, and none may be empty.
template <class Test>
bool AllPartsPass(const GString& text, Test test) {
    GTable<GString> parts;
    GStringSupport::SeparatedStringToStringTable(text, GString("."), parts, true);
    return std::all_of(parts.begin(), parts.end(), [&](const GString& part) {
        if (part.IsEmpty()) return false;
        for (long i = 0; i < part.GetLength(); ++i)
            if (!test(part, i)) return false;
        return true;
    });
}

bool IsLabelUnit(const GString& label, long position) {
    const long length = label.GetLength();
    if (length > cLongestLabel) return false;
    const bool isInner = position > 0 && position < length - 1;
    return IsLetterOrDigit(label[position]) || (isInner && label[position] == '-');
}

bool IsDomain(const GString& domain) {
    const long length = domain.GetLength();
    const long lastDot = domain.FindLast('.', length);
    if (lastDot < 0 || length > cLongestDomain || !AllPartsPass(domain, IsLabelUnit)) return false;
    for (long i = lastDot + 1; i < length; ++i)
        if (!IsASCIIDigit(domain[i])) return true;
    return false;
}

}  // namespace

bool GStringSupport::IsPossibleEmailAddress(const GString& text) {
    const long at = text.FindFirst('@');
    if (at < 1 || at > cLongestLocalPart || text.FindFirst('@', at + 1) >= 0) return false;
    const auto isLocalPartUnit = [](const GString& part, long position) {
        return IsLocalPartUnit(part[position]);
    };
    return AllPartsPass(text.GetSubstring(0, at), isLocalPartUnit) && IsDomain(text.GetSubstring(at + 1, -1));
}

// --- Blocks of Unicode -------------------------------------------------------------------------

GRange GStringSupport::GetUnicodeRange(RangeSpecifier specifier) {
    struct Block {
        RangeSpecifier specifier;
        GRange range;
    };
    static constexpr Block cBlocks[] = {
        {cBasicLatin, {0x0000, 0x007F}},
        {cLatin1Supplement, {0x0080, 0x00FF}},
        {cLatinExtendedA, {0x0100, 0x017F}},
        {cLatinExtendedB, {0x0180, 0x024F}},
        {cSpacingModifierLetters, {0x02B0, 0x02FF}},
        {cCombiningDiacriticalMarks, {0x0300, 0x036F}},
        {cGreek, {0x0370, 0x03FF}},
        {cCyrillic, {0x0400, 0x04FF}},
        {cHebrew, {0x0590, 0x05FF}},
        {cArabic, {0x0600, 0x06FF}},
        {cThai, {0x0E00, 0x0E7F}},
        {cHangulJamo, {0x1100, 0x11FF}},
        {cGeneralPunctuation, {0x2000, 0x206F}},
        {cCurrencySymbols, {0x20A0, 0x20CF}},
        {cLetterlikeSymbols, {0x2100, 0x214F}},
        {cMathematicalOperators, {0x2200, 0x22FF}},
        {cBoxDrawing, {0x2500, 0x257F}},
        {cCJKSymbolsAndPunctuation, {0x3000, 0x303F}},
        {cHiragana, {0x3040, 0x309F}},
        {cKatakana, {0x30A0, 0x30FF}},
        {cCJKUnifiedIdeographs, {0x4E00, 0x9FFF}},
        {cHangulSyllables, {0xAC00, 0xD7AF}},
        {cSurrogates, {0xD800, 0xDFFF}},
        {cPrivateUseArea, {0xE000, 0xF8FF}},
        {cCJKCompatibilityIdeographs, {0xF900, 0xFAFF}},
        {cAlphabeticPresentationForms, {0xFB00, 0xFB4F}},
        {cHalfwidthAndFullwidthForms, {0xFF00, 0xFFEF}},
    };
    const auto* block = std::ranges::find(cBlocks, specifier, &Block::specifier);
    return block == std::end(cBlocks) ? GRange() : block->range;
}

// --- Scrambling --------------------------------------------------------------------------------

namespace {

// A scrambled text is this mark, four hexadecimal digits for each unit, and four for their check sum.
constexpr char cScrambleMark[] = "$1$";
constexpr long cMarkLength = 3;
constexpr long cDigitsPerUnit = 4;

// The stream of a linear congruential generator hides the units, the check sum included.
class ScrambleStream {
public:
    std::uint16_t Apply(std::uint16_t unit) {
        mState = mState * 1664525U + 1013904223U;
        return static_cast<std::uint16_t>(unit ^ mState >> 16);
    }

private:
    std::uint32_t mState = 0x51A7C3E9;
};

std::uint16_t AddToCheckSum(std::uint16_t sum, std::uint16_t unit) {
    return static_cast<std::uint16_t>(31U * sum + unit + 1U);
}

void AppendHex(GBuffer& out, std::uint16_t value) {
    for (int shift = 12; shift >= 0; shift -= 4) out += "0123456789ABCDEF"[value >> shift & 0xF];
}

int GetHexDigit(unsigned short unit) {
    if (IsASCIIDigit(unit)) return unit - '0';
    return unit >= 'A' && unit <= 'F' ? unit - 'A' + 10 : -1;
}

// The unit that the four digits at `position` stand for, or -1.
long ReadHex(const GString& text, long position) {
    long value = 0;
    for (long i = 0; i < cDigitsPerUnit; ++i) {
        const int digit = GetHexDigit(text[position + i]);
        if (digit < 0) return -1;
        value = 16 * value + digit;
    }
    return value;
}

}  // namespace

void GStringSupport::Scramble(GString& text) {
    if (text.GetLength() == 0) return;
    ScrambleStream stream;
    GBuffer scrambled(cScrambleMark);
    std::uint16_t sum = 0;
    for (long i = 0; i < text.GetLength(); ++i) {
        sum = AddToCheckSum(sum, text[i]);
        AppendHex(scrambled, stream.Apply(text[i]));
    }
    AppendHex(scrambled, stream.Apply(sum));
    text.Set(scrambled, GASCIIEncoding::GetInstance(), false);
}

bool GStringSupport::DeScramble(GString& text) {
    const long length = text.GetLength();
    if (length == 0) return true;
    const long digits = length - cMarkLength;
    if (digits < 2 * cDigitsPerUnit || digits % cDigitsPerUnit != 0) return false;
    if (text.GetSubstring(0, cMarkLength) != GString(cScrambleMark)) return false;
    ScrambleStream stream;
    // Put together unit by unit: as the text was, not composed anew.
    GString plain;
    std::uint16_t sum = 0;
    for (long position = cMarkLength; position < length; position += cDigitsPerUnit) {
        const long value = ReadHex(text, position);
        if (value < 0) return false;
        const std::uint16_t unit = stream.Apply(static_cast<std::uint16_t>(value));
        if (position + cDigitsPerUnit == length) {
            if (unit != sum) return false;
        } else {
            sum = AddToCheckSum(sum, unit);
            plain += static_cast<unsigned short>(unit);
        }
    }
    text.Swap(plain);
    return true;
}
