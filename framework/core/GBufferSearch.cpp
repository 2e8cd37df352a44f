#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "framework/core/GBuffer.h"

// GBuffer's searches. They take 16 bytes at a time with SSE2, which every x86-64 processor has, and
// the rest one by one. Elements are bytes or 16-bit units, which need not be aligned.

namespace {

template <class Unit>
constexpr long cLaneCount = 16 / sizeof(Unit);

__m128i Load(const unsigned char* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

__m128i Fill(unsigned char byte) {
    return _mm_set1_epi8(static_cast<char>(byte));
}
__m128i Fill(unsigned short unit) {
    return _mm_set1_epi16(static_cast<short>(unit));
}

template <class Unit>
__m128i Equal(__m128i a, __m128i b) {
    if constexpr (sizeof(Unit) == 1) return _mm_cmpeq_epi8(a, b);
    return _mm_cmpeq_epi16(a, b);
}

// A bit for each byte of the lanes: two for a 16-bit unit.
unsigned Mask(__m128i lanes) {
    return static_cast<unsigned>(_mm_movemask_epi8(lanes));
}

template <class Unit>
Unit ElementAt(const unsigned char* bytes, long index) {
    Unit unit;
    std::memcpy(&unit, bytes + index * static_cast<long>(sizeof(Unit)), sizeof unit);
    return unit;
}

// --- What is looked for ------------------------------------------------------------------------

template <class Unit>
class OneElement {
public:
    explicit OneElement(Unit unit) : mUnit(unit), mLanes(Fill(unit)) {}
    bool Matches(Unit unit) const { return unit == mUnit; }
    unsigned MatchingLanes(__m128i lanes) const { return Mask(Equal<Unit>(lanes, mLanes)); }

private:
    Unit mUnit;
    __m128i mLanes;
};

// A set small enough to compare with each of its elements.
template <class Unit>
class SmallSet {
public:
    static constexpr long cMaxLength = 8;

    SmallSet(const Unit* set, long length) : mLength(length) {
        std::copy_n(set, length, mUnits);
        for (long i = 0; i < length; ++i) mLanes[i] = Fill(set[i]);
    }
    bool Matches(Unit unit) const { return std::find(mUnits, mUnits + mLength, unit) != mUnits + mLength; }
    unsigned MatchingLanes(__m128i lanes) const {
        __m128i found = _mm_setzero_si128();
        for (long i = 0; i < mLength; ++i) found = _mm_or_si128(found, Equal<Unit>(lanes, mLanes[i]));
        return Mask(found);
    }

private:
    long mLength;
    Unit mUnits[cMaxLength];
    __m128i mLanes[cMaxLength];
};

// A larger set: a bit for each low byte that occurs in it, which settles the matter for bytes; a unit
// whose low byte occurs is looked up.
template <class Unit>
class LargeSet {
public:
    LargeSet(const Unit* set, long length) : mSet(set), mLength(length) {
        for (long i = 0; i < length; ++i) mBits[(set[i] >> 5) & 7] |= 1U << (set[i] & 31);
    }
    bool Matches(Unit unit) const {
        if ((mBits[(unit >> 5) & 7] >> (unit & 31) & 1) == 0) return false;
        return sizeof(Unit) == 1 || std::find(mSet, mSet + mLength, unit) != mSet + mLength;
    }

private:
    const Unit* mSet;
    long mLength;
    unsigned mBits[8] = {};
};

template <class What>
class Not {
public:
    explicit Not(const What& what) : mWhat(what) {}
    template <class Unit>
    bool Matches(Unit unit) const {
        return !mWhat.Matches(unit);
    }
    unsigned MatchingLanes(__m128i lanes) const requires requires(const What& what) {
        what.MatchingLanes(lanes);
    }
    { return ~mWhat.MatchingLanes(lanes) & 0xFFFF; }

private:
    const What& mWhat;
};

// --- Scans -------------------------------------------------------------------------------------

template <class Unit, class What>
long FindFirst(const unsigned char* bytes, long length, long start, const What& what) {
    long i = std::max(start, 0L);
    if constexpr (requires { what.MatchingLanes(__m128i()); }) {
        for (; i < length - cLaneCount<Unit> + 1; i += cLaneCount<Unit>) {
            const unsigned mask = what.MatchingLanes(Load(bytes + i * static_cast<long>(sizeof(Unit))));
            if (mask != 0) return i + std::countr_zero(mask) / static_cast<long>(sizeof(Unit));
        }
    }
    for (; i < length; ++i) {
        if (what.Matches(ElementAt<Unit>(bytes, i))) return i;
    }
    return -1;
}

template <class Unit, class What>
long FindLast(const unsigned char* bytes, long length, long upTo, const What& what) {
    long end = std::min(upTo, length - 1) + 1;
    for (; end >= cLaneCount<Unit>; end -= cLaneCount<Unit>) {
        const long first = end - cLaneCount<Unit>;
        const unsigned mask = what.MatchingLanes(Load(bytes + first * static_cast<long>(sizeof(Unit))));
        if (mask != 0) return first + (31 - std::countl_zero(mask)) / static_cast<long>(sizeof(Unit));
    }
    for (long i = end - 1; i >= 0; --i) {
        if (what.Matches(ElementAt<Unit>(bytes, i))) return i;
    }
    return -1;
}

template <class Unit>
long FindFirstOfSet(const unsigned char* bytes, long length, const Unit* set, long setLength, long start) {
    if (set == nullptr || setLength < 1) return -1;
    if (setLength == 1) return FindFirst<Unit>(bytes, length, start, OneElement<Unit>(set[0]));
    if (setLength <= SmallSet<Unit>::cMaxLength) {
        return FindFirst<Unit>(bytes, length, start, SmallSet<Unit>(set, setLength));
    }
    return FindFirst<Unit>(bytes, length, start, LargeSet<Unit>(set, setLength));
}

template <class Unit>
long FindFirstNotOfSet(const unsigned char* bytes, long length, const Unit* set, long setLength, long start) {
    if (set == nullptr) setLength = 0;
    if (setLength <= SmallSet<Unit>::cMaxLength) {
        const SmallSet<Unit> what(set, std::max(setLength, 0L));
        return FindFirst<Unit>(bytes, length, start, Not<SmallSet<Unit>>(what));
    }
    const LargeSet<Unit> what(set, setLength);
    return FindFirst<Unit>(bytes, length, start, Not<LargeSet<Unit>>(what));
}

// A pattern of at least one element. Looks for places where both its first and its last element
// stand, many places at a time; only those are compared whole.
template <class Unit>
long FindPattern(const unsigned char* bytes, long length, const unsigned char* pattern, long patternLength,
                 long start) {
    constexpr long cSize = sizeof(Unit);
    const long lastPlace = length - patternLength;
    const long lastElement = patternLength - 1;
    const auto patternBytes = static_cast<std::size_t>(patternLength * cSize);
    const auto standsAt = [&](long place) {
        return std::memcmp(bytes + place * cSize, pattern, patternBytes) == 0;
    };
    const __m128i first = Fill(ElementAt<Unit>(pattern, 0));
    const __m128i last = Fill(ElementAt<Unit>(pattern, lastElement));
    long i = std::max(start, 0L);
    for (; i <= lastPlace - cLaneCount<Unit> + 1; i += cLaneCount<Unit>) {
        const __m128i firsts = Equal<Unit>(Load(bytes + i * cSize), first);
        const __m128i lasts = Equal<Unit>(Load(bytes + (i + lastElement) * cSize), last);
        // One bit an element is enough to visit each place once.
        unsigned mask = Mask(_mm_and_si128(firsts, lasts)) & (cSize == 1 ? 0xFFFFU : 0x5555U);
        for (; mask != 0; mask &= mask - 1) {
            const long place = i + std::countr_zero(mask) / cSize;
            if (standsAt(place)) return place;
        }
    }
    for (; i <= lastPlace; ++i) {
        if (standsAt(i)) return i;
    }
    return -1;
}

}  // namespace

long GBuffer::FindFirstOccurrence(unsigned char byte, long start) const noexcept {
    start = std::max(start, 0L);
    if (start >= mLength) return -1;
    const void* const found = std::memchr(mData + start, byte, static_cast<std::size_t>(mLength - start));
    return found == nullptr ? -1 : static_cast<long>(static_cast<const unsigned char*>(found) - mData);
}

long GBuffer::FindFirstOccurrence(unsigned short unit, long start) const noexcept {
    return FindFirst<unsigned short>(mData, mLength / 2, start, OneElement<unsigned short>(unit));
}

long GBuffer::FindFirstOccurrence(const unsigned char* set, long setLength, long start) const noexcept {
    return FindFirstOfSet(mData, mLength, set, setLength, start);
}

long GBuffer::FindFirstOccurrence(const unsigned short* set, long setLength, long start) const noexcept {
    return FindFirstOfSet(mData, mLength / 2, set, setLength, start);
}

long GBuffer::FindFirstNonOccurrence(const unsigned char* set, long setLength, long start) const noexcept {
    return FindFirstNotOfSet(mData, mLength, set, setLength, start);
}

long GBuffer::FindFirstNonOccurrence(const unsigned short* set, long setLength, long start) const noexcept {
    return FindFirstNotOfSet(mData, mLength / 2, set, setLength, start);
}

long GBuffer::FindLastOccurrence(unsigned char byte, long upTo) const noexcept {
    return FindLast<unsigned char>(mData, mLength, upTo, OneElement<unsigned char>(byte));
}

long GBuffer::FindLastOccurrence(unsigned short unit, long upTo) const noexcept {
    return FindLast<unsigned short>(mData, mLength / 2, upTo, OneElement<unsigned short>(unit));
}

long GBuffer::FindSubBuffer(const GBuffer& pattern, long start, bool wide) const noexcept {
    const long unitSize = wide ? 2 : 1;
    const long patternLength = pattern.mLength / unitSize;
    if (patternLength == 0) return 0;
    if (wide) return FindPattern<unsigned short>(mData, mLength / 2, pattern.mData, patternLength, start);
    return FindPattern<unsigned char>(mData, mLength, pattern.mData, patternLength, start);
}
