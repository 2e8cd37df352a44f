#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "framework/core/bytes/GBuffer.h"

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

// A larger set. It has a bit for each low byte that occurs. For bytes that is the answer; a unit whose
// low byte occurs is searched for.
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

// Whether two short runs are equal, by their first and their last bytes, which meet or overlap in the
// middle.
template <class Word>
bool HaveEqualEnds(const unsigned char* a, const unsigned char* b, std::size_t length) {
    Word ends[4];
    std::memcpy(&ends[0], a, sizeof(Word));
    std::memcpy(&ends[1], b, sizeof(Word));
    std::memcpy(&ends[2], a + length - sizeof(Word), sizeof(Word));
    std::memcpy(&ends[3], b + length - sizeof(Word), sizeof(Word));
    return ((ends[0] ^ ends[1]) | (ends[2] ^ ends[3])) == 0;
}

// Patterns are short as a rule, and calling the library takes longer than comparing those.
constexpr long cShortRun = 16;

inline bool AreEqualShort(const unsigned char* a, const unsigned char* b, std::size_t length) {
    if (length >= 8) return HaveEqualEnds<std::uint64_t>(a, b, length);
    if (length >= 4) return HaveEqualEnds<std::uint32_t>(a, b, length);
    if (length >= 2) return HaveEqualEnds<std::uint16_t>(a, b, length);
    return *a == *b;
}

inline bool AreEqual(const unsigned char* a, const unsigned char* b, std::size_t length) {
    return length <= cShortRun ? AreEqualShort(a, b, length) : std::memcmp(a, b, length) == 0;
}

// Where a pattern of at least one element stands.
template <class Unit>
class PatternSearch {
public:
    PatternSearch(const unsigned char* bytes, long length, const unsigned char* pattern, long patternLength)
        : mBytes(bytes),
          mPattern(pattern),
          mLastElement(patternLength - 1),
          mLastPlace(length - patternLength) {}

    /// Compares only where both the first and the last element stand.
    long FindFrom(long start) const {
        for (long place = start; place <= mLastPlace; ++place) {
            place = NextBothEnds(place);
            if (place <= mLastPlace && StandsAt(place)) return place;
        }
        return -1;
    }

private:
    static constexpr long cSize = sizeof(Unit);
    static constexpr long cLanes = cLaneCount<Unit>;

    bool StandsAt(long place) const {
        return AreEqual(mBytes + place * cSize, mPattern,
                        static_cast<std::size_t>((mLastElement + 1) * cSize));
    }

    // The next place where both stand, or one behind the last place; looks at many places at a time.
    long NextBothEnds(long place) const {
        const long lastBlock = mLastPlace - cLanes + 1;
        if (lastBlock < 0) return NextBothEndsOfFew(place);
        const __m128i first = Fill(ElementAt<Unit>(mPattern, 0));
        const __m128i last = Fill(ElementAt<Unit>(mPattern, mLastElement));
        for (; place <= lastBlock; place += cLanes) {
            const unsigned mask = BothEndsMask(place, first, last);
            if (mask != 0) return place + std::countr_zero(mask) / cSize;
        }
        // The last block overlaps the one before; the places that were seen there are shifted out.
        const unsigned mask = BothEndsMask(lastBlock, first, last) >> ((place - lastBlock) * cSize);
        return mask == 0 ? mLastPlace + 1 : place + std::countr_zero(mask) / cSize;
    }

    unsigned BothEndsMask(long place, __m128i first, __m128i last) const {
        const __m128i firsts = Equal<Unit>(Load(mBytes + place * cSize), first);
        const __m128i lasts = Equal<Unit>(Load(mBytes + (place + mLastElement) * cSize), last);
        return Mask(_mm_and_si128(firsts, lasts));
    }

    long NextBothEndsOfFew(long place) const {
        const Unit first = ElementAt<Unit>(mPattern, 0);
        const Unit last = ElementAt<Unit>(mPattern, mLastElement);
        while (place <= mLastPlace && (ElementAt<Unit>(mBytes, place) != first ||
                                       ElementAt<Unit>(mBytes, place + mLastElement) != last)) {
            ++place;
        }
        return place;
    }

    const unsigned char* mBytes;
    const unsigned char* mPattern;
    long mLastElement;
    long mLastPlace;  // where the pattern could stand at most
};

template <class Unit>
long FindByBothEnds(const unsigned char* bytes, long length, const unsigned char* pattern, long patternLength,
                    long start) {
    return PatternSearch<Unit>(bytes, length, pattern, patternLength).FindFrom(start);
}

// Leaps from one occurrence of the first byte to the next, as long as they are rare. Kept out of line, so
// that the caller, which has looked at the first one, need not save registers for the rest.
[[gnu::noinline]] long FindByFirstByte(const unsigned char* bytes, long length, const unsigned char* pattern,
                                       long patternLength, long start) {
    constexpr std::ptrdiff_t cRare = 64;  // bytes between two occurrences, on the average
    const unsigned char* place = bytes + start;
    const unsigned char* const end = bytes + length - patternLength + 1;
    for (long leaps = 0; place < end; ++leaps, ++place) {
        if (place - bytes < start + (leaps - 2) * cRare)
            return FindByBothEnds<unsigned char>(bytes, length, pattern, patternLength, place - bytes);
        const void* const found = std::memchr(place, pattern[0], static_cast<std::size_t>(end - place));
        if (found == nullptr) return -1;
        place = static_cast<const unsigned char*>(found);
        if (AreEqual(place, pattern, static_cast<std::size_t>(patternLength))) return place - bytes;
    }
    return -1;
}

}  // namespace

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
    start = std::max(start, 0L);
    const unsigned char* const what = pattern.mData;
    if (wide) {
        const long unitCount = pattern.mLength / 2;
        return unitCount == 0 ? 0
                              : FindByBothEnds<unsigned short>(mData, mLength / 2, what, unitCount, start);
    }
    const long count = pattern.mLength;
    if (count == 0) return 0;
    const long lastPlace = mLength - count;
    if (start > lastPlace) return -1;
    const void* const found =
        std::memchr(mData + start, *what, static_cast<std::size_t>(lastPlace - start) + 1);
    if (found == nullptr) return -1;
    const auto* const place = static_cast<const unsigned char*>(found);
    if (count > cShortRun) return FindByFirstByte(mData, mLength, what, count, place - mData);
    if (AreEqualShort(place, what, static_cast<std::size_t>(count))) return place - mData;
    return FindByFirstByte(mData, mLength, what, count, place - mData + 1);
}
