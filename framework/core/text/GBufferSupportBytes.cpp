#include <algorithm>
#include <bit>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/text/GBufferSupport.h"

// The part of GBufferSupport that deals in bytes, bits, units and numbers.

namespace {

// --- Bits --------------------------------------------------------------------------------------

// `count` bits, at most 8, from a bit address on; as a number. Touches no byte without a bit of them.
unsigned ReadBits(const unsigned char* bytes, long long bit, int count) {
    const unsigned char* const first = bytes + (bit >> 3);
    const int offset = static_cast<int>(bit & 7);
    unsigned window = static_cast<unsigned>(first[0]) << 8;
    if (offset + count > 8) window |= first[1];
    return window >> (16 - offset - count) & ((1U << count) - 1);
}

void WriteBits(unsigned char* bytes, long long bit, int count, unsigned value) {
    unsigned char* const first = bytes + (bit >> 3);
    const int shift = 16 - static_cast<int>(bit & 7) - count;
    const unsigned mask = ((1U << count) - 1) << shift;
    const unsigned window = value << shift;
    first[0] = static_cast<unsigned char>((first[0] & ~(mask >> 8)) | window >> 8);
    if ((mask & 0xFF) != 0) first[1] = static_cast<unsigned char>((first[1] & ~mask) | (window & 0xFF));
}

// --- Numbers -----------------------------------------------------------------------------------

struct RomanStep {
    long value;
    const char* lower;
    const char* upper;
};
constexpr RomanStep cRomanSteps[] = {
    {1000, "m", "M"}, {900, "cm", "CM"}, {500, "d", "D"},  {400, "cd", "CD"}, {100, "c", "C"},
    {90, "xc", "XC"}, {50, "l", "L"},    {40, "xl", "XL"}, {10, "x", "X"},    {9, "ix", "IX"},
    {5, "v", "V"},    {4, "iv", "IV"},   {1, "i", "I"},
};

GBuffer ToRoman(long value, const char* RomanStep::*letters) {
    constexpr long cLargest = 3999;
    if (value < 1 || value > cLargest) return GBuffer(value);
    GBuffer roman;
    for (const RomanStep& step : cRomanSteps) {
        for (; value >= step.value; value -= step.value) roman += step.*letters;
    }
    return roman;
}

}  // namespace

// --- Bytes and units ---------------------------------------------------------------------------

const unsigned char* GBufferSupport::ConvertToPString(GBuffer& text) {
    constexpr long cLongest = 255;
    GBuffer result;
    const long length = std::min(text.GetLength(), cLongest);
    result.Allocate(1 + length);
    result += static_cast<unsigned char>(length);
    result.AppendByteArray(text.GetRawData(), length);
    text.Swap(result);
    return reinterpret_cast<const unsigned char*>(text.GetPtr());
}

void GBufferSupport::StripTrailingZeroes(GBuffer& text, bool wide) {
    if (wide) {
        if (text.GetLength() % 2 != 0) return;
        long count = text.GetLength() / 2;
        while (count > 0 && text.GetWordAt(count - 1) == 0) --count;
        text.SetLength(2 * count);
    } else {
        long length = text.GetLength();
        while (length > 0 && text.GetRawData()[length - 1] == 0) --length;
        text.SetLength(length);
    }
}

void GBufferSupport::StripLeadingWhiteSpace(GBuffer& text) {
    long start = 0;
    while (start < text.GetLength() && IsWhiteSpace(text.GetRawData()[start])) ++start;
    text.Remove(0, start);
}

void GBufferSupport::StripTrailingWhiteSpace(GBuffer& text) {
    long length = text.GetLength();
    while (length > 0 && IsWhiteSpace(text.GetRawData()[length - 1])) --length;
    text.SetLength(length);
}

void GBufferSupport::RemoveUnicodeLanguageTags(GBuffer& text) {
    constexpr unsigned short cEscape = 0x1B;
    const long first = text.FindFirstOccurrence(cEscape, 0);
    const long second = first < 0 ? -1 : text.FindFirstOccurrence(cEscape, first + 1);
    if (second >= 0) text.Remove(2 * first, 2 * (second + 1 - first));
}

void GBufferSupport::SwapUnicodeBytes(GBuffer& text) {
    unsigned char* const bytes = text.GetWritePtr();
    for (long i = 0; i + 1 < text.GetLength(); i += 2) std::swap(bytes[i], bytes[i + 1]);
}

void GBufferSupport::SwapBigEndian(GBuffer& text) {
    if constexpr (std::endian::native == std::endian::little) SwapUnicodeBytes(text);
}

void GBufferSupport::SwapLittleEndian([[maybe_unused]] GBuffer& text) {
    if constexpr (std::endian::native == std::endian::big) SwapUnicodeBytes(text);
}

void GBufferSupport::CopyBitBlock_LBE_LBE(const unsigned char* source, long sourceBit, unsigned char* target,
                                          long targetBit, long bitCount) noexcept {
    if (bitCount <= 0) return;
    // When the target lies behind the source in the same bytes, what is still to be read must not be
    // overwritten: the last bits go first.
    const auto sourceByte =
        reinterpret_cast<std::uintptr_t>(source) + static_cast<std::uintptr_t>(sourceBit >> 3);
    const auto targetByte =
        reinterpret_cast<std::uintptr_t>(target) + static_cast<std::uintptr_t>(targetBit >> 3);
    const bool backward =
        targetByte > sourceByte || (targetByte == sourceByte && (targetBit & 7) > (sourceBit & 7));
    for (long long done = 0; done < bitCount;) {
        const int step = static_cast<int>(std::min<long long>(bitCount - done, 8));
        const long long offset = backward ? bitCount - done - step : done;
        WriteBits(target, targetBit + offset, step, ReadBits(source, sourceBit + offset, step));
        done += step;
    }
}

long GBufferSupport::GetUnicodeBuffer(const GBuffer& bytes, const GEncoding* encoding, GBuffer& out) {
    constexpr long cAllConverted = 1;
    GBuffer result;
    const long code = encoding == nullptr
                          ? cAllConverted
                          : encoding->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), result);
    out.Swap(result);
    return code;
}

// --- Numbers -----------------------------------------------------------------------------------

void GBufferSupport::GenerateFormatStringForReals(long digits, GBuffer& out) {
    constexpr long cMost = 99;
    GBuffer format("%1.");
    format += GBuffer(std::clamp(digits, 0L, cMost));
    format += 'f';
    out.Swap(format);
}

void GBufferSupport::RealToBuffer(double value, long digits, GBuffer& out) {
    out.SetWithPrecision(value, digits);
}

GBuffer GBufferSupport::IntToRomanNumeralLower(long value) {
    return ToRoman(value, &RomanStep::lower);
}

GBuffer GBufferSupport::IntToRomanNumeralUpper(long value) {
    return ToRoman(value, &RomanStep::upper);
}
