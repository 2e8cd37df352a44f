#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

/// GCodeUnits: the inner loops of text conversion, over plain memory.
///
/// UTF-16 is addressed as bytes, since borrowed text need not be aligned; counts are units. SSE2 is
/// part of every 64-bit x86 processor.
struct GCodeUnits {
    static std::uint16_t Load(const unsigned char* units, std::size_t position) noexcept {
        std::uint16_t unit;
        std::memcpy(&unit, units + 2 * position, sizeof unit);
        return unit;
    }
    static void Store(unsigned char* units, std::size_t position, std::uint16_t unit) noexcept {
        std::memcpy(units + 2 * position, &unit, sizeof unit);
    }
    static __m128i LoadVector(const unsigned char* bytes) noexcept {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    }
    static void StoreVector(unsigned char* bytes, __m128i value) noexcept {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), value);
    }

    // The next five convert a block of some kind; false, with the output undefined, when it is of another.
    // Callers go on one by one then.

    /// 16 bytes below `Limit`, which is 0x80 at most, to 16 units.
    template <unsigned char Limit = 0x80>
    static bool WidenBlock(const unsigned char* bytes, unsigned char* units) noexcept {
        __m128i vector = LoadVector(bytes);
        StoreVector(units, _mm_unpacklo_epi8(vector, _mm_setzero_si128()));
        StoreVector(units + 16, _mm_unpackhi_epi8(vector, _mm_setzero_si128()));
        // As signed bytes, those from 0x80 on are negative: only the limit needs a comparison.
        if constexpr (Limit < 0x80)
            vector = _mm_or_si128(vector, _mm_cmpgt_epi8(vector, _mm_set1_epi8(Limit - 1)));
        return _mm_movemask_epi8(vector) == 0;
    }

    /// 16 units below `Limit` to 16 bytes.
    template <unsigned char Limit = 0x80>
    static bool NarrowBlock(const unsigned char* units, unsigned char* bytes) noexcept {
        const __m128i low = LoadVector(units);
        const __m128i high = LoadVector(units + 16);
        StoreVector(bytes, _mm_packus_epi16(low, high));
        return AreAll(_mm_cmpeq_epi16(
            _mm_or_si128(_mm_subs_epu16(low, Lanes(Limit - 1)), _mm_subs_epu16(high, Lanes(Limit - 1))),
            _mm_setzero_si128()));
    }

    /// UTF-8 sequences of one and two bytes that begin in 16 of 17 readable bytes, to room for 16 units.
    /// Adds how many bytes were read (16 or 17) and how many units were written.
    static bool ReadMixedBlock(const unsigned char* bytes, unsigned char* units, std::size_t& read,
                               std::size_t& written) noexcept {
        const __m128i vector = LoadVector(bytes);
        const __m128i next = LoadVector(bytes + 1);
        const __m128i isLead = HasBits(vector, 0xE0, 0xC0);
        const std::uint32_t ascii = ~MaskOf(vector) & 0xFFFF;
        const std::uint32_t leads = MaskOf(isLead);
        const std::uint32_t continuations = MaskOf(HasBits(vector, 0xC0, 0x80));
        // Each lead byte has a continuation byte behind it, the last one perhaps beyond the block, and
        // nothing else has.
        if ((ascii | leads | continuations) != 0xFFFF || continuations != (leads << 1 & 0xFFFF) ||
            (leads & ~MaskOf(HasBits(next, 0xC0, 0x80))) != 0)
            return false;
        // What would begin at every byte goes to the place that those before it leave: what does not
        // begin there is overwritten by the next. No branch depends on the text.
        const __m128i zero = _mm_setzero_si128();
        const __m128i isStart = _mm_andnot_si128(HasBits(vector, 0xC0, 0x80), _mm_set1_epi8(1));
        const auto low = SumUp(static_cast<std::uint64_t>(_mm_cvtsi128_si64(isStart)));
        const auto high =
            SumUp(static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(isStart, isStart))));
        StoreAtPlaces<2>(ReadOneOrTwo(_mm_unpacklo_epi8(vector, zero), _mm_unpacklo_epi8(next, zero),
                                      _mm_unpacklo_epi8(isLead, isLead)),
                         low << 8, units, std::make_index_sequence<8>());
        StoreAtPlaces<2>(ReadOneOrTwo(_mm_unpackhi_epi8(vector, zero), _mm_unpackhi_epi8(next, zero),
                                      _mm_unpackhi_epi8(isLead, isLead)),
                         high << 8, units + 2 * (low >> 56), std::make_index_sequence<8>());
        read += 16 + (leads >> 15);
        written += (low >> 56) + (high >> 56);
        return true;
    }

    /// 4 UTF-8 sequences of three bytes, of 16 readable bytes, to 4 units.
    static bool ReadThreeByteBlock(const unsigned char* bytes, unsigned char* units) noexcept {
        const __m128i triples =
            _mm_set_epi32(LoadInt(bytes + 9), LoadInt(bytes + 6), LoadInt(bytes + 3), LoadInt(bytes));
        const __m128i high = _mm_slli_epi32(triples, 12);
        const __m128i middle = _mm_and_si128(_mm_srli_epi32(triples, 2), _mm_set1_epi32(0x0FC0));
        const __m128i low = _mm_and_si128(_mm_srli_epi32(triples, 16), _mm_set1_epi32(0x003F));
        // Sign-extended, a unit survives packing with signed saturation.
        const __m128i values = _mm_or_si128(_mm_or_si128(high, middle), low);
        const __m128i extended = _mm_srai_epi32(_mm_slli_epi32(values, 16), 16);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(units), _mm_packs_epi32(extended, extended));
        return AreAll(
            _mm_cmpeq_epi32(_mm_and_si128(triples, _mm_set1_epi32(0x00C0C0F0)), _mm_set1_epi32(0x008080E0)));
    }

    /// 8 units below 0x800 to UTF-8, in room for 16 bytes. Adds how many bytes were written.
    static bool WriteMixedBlock(const unsigned char* units, unsigned char* bytes,
                                std::size_t& written) noexcept {
        const __m128i vector = LoadVector(units);
        if (!AreAll(NotAbove(vector, 0x7FF))) return false;
        const __m128i lead = _mm_or_si128(_mm_srli_epi16(vector, 6), Lanes(0x80C0));
        const __m128i next = _mm_slli_epi16(_mm_and_si128(vector, Lanes(0x3F)), 8);
        const __m128i isOne = NotAbove(vector, 0x7F);
        const __m128i isOneByte = _mm_packs_epi16(isOne, isOne);
        const __m128i lengths = _mm_add_epi8(isOneByte, _mm_set1_epi8(2));
        const std::uint64_t sums = SumUp(static_cast<std::uint64_t>(_mm_cvtsi128_si64(lengths)));
        StoreAtPlaces<1>(Select(isOne, vector, _mm_or_si128(lead, next)), sums << 8, bytes,
                         std::make_index_sequence<8>());
        written += sums >> 56;
        return true;
    }

    /// 8 units from 0x800 on to 24 bytes of UTF-8, in room for 26.
    static bool WriteThreeByteBlock(const unsigned char* units, unsigned char* bytes) noexcept {
        const __m128i vector = LoadVector(units);
        WriteTriples(_mm_unpacklo_epi16(vector, _mm_setzero_si128()), bytes);
        WriteTriples(_mm_unpackhi_epi16(vector, _mm_setzero_si128()), bytes + 12);
        return AreAll(InRange(vector, 0x800, 0xFFFF));
    }

    /// Widens the leading bytes below 0x80; returns how many were. `units` takes as many as `bytes`.
    static std::size_t WidenASCII(const unsigned char* bytes, std::size_t length,
                                  unsigned char* units) noexcept {
        std::size_t done = 0;
        while (length - done >= 16 && WidenBlock(bytes + done, units + 2 * done)) done += 16;
        for (; done < length && bytes[done] < 0x80; ++done) Store(units, done, bytes[done]);
        return done;
    }

    /// Narrows the leading units below 0x80, likewise.
    static std::size_t NarrowASCII(const unsigned char* units, std::size_t length,
                                   unsigned char* bytes) noexcept {
        std::size_t done = 0;
        while (length - done >= 32 && NarrowTwoBlocks(units + 2 * done, bytes + done)) done += 32;
        while (length - done >= 16 && NarrowBlock(units + 2 * done, bytes + done)) done += 16;
        for (; done < length && Load(units, done) < 0x80; ++done)
            bytes[done] = static_cast<unsigned char>(Load(units, done));
        return done;
    }

    /// How many bytes begin a UTF-8 sequence, that is, are no continuation bytes.
    static std::size_t CountSequences(const unsigned char* bytes, std::size_t length) noexcept {
        const __m128i lastContinuation = _mm_set1_epi8(static_cast<char>(0xBF));
        std::size_t count = 0;
        std::size_t done = 0;
        while (length - done >= 16) {
            // Each round of at most 255 vectors counts in 16 byte lanes without overflow.
            __m128i lanes = _mm_setzero_si128();
            for (int round = 0; round < 255 && length - done >= 16; ++round, done += 16)
                lanes = _mm_sub_epi8(lanes, _mm_cmpgt_epi8(LoadVector(bytes + done), lastContinuation));
            count += SumOfLanes(lanes);
        }
        for (; done < length; ++done) count += (bytes[done] & 0xC0) != 0x80 ? 1 : 0;
        return count;
    }

    /// How many bytes `length` units take in UTF-8 of one to three bytes a unit.
    static std::size_t CountUTF8Bytes(const unsigned char* units, std::size_t length) noexcept {
        std::size_t fewer = 0;  // than three bytes a unit
        std::size_t done = 0;
        while (length - done >= 8) {
            // Each round of at most 16383 vectors counts in 8 lanes of 16 bits without overflow.
            __m128i lanes = _mm_setzero_si128();
            for (int round = 0; round < 16383 && length - done >= 8; ++round, done += 8) {
                const __m128i vector = LoadVector(units + 2 * done);
                lanes = _mm_sub_epi16(lanes, NotAbove(vector, 0x7F));
                lanes = _mm_sub_epi16(lanes, NotAbove(vector, 0x7FF));
            }
            const __m128i sums = _mm_madd_epi16(lanes, _mm_set1_epi16(1));
            const __m128i halves = _mm_add_epi32(sums, _mm_srli_si128(sums, 8));
            fewer +=
                static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_add_epi32(halves, _mm_srli_si128(halves, 4))));
        }
        for (; done < length; ++done) {
            const std::uint16_t unit = Load(units, done);
            fewer += (unit < 0x80 ? 1u : 0u) + (unit < 0x800 ? 1u : 0u);
        }
        return 3 * length - fewer;
    }

    /// The lanes of 16 bits that lie within the range, all bits set.
    static __m128i InRange(__m128i vector, std::uint16_t first, std::uint16_t last) noexcept {
        const __m128i fromFirst = _mm_sub_epi16(vector, Lanes(first));
        const __m128i beyond = _mm_subs_epu16(fromFirst, Lanes(static_cast<std::uint16_t>(last - first)));
        return _mm_cmpeq_epi16(beyond, _mm_setzero_si128());
    }

private:
    static __m128i Lanes(std::uint16_t unit) noexcept { return _mm_set1_epi16(static_cast<short>(unit)); }

    static bool AreAll(__m128i lanes) noexcept { return _mm_movemask_epi8(lanes) == 0xFFFF; }

    static __m128i NotAbove(__m128i vector, std::uint16_t limit) noexcept {
        return _mm_cmpeq_epi16(_mm_subs_epu16(vector, Lanes(limit)), _mm_setzero_si128());
    }

    static std::uint32_t MaskOf(__m128i bytes) noexcept {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes));
    }

    // Each of eight small numbers in bytes plus all below it.
    static std::uint64_t SumUp(std::uint64_t bytes) noexcept { return bytes * 0x0101010101010101; }

    // Stores eight lanes of 16 bits, each at its byte's place, counted in steps of `Step` bytes.
    template <std::size_t Step, std::size_t... Lane>
    static void StoreAtPlaces(__m128i lanes, std::uint64_t places, unsigned char* out,
                              std::index_sequence<Lane...>) noexcept {
        (Store(out + Step * (places >> 8 * Lane & 0xFF), 0,
               static_cast<std::uint16_t>(_mm_extract_epi16(lanes, Lane))),
         ...);
    }

    static __m128i Select(__m128i condition, __m128i yes, __m128i no) noexcept {
        return _mm_or_si128(_mm_and_si128(condition, yes), _mm_andnot_si128(condition, no));
    }

    static __m128i HasBits(__m128i bytes, int mask, int bits) noexcept {
        return _mm_cmpeq_epi8(_mm_and_si128(bytes, _mm_set1_epi8(static_cast<char>(mask))),
                              _mm_set1_epi8(static_cast<char>(bits)));
    }

    static __m128i ReadOneOrTwo(__m128i first, __m128i second, __m128i isLead) noexcept {
        const __m128i high = _mm_slli_epi16(_mm_and_si128(first, Lanes(0x1F)), 6);
        return Select(isLead, _mm_or_si128(high, _mm_and_si128(second, Lanes(0x3F))), first);
    }

    static int LoadInt(const unsigned char* bytes) noexcept {
        int value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

    static bool NarrowTwoBlocks(const unsigned char* units, unsigned char* bytes) noexcept {
        const __m128i a = LoadVector(units);
        const __m128i b = LoadVector(units + 16);
        const __m128i c = LoadVector(units + 32);
        const __m128i d = LoadVector(units + 48);
        StoreVector(bytes, _mm_packus_epi16(a, b));
        StoreVector(bytes + 16, _mm_packus_epi16(c, d));
        const __m128i any = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
        return AreAll(NotAbove(any, 0x7F));
    }

    // Four lanes of 32 bits with a unit each, as sequences of three bytes.
    static void WriteTriples(__m128i units, unsigned char* bytes) noexcept {
        const __m128i lead = _mm_srli_epi32(units, 12);
        const __m128i middle = _mm_and_si128(_mm_slli_epi32(units, 2), _mm_set1_epi32(0x3F00));
        const __m128i last = _mm_and_si128(_mm_slli_epi32(units, 16), _mm_set1_epi32(0x3F0000));
        const __m128i triples =
            _mm_or_si128(_mm_or_si128(lead, middle), _mm_or_si128(last, _mm_set1_epi32(0x008080E0)));
        StoreTriples(bytes, _mm_cvtsi128_si64(triples));
        StoreTriples(bytes + 6, _mm_cvtsi128_si64(_mm_unpackhi_epi64(triples, triples)));
    }

    // Two lanes of 32 bits with three bytes each, closed up; two bytes more are written.
    static void StoreTriples(unsigned char* bytes, long long lanes) noexcept {
        const auto value = static_cast<std::uint64_t>(lanes);
        const std::uint64_t triples = (value & 0xFFFFFF) | (value >> 8 & 0xFFFFFF000000);
        std::memcpy(bytes, &triples, sizeof triples);
    }

    static std::size_t SumOfLanes(__m128i lanes) noexcept {
        const __m128i sums = _mm_sad_epu8(lanes, _mm_setzero_si128());
        return static_cast<std::size_t>(_mm_cvtsi128_si64(sums)) +
               static_cast<std::size_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
    }
};
