#include "framework/core/encodings/GUTF8Blocks.h"

#include <tmmintrin.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "framework/core/encodings/GCodeUnits.h"

namespace {

using Progress = GUTF8Blocks::Progress;

// Vectors stay at 128 bits: the compiler for Windows does not align wider ones on the stack.
const bool sCanShuffle = [] {
    __builtin_cpu_init();
    return static_cast<bool>(__builtin_cpu_supports("ssse3"));
}();

struct alignas(16) Shuffle {
    std::array<std::uint8_t, 16> places;  // of the bytes that are taken, in order
};

// Closes up the lanes of 16 bits whose bit is set; the lanes behind them are undefined.
consteval std::array<Shuffle, 256> MakeLaneShuffles() {
    std::array<Shuffle, 256> shuffles{};
    for (std::size_t lanes = 0; lanes < shuffles.size(); ++lanes) {
        std::size_t taken = 0;
        for (std::uint8_t lane = 0; lane < 8; ++lane) {
            if ((lanes >> lane & 1) == 0) continue;
            shuffles[lanes].places[taken++] = static_cast<std::uint8_t>(2 * lane);
            shuffles[lanes].places[taken++] = static_cast<std::uint8_t>(2 * lane + 1);
        }
    }
    return shuffles;
}

consteval std::array<std::uint8_t, 256> MakeBitCounts() {
    std::array<std::uint8_t, 256> counts{};
    for (std::size_t bits = 0; bits < counts.size(); ++bits)
        counts[bits] = static_cast<std::uint8_t>(std::popcount(bits));
    return counts;
}

// A unit has a lane of four bytes: the lead of three, nothing, the second of three or the lead of two, and
// the last. The last alone is taken when both bits of the unit are set, the last two when the second is,
// all three otherwise.
constexpr std::size_t cLengthPlace = 15;  // four units fill twelve places at most

consteval std::array<Shuffle, 256> MakeSequenceShuffles() {
    std::array<Shuffle, 256> shuffles{};
    for (std::size_t kinds = 0; kinds < shuffles.size(); ++kinds) {
        std::size_t taken = 0;
        for (std::uint8_t lane = 0; lane < 4; ++lane) {
            const std::size_t kind = kinds >> 2 * lane & 3;
            const auto place = static_cast<std::uint8_t>(4 * lane);
            auto& places = shuffles[kinds].places;
            if (kind == 0) places[taken++] = place;
            if (kind != 3) places[taken++] = static_cast<std::uint8_t>(place + 2);
            places[taken++] = static_cast<std::uint8_t>(place + 3);
        }
        shuffles[kinds].places[cLengthPlace] = static_cast<std::uint8_t>(taken);
    }
    return shuffles;
}

constexpr std::array<Shuffle, 256> cLaneShuffles = MakeLaneShuffles();
constexpr std::array<std::uint8_t, 256> cBitCounts = MakeBitCounts();
constexpr std::array<Shuffle, 256> cSequenceShuffles = MakeSequenceShuffles();

constexpr std::size_t cBlock = 16;      // bytes that are read at a time
constexpr std::size_t cLookAhead = 2;   // bytes behind a block that belong to its last sequence
constexpr std::size_t cUnits = 8;       // that are written at a time
constexpr std::size_t cUnitsRoom = 28;  // for their bytes and what is stored behind them
constexpr std::size_t cLongBlock = GCodeUnits::cLongBlock;

__m128i Bytes(std::uint8_t value) {
    return _mm_set1_epi8(static_cast<char>(value));
}

__m128i Select(__m128i condition, __m128i yes, __m128i no) {
    return _mm_or_si128(_mm_and_si128(condition, yes), _mm_andnot_si128(condition, no));
}

std::uint32_t MaskOf(__m128i bytes) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes));
}

__m128i AreFrom(__m128i bytes, std::uint8_t first) {
    return _mm_cmpeq_epi8(_mm_max_epu8(bytes, Bytes(first)), bytes);
}

// As signed numbers, continuation bytes are the smallest.
__m128i AreContinuations(__m128i bytes) {
    return _mm_cmpgt_epi8(Bytes(0xC0), bytes);
}

[[gnu::target("ssse3"), gnu::always_inline]] inline __m128i ShuffleBytes(__m128i bytes,
                                                                         const Shuffle& shuffle) {
    return _mm_shuffle_epi8(bytes, _mm_load_si128(reinterpret_cast<const __m128i*>(&shuffle)));
}

[[gnu::target("ssse3"), gnu::always_inline]] inline void StoreStarts(__m128i units, std::uint32_t starts,
                                                                     unsigned char* out, Progress& progress) {
    GCodeUnits::StoreVector(out + 2 * progress.written, ShuffleBytes(units, cLaneShuffles[starts]));
    progress.written += cBitCounts[starts];
}

// The units of eight sequences. The first byte's bits, if it is a lead byte, stand in front of those of
// the second, or of ASCII; `factor` makes room for the third byte's where there is one.
[[gnu::target("ssse3"), gnu::always_inline]] inline __m128i ReadLanes(__m128i secondAndFirst, __m128i factor,
                                                                      __m128i third) {
    const __m128i weights = GCodeUnits::Lanes(0x4001);  // of the second byte, and of the first
    return _mm_or_si128(_mm_mullo_epi16(_mm_maddubs_epi16(secondAndFirst, weights), factor), third);
}

// Reads the sequences that begin in a block of 16 bytes. `expected` has a bit for each of its first
// bytes that continues a sequence of the block before, and then for those of the next. What would
// begin at every byte is computed; the bytes at which nothing does are dropped.
[[gnu::target("ssse3"), gnu::always_inline]] inline bool ReadBlock(const unsigned char* bytes,
                                                                   unsigned char* units,
                                                                   std::uint32_t& expected,
                                                                   Progress& progress) {
    const __m128i first = GCodeUnits::LoadVector(bytes + progress.read);
    const __m128i second = GCodeUnits::LoadVector(bytes + progress.read + 1);
    const __m128i third = GCodeUnits::LoadVector(bytes + progress.read + 2);
    const __m128i isThree = AreFrom(first, 0xE0);
    const __m128i isLead = AreFrom(first, 0xC0);
    const std::uint32_t inBlock = MaskOf(AreContinuations(first));
    const std::uint32_t continuations = inBlock | MaskOf(AreContinuations(third)) << cLookAhead;
    const std::uint32_t claimed = MaskOf(isLead) << 1 | MaskOf(isThree) << 2 | expected;
    if (MaskOf(AreFrom(first, 0xF0)) != 0 || ((claimed ^ continuations) & (claimed | 0xFFFF)) != 0)
        return false;

    const __m128i zero = _mm_setzero_si128();
    const __m128i sixBits = Bytes(0x3F);
    const __m128i high = _mm_and_si128(first, _mm_and_si128(isLead, Bytes(0x1F)));
    const __m128i middle = Select(isLead, _mm_and_si128(second, sixBits), first);
    const __m128i bitsOfThird = _mm_and_si128(isThree, sixBits);
    const __m128i low = _mm_and_si128(third, bitsOfThird);
    const __m128i factor = _mm_add_epi8(bitsOfThird, Bytes(1));  // 64 for three bytes
    const std::uint32_t starts = ~inBlock;
    StoreStarts(ReadLanes(_mm_unpacklo_epi8(middle, high), _mm_unpacklo_epi8(factor, zero),
                          _mm_unpacklo_epi8(low, zero)),
                starts & 0xFF, units, progress);
    StoreStarts(ReadLanes(_mm_unpackhi_epi8(middle, high), _mm_unpackhi_epi8(factor, zero),
                          _mm_unpackhi_epi8(low, zero)),
                starts >> 8 & 0xFF, units, progress);
    progress.read += cBlock;
    expected = claimed >> cBlock;
    return true;
}

[[gnu::target("ssse3")]] Progress ReadBlocks(const unsigned char* bytes, std::size_t length,
                                             unsigned char* units, std::size_t room) {
    Progress progress;
    std::uint32_t expected = 0;
    bool isValid = true;
    while (isValid && length - progress.read >= cLongBlock + cLookAhead &&
           room - progress.written >= cLongBlock) {
        if (GCodeUnits::WidenLongBlock(bytes + progress.read, units + 2 * progress.written)) {
            progress.read += cLongBlock;
            progress.written += cLongBlock;
        } else {
            for (std::size_t i = 0; isValid && i < cLongBlock; i += cBlock)
                isValid = ReadBlock(bytes, units, expected, progress);
        }
    }
    while (isValid && length - progress.read >= cBlock + cLookAhead && room - progress.written >= cBlock)
        isValid = ReadBlock(bytes, units, expected, progress);
    progress.read += cBitCounts[expected];  // the last sequence has been written
    return progress;
}

[[gnu::target("ssse3"), gnu::always_inline]] inline void StoreSequences(__m128i lanes, std::uint32_t kinds,
                                                                        unsigned char* out,
                                                                        Progress& progress) {
    const Shuffle& shuffle = cSequenceShuffles[kinds];
    GCodeUnits::StoreVector(out + progress.written, ShuffleBytes(lanes, shuffle));
    progress.written += shuffle.places[cLengthPlace];
}

// Writes 8 units. All bytes that a unit could need are computed; a shuffle keeps those that it does need.
[[gnu::target("ssse3"), gnu::always_inline]] inline void WriteBlock(const unsigned char* units,
                                                                    unsigned char* bytes,
                                                                    Progress& progress) {
    const __m128i vector = GCodeUnits::LoadVector(units + 2 * progress.read);
    const __m128i isOne = GCodeUnits::NotAbove(vector, 0x7F);
    const __m128i isShort = GCodeUnits::NotAbove(vector, 0x7FF);
    const __m128i lead = _mm_or_si128(_mm_srli_epi16(vector, 12), GCodeUnits::Lanes(0xE0));
    // With its mark of a continuation byte or, for two bytes, of a lead byte.
    const __m128i second =
        _mm_or_si128(_mm_and_si128(_mm_srli_epi16(vector, 6), GCodeUnits::Lanes(0x3F)),
                     _mm_or_si128(_mm_and_si128(isShort, GCodeUnits::Lanes(0x40)), GCodeUnits::Lanes(0x80)));
    const __m128i last = Select(
        isOne, vector, _mm_or_si128(_mm_and_si128(vector, GCodeUnits::Lanes(0x3F)), GCodeUnits::Lanes(0x80)));
    const __m128i secondAndLast = _mm_or_si128(second, _mm_slli_epi16(last, 8));
    const std::uint32_t kinds =
        MaskOf(_mm_packs_epi16(_mm_unpacklo_epi16(isOne, isShort), _mm_unpackhi_epi16(isOne, isShort)));
    StoreSequences(_mm_unpacklo_epi16(lead, secondAndLast), kinds & 0xFF, bytes, progress);
    StoreSequences(_mm_unpackhi_epi16(lead, secondAndLast), kinds >> 8, bytes, progress);
    progress.read += cUnits;
}

[[gnu::target("ssse3")]] Progress WriteBlocks(const unsigned char* units, std::size_t count,
                                              unsigned char* bytes, std::size_t room) {
    Progress progress;
    while (count - progress.read >= cLongBlock &&
           room - progress.written >= cLongBlock / cUnits * cUnitsRoom) {
        if (GCodeUnits::NarrowLongBlock(units + 2 * progress.read, bytes + progress.written)) {
            progress.read += cLongBlock;
            progress.written += cLongBlock;
        } else {
            for (std::size_t i = 0; i < cLongBlock; i += cUnits) WriteBlock(units, bytes, progress);
        }
    }
    while (count - progress.read >= cUnits && room - progress.written >= cUnitsRoom)
        WriteBlock(units, bytes, progress);
    return progress;
}

}  // namespace

Progress GUTF8Blocks::Read(const unsigned char* bytes, std::size_t length, unsigned char* units,
                           std::size_t room) noexcept {
    if (sCanShuffle) return ReadBlocks(bytes, length, units, room);
    const std::size_t ascii = GCodeUnits::WidenASCII(bytes, std::min(length, room), units);
    return {ascii, ascii};
}

Progress GUTF8Blocks::Write(const unsigned char* units, std::size_t count, unsigned char* bytes,
                            std::size_t room) noexcept {
    if (sCanShuffle) return WriteBlocks(units, count, bytes, room);
    const std::size_t ascii = GCodeUnits::NarrowASCII(units, count, bytes);
    return {ascii, ascii};
}
