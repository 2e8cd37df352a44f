#include "framework/core/encodings/GUnicodeComposition.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "framework/core/encodings/GCodeUnits.h"

namespace {

struct CompositionRow {
    std::uint16_t mark;
    std::uint16_t base;
    std::uint16_t composed;

    constexpr std::uint32_t GetKey() const { return std::uint32_t{mark} << 16 | base; }
};

constexpr CompositionRow cCompositions[] = {
#include "framework/core/encodings/data/compositions.inc"
};
static_assert(std::ranges::is_sorted(cCompositions, {}, &CompositionRow::GetKey));

// Hangul syllables are composed of their letters by arithmetic (The Unicode Standard, 3.12).
constexpr std::uint16_t cFirstSyllable = 0xAC00;
constexpr std::uint16_t cSyllableCount = 11172;
constexpr std::uint16_t cFirstLead = 0x1100;
constexpr std::uint16_t cLeadCount = 19;
constexpr std::uint16_t cFirstVowel = 0x1161;
constexpr std::uint16_t cVowelCount = 21;
constexpr std::uint16_t cBeforeFirstTail = 0x11A7;
constexpr std::uint16_t cTailCount = 28;  // "no tail" counts

// The ranges in which the second units of pairs lie. Most text has no unit there. The ranges hold other
// units, too, so each unit in them is checked by itself.
struct UnitRange {
    std::uint16_t first;
    std::uint16_t last;
};
constexpr UnitRange cMarkRanges[] = {{0x0300, 0x0345}, {0x0653, 0x1B35}, {0x3099, 0x309A}};
constexpr std::size_t cRangeCount = std::size(cMarkRanges);

constexpr std::uint16_t cMarkLimit = 0x3100;

consteval std::array<bool, cMarkLimit> MakeMarks() {
    std::array<bool, cMarkLimit> marks{};
    for (const CompositionRow& row : cCompositions) marks[row.mark] = true;
    for (std::uint16_t i = 0; i < cVowelCount; ++i) marks[cFirstVowel + i] = true;
    for (std::uint16_t i = 1; i < cTailCount; ++i) marks[cBeforeFirstTail + i] = true;
    return marks;
}

constexpr std::array<bool, cMarkLimit> cMarks = MakeMarks();

consteval bool RangesHoldAllMarks() {
    for (std::uint16_t unit = 0; unit < cMarkLimit; ++unit) {
        const auto holds = [unit](const UnitRange& range) {
            return range.first <= unit && unit <= range.last;
        };
        if (cMarks[unit] && !std::ranges::any_of(cMarkRanges, holds)) return false;
    }
    return true;
}
static_assert(RangesHoldAllMarks());

bool IsMark(std::uint16_t unit) {
    return unit < cMarkLimit && cMarks[unit];
}

std::uint16_t ComposeHangul(std::uint16_t base, std::uint16_t mark) {
    const int lead = base - cFirstLead;
    const int vowel = mark - cFirstVowel;
    if (lead >= 0 && lead < cLeadCount && vowel >= 0 && vowel < cVowelCount)
        return static_cast<std::uint16_t>(cFirstSyllable + (lead * cVowelCount + vowel) * cTailCount);
    const int syllable = base - cFirstSyllable;
    const int tail = mark - cBeforeFirstTail;
    if (syllable >= 0 && syllable < cSyllableCount && syllable % cTailCount == 0 && tail > 0 &&
        tail < cTailCount)
        return static_cast<std::uint16_t>(base + tail);
    return 0;
}

constexpr std::size_t cLongBlock = 64;
constexpr std::size_t cShortBlock = 8;

// Whether any unit of a block lies in a range. The units are moved so that the range starts at the
// smallest signed number. Then the units in the range are the smallest, and only the smallest unit of the
// block needs a comparison.
template <std::size_t Length>
bool MayHoldMark(const unsigned char* units) {
    __m128i least[cRangeCount];
    std::ranges::fill(least, GCodeUnits::Lanes(0x7FFF));
    for (std::size_t i = 0; i < Length; i += 8) {
        const __m128i vector = GCodeUnits::LoadVector(units + 2 * i);
        for (std::size_t range = 0; range < cRangeCount; ++range) {
            const auto toLeast = static_cast<std::uint16_t>(0x8000 - cMarkRanges[range].first);
            least[range] = _mm_min_epi16(least[range], _mm_add_epi16(vector, GCodeUnits::Lanes(toLeast)));
        }
    }
    __m128i found = _mm_setzero_si128();
    for (std::size_t range = 0; range < cRangeCount; ++range) {
        const auto [first, last] = cMarkRanges[range];
        const auto end = static_cast<std::uint16_t>(0x8000 + last - first + 1);
        found = _mm_or_si128(found, _mm_cmplt_epi16(least[range], GCodeUnits::Lanes(end)));
    }
    return _mm_movemask_epi8(found) != 0;
}

// A block of another length is looked at in any case.
bool MayHoldMark(const unsigned char* units, std::size_t length) {
    if (length == cLongBlock) return MayHoldMark<cLongBlock>(units);
    return length != cShortBlock || MayHoldMark<cShortBlock>(units);
}

// Position of the first unit from `position` to before `end` that composes with its predecessor.
std::size_t FindOneByOne(const unsigned char* units, std::size_t position, std::size_t end) {
    for (; position < end; ++position) {
        const std::uint16_t unit = GCodeUnits::Load(units, position);
        if (position > 0 && IsMark(unit) &&
            GUnicodeComposition::Compose(GCodeUnits::Load(units, position - 1), unit) != 0)
            return position;
    }
    return end;
}

}  // namespace

std::uint16_t GUnicodeComposition::Compose(std::uint16_t base, std::uint16_t mark) noexcept {
    const std::uint16_t syllable = ComposeHangul(base, mark);
    if (syllable != 0) return syllable;
    const std::uint32_t key = CompositionRow{mark, base, 0}.GetKey();
    const auto* row = std::ranges::lower_bound(cCompositions, key, {}, &CompositionRow::GetKey);
    return row != std::end(cCompositions) && row->GetKey() == key ? row->composed : std::uint16_t{0};
}

std::size_t GUnicodeComposition::FindFirst(const unsigned char* units, std::size_t length) noexcept {
    for (std::size_t position = 0; position < length;) {
        const std::size_t left = length - position;
        const std::size_t block = left >= cLongBlock ? cLongBlock : std::min(left, cShortBlock);
        const std::size_t end = position + block;
        if (MayHoldMark(units + 2 * position, block)) {
            const std::size_t found = FindOneByOne(units, position, end);
            if (found < end) return found;
        }
        position = end;
    }
    return length;
}

std::size_t GUnicodeComposition::ComposeFrom(unsigned char* units, std::size_t length,
                                             std::size_t position) noexcept {
    std::size_t last = position - 1;
    for (; position < length; ++position) {
        const std::uint16_t unit = GCodeUnits::Load(units, position);
        const std::uint16_t composed =
            IsMark(unit) ? Compose(GCodeUnits::Load(units, last), unit) : std::uint16_t{0};
        if (composed != 0)
            GCodeUnits::Store(units, last, composed);
        else
            GCodeUnits::Store(units, ++last, unit);
    }
    return last + 1;
}
