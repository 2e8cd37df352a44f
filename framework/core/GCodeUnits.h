#pragma once

#include <emmintrin.h>

#include <bit>
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

    /// Widens the leading bytes below `Limit`, which is 0x80 at most, of `length` bytes into room for
    /// `room` units; returns how many were widened. `room` must take them all; what is spare may be
    /// overwritten.
    template <unsigned char Limit = 0x80>
    static std::size_t WidenASCII(const unsigned char* bytes, std::size_t length, unsigned char* units,
                                  std::size_t room) noexcept {
        std::size_t done = 0;
        while (length - done >= 16 && room - done >= 16) {
            const __m128i vector = LoadVector(bytes + done);
            StoreVector(units + 2 * done, _mm_unpacklo_epi8(vector, _mm_setzero_si128()));
            StoreVector(units + 2 * done + 16, _mm_unpackhi_epi8(vector, _mm_setzero_si128()));
            const std::uint32_t other = MaskOfBytesFrom<Limit>(vector);
            if (other != 0) return done + static_cast<std::size_t>(std::countr_zero(other));
            done += 16;
        }
        for (; done < length && bytes[done] < Limit; ++done) Store(units, done, bytes[done]);
        return done;
    }

    /// Narrows the leading units below `Limit` into room for `room` bytes, by the same rules.
    template <unsigned char Limit = 0x80>
    static std::size_t NarrowASCII(const unsigned char* units, std::size_t length, unsigned char* bytes,
                                   std::size_t room) noexcept {
        std::size_t done = 0;
        while (length - done >= 16 && room - done >= 16) {
            const __m128i low = LoadVector(units + 2 * done);
            const __m128i high = LoadVector(units + 2 * done + 16);
            StoreVector(bytes + done, _mm_packus_epi16(low, high));
            // Two bits a unit.
            const std::uint32_t other = MaskAbove(low, Limit - 1) | MaskAbove(high, Limit - 1) << 16;
            if (other != 0) return done + static_cast<std::size_t>(std::countr_zero(other)) / 2;
            done += 16;
        }
        for (; done < length && Load(units, done) < Limit; ++done)
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
        std::size_t more = 0;
        std::size_t done = 0;
        while (length - done >= 8) {
            __m128i lanes = _mm_setzero_si128();
            for (int round = 0; round < 60 && length - done >= 8; ++round, done += 8) {
                const __m128i vector = LoadVector(units + 2 * done);
                lanes = _mm_add_epi8(lanes, OneByteWhereAbove(vector, 0x7F));
                lanes = _mm_add_epi8(lanes, OneByteWhereAbove(vector, 0x7FF));
            }
            more += SumOfLanes(lanes);
        }
        for (; done < length; ++done) {
            const std::uint16_t unit = Load(units, done);
            more += (unit >= 0x80 ? 1u : 0u) + (unit >= 0x800 ? 1u : 0u);
        }
        return length + more;
    }

    /// The lanes of 16 bits that lie within the range, all bits set.
    static __m128i InRange(__m128i vector, std::uint16_t first, std::uint16_t last) noexcept {
        const __m128i fromFirst = _mm_sub_epi16(vector, Lanes(first));
        const __m128i beyond = _mm_subs_epu16(fromFirst, Lanes(static_cast<std::uint16_t>(last - first)));
        return _mm_cmpeq_epi16(beyond, _mm_setzero_si128());
    }

private:
    static __m128i Lanes(std::uint16_t unit) noexcept { return _mm_set1_epi16(static_cast<short>(unit)); }

    template <unsigned char Limit>
    static std::uint32_t MaskOfBytesFrom(__m128i vector) noexcept {
        // As signed bytes, those from 0x80 on are negative: only the limit needs a comparison.
        if constexpr (Limit < 0x80)
            vector = _mm_or_si128(vector, _mm_cmpgt_epi8(vector, _mm_set1_epi8(Limit - 1)));
        return static_cast<std::uint32_t>(_mm_movemask_epi8(vector));
    }

    static __m128i NotAbove(__m128i vector, std::uint16_t limit) noexcept {
        return _mm_cmpeq_epi16(_mm_subs_epu16(vector, Lanes(limit)), _mm_setzero_si128());
    }

    static std::uint32_t MaskAbove(__m128i vector, std::uint16_t limit) noexcept {
        return ~static_cast<std::uint32_t>(_mm_movemask_epi8(NotAbove(vector, limit))) & 0xFFFF;
    }

    static __m128i OneByteWhereAbove(__m128i vector, std::uint16_t limit) noexcept {
        return _mm_add_epi16(NotAbove(vector, limit), _mm_set1_epi16(1));
    }

    static std::size_t SumOfLanes(__m128i lanes) noexcept {
        const __m128i sums = _mm_sad_epu8(lanes, _mm_setzero_si128());
        return static_cast<std::size_t>(_mm_cvtsi128_si64(sums)) +
               static_cast<std::size_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
    }
};
