#pragma once

#include <emmintrin.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

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

    static constexpr std::size_t cLongBlock = 64;

    // The next four convert a block of one kind of text. For a block of another kind they return false,
    // and the output is undefined: the caller then converts it unit by unit.

    /// 16 bytes which, as signed numbers, are no less than `least` and no more than `most`, to 16 units
    /// with the same numbers. 0 to 0x7F is ASCII; with -0x60 the codes from 0xA0 on belong to it.
    static bool WidenBlock(const unsigned char* bytes, unsigned char* units, int least, int most) noexcept {
        const __m128i vector = LoadVector(bytes);
        StoreVector(units, _mm_unpacklo_epi8(vector, _mm_setzero_si128()));
        StoreVector(units + 16, _mm_unpackhi_epi8(vector, _mm_setzero_si128()));
        return AreBetween(vector, least, most);
    }

    /// 16 units to 16 such bytes.
    static bool NarrowBlock(const unsigned char* units, unsigned char* bytes, int least, int most) noexcept {
        const __m128i low = LoadVector(units);
        const __m128i high = LoadVector(units + 16);
        const __m128i vector = _mm_packus_epi16(low, high);
        StoreVector(bytes, vector);
        return AreAll(NotAbove(_mm_or_si128(low, high), 0xFF)) && AreBetween(vector, least, most);
    }

    /// cLongBlock bytes from `least`, which is 0 or 1, to 0x7F to as many units.
    static bool WidenLongBlock(const unsigned char* bytes, unsigned char* units, int least = 0) noexcept {
        const __m128i below = _mm_set1_epi8(static_cast<char>(least - 1));
        __m128i all = _mm_set1_epi8(-1);
        for (std::size_t i = 0; i < cLongBlock; i += 16) {
            const __m128i vector = LoadVector(bytes + i);
            StoreVector(units + 2 * i, _mm_unpacklo_epi8(vector, _mm_setzero_si128()));
            StoreVector(units + 2 * i + 16, _mm_unpackhi_epi8(vector, _mm_setzero_si128()));
            all = _mm_and_si128(all, _mm_cmpgt_epi8(vector, below));
        }
        return AreAll(all);
    }

    /// cLongBlock units below 0x80 to as many bytes.
    static bool NarrowLongBlock(const unsigned char* units, unsigned char* bytes) noexcept {
        __m128i any = _mm_setzero_si128();
        for (std::size_t i = 0; i < cLongBlock; i += 16) {
            const __m128i low = LoadVector(units + 2 * i);
            const __m128i high = LoadVector(units + 2 * i + 16);
            StoreVector(bytes + i, _mm_packus_epi16(low, high));
            any = _mm_or_si128(any, _mm_or_si128(low, high));
        }
        return AreAll(NotAbove(any, 0x7F));
    }

    /// Widens the leading bytes from `least`, which is 0 or 1, to 0x7F; returns how many were. `units` takes
    /// as many as `bytes`.
    static std::size_t WidenASCII(const unsigned char* bytes, std::size_t length, unsigned char* units,
                                  int least = 0) noexcept {
        std::size_t done = 0;
        while (length - done >= cLongBlock && WidenLongBlock(bytes + done, units + 2 * done, least))
            done += cLongBlock;
        while (length - done >= 16 && WidenBlock(bytes + done, units + 2 * done, least, 0x7F)) done += 16;
        for (; done < length && bytes[done] >= least && bytes[done] < 0x80; ++done)
            Store(units, done, bytes[done]);
        return done;
    }

    /// Narrows the leading units below 0x80, likewise.
    static std::size_t NarrowASCII(const unsigned char* units, std::size_t length,
                                   unsigned char* bytes) noexcept {
        std::size_t done = 0;
        while (length - done >= cLongBlock && NarrowLongBlock(units + 2 * done, bytes + done))
            done += cLongBlock;
        while (length - done >= 16 && NarrowBlock(units + 2 * done, bytes + done, 0, 0x7F)) done += 16;
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
            fewer += (unit < 0x80 ? 1U : 0U) + (unit < 0x800 ? 1U : 0U);
        }
        return 3 * length - fewer;
    }

    /// Eight times the unit.
    static __m128i Lanes(std::uint16_t unit) noexcept { return _mm_set1_epi16(static_cast<short>(unit)); }

    /// The lanes of 16 bits that are `limit` at most, all bits set.
    static __m128i NotAbove(__m128i vector, std::uint16_t limit) noexcept {
        return _mm_cmpeq_epi16(_mm_subs_epu16(vector, Lanes(limit)), _mm_setzero_si128());
    }

    /// The lanes of 16 bits that lie within the range, all bits set.
    static __m128i InRange(__m128i vector, std::uint16_t first, std::uint16_t last) noexcept {
        const __m128i fromFirst = _mm_sub_epi16(vector, Lanes(first));
        const __m128i beyond = _mm_subs_epu16(fromFirst, Lanes(static_cast<std::uint16_t>(last - first)));
        return _mm_cmpeq_epi16(beyond, _mm_setzero_si128());
    }

private:
    static bool AreBetween(__m128i bytes, int least, int most) noexcept {
        const __m128i isLess = _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(least)));
        const __m128i isMore = _mm_cmpgt_epi8(bytes, _mm_set1_epi8(static_cast<char>(most)));
        return _mm_movemask_epi8(_mm_or_si128(isLess, isMore)) == 0;
    }

    static bool AreAll(__m128i lanes) noexcept { return _mm_movemask_epi8(lanes) == 0xFFFF; }

    static std::size_t SumOfLanes(__m128i lanes) noexcept {
        const __m128i sums = _mm_sad_epu8(lanes, _mm_setzero_si128());
        return static_cast<std::size_t>(_mm_cvtsi128_si64(sums)) +
               static_cast<std::size_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
    }
};
