#include "framework/core/bytes/GByteHash.h"

#include <emmintrin.h>

#include <bit>
#include <cstring>

namespace {

std::uint64_t LoadWord(const unsigned char* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// The hash of eight bytes that starts from 0, first byte highest in the word. Each byte moves up by four bits
// for each one after it: of two neighbours the upper comes down to four bits above the lower, then each pair
// to eight bits above the pair below, and at last the upper half over the lower.
std::uint32_t FoldWord(std::uint64_t bigEndianWord) {
    const std::uint64_t lowerBytes = bigEndianWord & 0x00FF00FF00FF00FF;
    const std::uint64_t pairs = lowerBytes ^ (bigEndianWord ^ lowerBytes) >> 4;
    const std::uint64_t lowerPairs = pairs & 0x0000FFFF0000FFFF;
    const std::uint64_t fours = lowerPairs ^ (pairs ^ lowerPairs) >> 8;
    return static_cast<std::uint32_t>(fours) ^ std::rotl(static_cast<std::uint32_t>(fours >> 32), 16);
}

// The bitwise sum of eight groups of eight bytes, and of each eight that follow.
std::uint64_t XorOfLongRun(const unsigned char* bytes, long runCount) {
    __m128i sums[4] = {};
    for (long run = 0; run < runCount; ++run, bytes += 64) {
        for (long lane = 0; lane < 4; ++lane) {
            const auto* const source = reinterpret_cast<const __m128i*>(bytes + 16 * lane);
            sums[lane] = _mm_xor_si128(sums[lane], _mm_loadu_si128(source));
        }
    }
    const __m128i sum = _mm_xor_si128(_mm_xor_si128(sums[0], sums[1]), _mm_xor_si128(sums[2], sums[3]));
    return static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_xor_si128(sum, _mm_unpackhi_epi64(sum, sum))));
}

std::uint64_t LoadFew(const unsigned char* bytes, long count) {
    std::uint64_t word = 0;
    for (long i = 0; i < count; ++i) word = word << 8 | bytes[i];
    return word;
}

// The bitwise sum of the groups of eight bytes, counted from the end. The first bytes make a group of their
// own, in front of which zeros stand: their bits are shifted out. This is for 8 to 16 bytes, as most names
// have. In two steps, since a shift by all 64 bits, which 8 bytes need, is none.
std::uint64_t XorOfTwoGroups(const unsigned char* bytes, long length) {
    const auto halfOfZeroBits = (0 - 4 * static_cast<unsigned long>(length)) % 64;
    return LoadWord(bytes + length - 8) ^ LoadWord(bytes) << halfOfZeroBits << halfOfZeroBits;
}

// The same for more bytes.
std::uint64_t XorOfGroups(const unsigned char* bytes, long length) {
    const auto zeroBits = (0 - 8 * static_cast<unsigned long>(length)) % 64;
    std::uint64_t sum = 0;
    if (length >= 64) {
        const long runCount = length / 64;
        sum = XorOfLongRun(bytes + length - 64 * runCount, runCount);
        length -= 64 * runCount;
        if (length < 8) return sum ^ __builtin_bswap64(LoadFew(bytes, length));
    }
    for (; length > 8; length -= 8) sum ^= LoadWord(bytes + length - 8);
    return sum ^ LoadWord(bytes) << zeroBits;
}

}  // namespace

std::uint32_t GByteHash::Of(const unsigned char* bytes, long length) noexcept {
    // Eight bytes rotate the hash by 32 bits, which leaves it as it was, and each byte is added by XOR. So
    // groups of eight can be added up first, and only their sum is folded.
    const auto count = static_cast<std::uint32_t>(length);
    const std::uint32_t start = std::rotl(count, static_cast<int>(4 * count));
    if (length < 8) return start ^ FoldWord(LoadFew(bytes, length));
    const std::uint64_t sum = length <= 16 ? XorOfTwoGroups(bytes, length) : XorOfGroups(bytes, length);
    return start ^ FoldWord(__builtin_bswap64(sum));
}
