#include "framework/core/text/GStringSupport.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstring>

#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GUnicodeCharacters.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/encodings/PText.h"
#include "framework/core/text/GBufferSupport.h"

// --- Order -------------------------------------------------------------------------------------

long GStringSupport::Compare(const GString& a, const GString& b, bool caseSensitive) {
    return PText::CompareForUser(a, b, !caseSensitive);
}

bool GStringSupport::IsEqualIgnoreCase(const GString& a, const GString& b) {
    GString lowerA(a);
    GString lowerB(b);
    lowerA.ToLower();
    lowerB.ToLower();
    return lowerA == lowerB;
}

namespace {

constexpr bool IsDecimalDigit(std::uint16_t unit) {
    return unit >= '0' && unit <= '9';
}

// UTF-16 that is walked from the front.
class UnitCursor {
public:
    explicit UnitCursor(const GString& text)
        : mCount(static_cast<std::size_t>(text.GetLength())), mUnits(text.GetEncodedBuffer().GetRawData()) {}

    const unsigned char* GetPtr() const { return mUnits; }
    std::size_t GetCount() const { return mCount; }
    bool IsAtDigit() const { return mCount > 0 && IsDecimalDigit(GCodeUnits::Load(mUnits, 0)); }
    void Skip(std::size_t count) {
        mUnits += 2 * count;
        mCount -= count;
    }
    /// Reads over a run of digits; a number beyond 32 bits counts as the largest.
    std::int32_t ReadNumber() {
        std::int64_t number = 0;
        for (; IsAtDigit(); Skip(1))
            number = std::min<std::int64_t>(10 * number + GCodeUnits::Load(mUnits, 0) - '0', INT32_MAX);
        return static_cast<std::int32_t>(number);
    }

private:
    std::size_t mCount;  // before the pointer: counting converts the text to UTF-16
    const unsigned char* mUnits;
};

// How many units both texts begin with alike before the first digit.
std::size_t CountCommonPrefix(const UnitCursor& a, const UnitCursor& b) {
    const std::size_t count = std::min(a.GetCount(), b.GetCount());
    std::size_t i = 0;
    for (; count - i >= 8; i += 8) {
        const __m128i units = GCodeUnits::LoadVector(a.GetPtr() + 2 * i);
        const __m128i same = _mm_cmpeq_epi16(units, GCodeUnits::LoadVector(b.GetPtr() + 2 * i));
        const __m128i goesOn = _mm_andnot_si128(GCodeUnits::InRange(units, '0', '9'), same);
        const auto mask = static_cast<std::uint32_t>(_mm_movemask_epi8(goesOn));
        if (mask != 0xFFFF) return i + static_cast<std::size_t>(std::countr_one(mask)) / 2;
    }
    for (; i < count; ++i) {
        const std::uint16_t unit = GCodeUnits::Load(a.GetPtr(), i);
        if (unit != GCodeUnits::Load(b.GetPtr(), i) || IsDecimalDigit(unit)) break;
    }
    return i;
}

bool AreBytesLess(const UnitCursor& a, const UnitCursor& b) {
    const std::size_t common = std::min(a.GetCount(), b.GetCount());
    const int order = common == 0 ? 0 : std::memcmp(a.GetPtr(), b.GetPtr(), 2 * common);
    return order != 0 ? order < 0 : a.GetCount() < b.GetCount();
}

}  // namespace

bool GStringSupport::IsLessThanAlphanumeric(const GString& a, const GString& b) {
    UnitCursor restA(a);
    UnitCursor restB(b);
    for (;;) {
        const std::size_t common = CountCommonPrefix(restA, restB);
        restA.Skip(common);
        restB.Skip(common);
        // Where only one text has its first digit, or none has, the plain order decides; what both
        // begin with makes no difference to it.
        if (!restA.IsAtDigit() || !restB.IsAtDigit()) return AreBytesLess(restA, restB);
        const std::int32_t numberA = restA.ReadNumber();
        const std::int32_t numberB = restB.ReadNumber();
        if (numberA != numberB) return numberA < numberB;
    }
}

// --- Numeric suffixes --------------------------------------------------------------------------

namespace {

// Reads a number in parentheses at the end of the text; gives the position of its '('.
bool FindNumericSuffix(const GString& text, long& position, long long& number) {
    const long length = text.GetLength();
    if (length <= 3 || text[length - 1] != ')') return false;
    position = text.FindLast('(', length - 3);
    if (position < 0) return false;
    const GString enclosed = text.GetSubstring(position + 1, length - position - 2);
    number = enclosed.GetInt64();
    return number != LLONG_MAX && GString(number) == enclosed;
}

}  // namespace

void GStringSupport::IncreaseNumericSuffix(GString& text, unsigned long maxLength) {
    GString suffix(" (2)");
    long kept = text.GetLength();
    long position = -1;
    long long number = 0;
    if (FindNumericSuffix(text, position, number)) {
        suffix = GString("(") + GString(number + 1) + GString(")");
        kept = position;
    }
    const long longest = static_cast<long>(std::min<unsigned long>(maxLength, INT32_MAX));
    if (longest != 0) kept = std::clamp(longest - suffix.GetLength(), 0L, kept);
    const bool cutsPair =
        GUnicodeCharacters::IsHighSurrogate(text[kept - 1]) && GUnicodeCharacters::IsLowSurrogate(text[kept]);
    if (cutsPair) --kept;
    GString increased = text.GetSubstring(0, kept);
    increased += suffix;
    text.Swap(increased);
}

// --- White space and special characters --------------------------------------------------------

GString& GStringSupport::StripLeadingWhiteSpace(GString& text) {
    const long length = text.GetLength();
    long start = 0;
    while (start < length && IsWhiteSpace(text[start])) ++start;
    text.Remove(0, start);
    return text;
}

GString& GStringSupport::StripTrailingWhiteSpace(GString& text) {
    long end = text.GetLength();
    while (end > 0 && IsWhiteSpace(text[end - 1])) --end;
    text.SetLength(end);
    return text;
}

namespace {

template <class Change>
void ChangeUnits(GString& text, Change change) {
    const GUnicodeEncoding* unicode = GUnicodeEncoding::GetInstance();
    GBuffer utf16;
    text.GetBuffer(utf16, unicode);
    change(utf16);
    text.Set(utf16, unicode, true);
}

}  // namespace

void GStringSupport::ReplaceSpecialChars(GString& text) {
    ChangeUnits(text, GBufferSupport::UniReplaceSpecialChars);
}

void GStringSupport::ReplaceSpecialEndCharsWithDefaultChar(GString& text) {
    ChangeUnits(text, GBufferSupport::UniReplaceSpecialEndCharsWithDefaultChar);
}

void GStringSupport::QuoteString(GString& text) {
    GString quoted(text);
    ReplaceSpecialChars(quoted);
    quoted.Insert(0, static_cast<unsigned short>('"'));
    quoted += static_cast<unsigned short>('"');
    text.Swap(quoted);
}

// --- Lists -------------------------------------------------------------------------------------

void GStringSupport::SeparatedStringToStringTable(const GString& text, const GString& separator,
                                                  GTable<GString>& out, bool keepEmpty) {
    GTable<GString> parts;
    const auto add = [&](long start, long count) {
        if (count > 0 || keepEmpty) parts.Append(text.GetSubstring(start, count));
    };
    // In units: bytes that are no text in their encoding have none, and are found everywhere.
    const long separatorLength = separator.GetLength();
    long start = 0;
    if (separatorLength > 0) {
        for (long end = text.Find(separator); end >= 0; end = text.Find(separator, start)) {
            add(start, end - start);
            start = end + separatorLength;
        }
    }
    add(start, text.GetLength() - start);
    out = std::move(parts);
}

void GStringSupport::StringTableToSeparatedString(const GTable<GString>& strings, const GString& separator,
                                                  GString& out) {
    GString result;
    for (long i = 0; i < strings.GetCount(); ++i) {
        if (i > 0) result += separator;
        result += strings[i];
    }
    out = std::move(result);
}

void GStringSupport::SearchAndReplace(GString& text, const GTable<GPair<GString, GString>>& pairs) {
    GString replaced(text);
    for (const GPair<GString, GString>& pair : pairs) replaced.Replace(0, pair.GetFirst(), pair.GetSecond());
    text.Swap(replaced);
}
