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

// Every other byte of a word, the second, fourth, ... closed up.
std::uint32_t OddBytes(std::uint64_t word) {
    word &= 0x00FF00FF00FF00FF;
    word = (word | word >> 8) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(word | word >> 16);
}

// The hash of eight bytes that starts from 0, first byte highest in the word. Each byte moves up by
// four bits for each one after it: bytes at odd places come to lie side by side, and so do those at
// even places, rotated by four.
std::uint32_t FoldWord(std::uint64_t bigEndianWord) {
    return OddBytes(bigEndianWord) ^ std::rotl(OddBytes(bigEndianWord >> 8), 4);
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

// The bitwise sum of all whole eight-byte groups.
std::uint64_t XorOfGroups(const unsigned char* bytes, long length) {
    std::uint64_t sum = 0;
    if (length >= 64) {
        sum = XorOfLongRun(bytes, length / 64);
        bytes += length / 64 * 64;
        length %= 64;
    }
    for (; length >= 8; length -= 8, bytes += 8) sum ^= LoadWord(bytes);
    return sum;
}

std::uint64_t LoadTail(const unsigned char* bytes, long count) {
    std::uint64_t word = 0;
    for (long i = 0; i < count; ++i) word = word << 8 | bytes[i];
    return word;
}

}  // namespace

std::uint32_t GByteHash::Of(const unsigned char* bytes, long length) noexcept {
    // Eight bytes rotate the hash by 32 bits, which leaves it as it was, and each byte is added by XOR.
    // So the groups of eight can be added up first, and only their sum is folded.
    auto hash = static_cast<std::uint32_t>(length);
    const int tail = static_cast<int>(length % 8);
    if (length < 8) return std::rotl(hash, 4 * tail) ^ FoldWord(LoadTail(bytes, length));
    hash ^= FoldWord(__builtin_bswap64(XorOfGroups(bytes, length)));
    if (tail == 0) return hash;
    const std::uint64_t tailWord =
        __builtin_bswap64(LoadWord(bytes + length - 8)) & ((1ULL << (8 * tail)) - 1);
    return std::rotl(hash, 4 * tail) ^ FoldWord(tailWord);
}
