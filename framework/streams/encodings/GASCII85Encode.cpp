#include "framework/streams/encodings/GASCII85Encode.h"

#include <emmintrin.h>

#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr std::array<std::uint32_t, 5> cDivisors = {52200625, 614125, 7225, 85, 1};
constexpr int cAllZero = 0xFFFF;

__m128i SwapBytes(__m128i words) {
    const __m128i halves = _mm_or_si128(_mm_slli_epi16(words, 8), _mm_srli_epi16(words, 8));
    return _mm_or_si128(_mm_slli_epi32(halves, 16), _mm_srli_epi32(halves, 16));
}

// v / 85^2 = v * cFactor >> 44, exactly, for all 32-bit v.
__m128i DivideBy7225(__m128i values) {
    const __m128i factor = _mm_set1_epi32(static_cast<int>(2434904643U));
    const __m128i even = _mm_srli_epi64(_mm_mul_epu32(values, factor), 44);
    const __m128i odd = _mm_srli_epi64(_mm_mul_epu32(_mm_srli_epi64(values, 32), factor), 44);
    return _mm_or_si128(even, _mm_slli_epi64(odd, 32));
}

// What a division by 7225 leaves. It fits 16 bits, so that only those need be computed.
__m128i RestOf7225(__m128i values, __m128i quotients) {
    const __m128i taken = _mm_mullo_epi16(quotients, _mm_set1_epi32(7225));
    return _mm_and_si128(_mm_sub_epi16(values, taken), _mm_set1_epi32(0xFFFF));
}

// The digits of four groups: the first of each in `first`, the other four in the bytes of `others`.
struct FourGroups {
    explicit FourGroups(__m128i values) {
        const __m128i high = DivideBy7225(values);
        const __m128i low = RestOf7225(values, high);
        // Half a unit is more than all rounding errors together, and less than what the next quotient needs.
        const __m128 middle = _mm_add_ps(_mm_cvtepi32_ps(high), _mm_set1_ps(0.5F));
        const __m128i top = _mm_cvttps_epi32(_mm_mul_ps(middle, _mm_set1_ps(1.0F / 7225)));
        const __m128i pairs = _mm_or_si128(RestOf7225(high, top), _mm_slli_epi32(low, 16));
        // For all below 7225: x / 85 = x * 12337 >> 20.
        const __m128i tens = _mm_srli_epi16(_mm_mulhi_epu16(pairs, _mm_set1_epi16(12337)), 4);
        const __m128i ones = _mm_sub_epi16(pairs, _mm_mullo_epi16(tens, _mm_set1_epi16(85)));
        const __m128i digits = _mm_or_si128(tens, _mm_slli_epi16(ones, 8));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(first.data()), _mm_add_epi32(top, _mm_set1_epi32('!')));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(others.data()), _mm_add_epi8(digits, _mm_set1_epi8('!')));
    }

    std::array<std::uint32_t, 4> first;
    std::array<std::uint32_t, 4> others;
};

// Writes at most 20 characters and three undefined bytes behind them.
unsigned char* EncodeSixteen(const unsigned char* in, unsigned char* out) {
    const __m128i values = SwapBytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in)));
    const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi32(values, _mm_setzero_si128()));
    if (zeros == cAllZero) {
        std::memset(out, 'z', 4);
        return out + 4;
    }
    const FourGroups groups(values);
    for (std::size_t i = 0; i < 4; ++i) {
        const bool isZero = (zeros >> (4 * i) & 1) != 0;
        const std::uint64_t text = isZero ? 'z' : groups.first[i] | std::uint64_t{groups.others[i]} << 8;
        std::memcpy(out, &text, sizeof text);
        out += isZero ? 1 : 5;
    }
    return out;
}

std::uint32_t ValueOf(const unsigned char* bytes, long count) {
    std::uint32_t value = 0;
    for (long i = 0; i < 4; ++i) value = value << 8 | (i < count ? bytes[i] : 0U);
    return value;
}

void PutDigits(std::uint32_t value, long count, unsigned char* out) {
    for (long i = 0; i < count; ++i) {
        const std::uint32_t divisor = cDivisors[static_cast<std::size_t>(i)];
        out[i] = static_cast<unsigned char>('!' + value / divisor);
        value %= divisor;
    }
}

}  // namespace

GASCII85Encode::GASCII85Encode(GHeldStream<GInStream> source, bool breakLines)
    : GTextEncode(std::move(source), "~>", breakLines) {}

GASCII85Encode* GASCII85Encode::CreateClone() const {
    return new GASCII85Encode(*this);
}

GFilterStep GASCII85Encode::Encode(GFilterWindow& window) const {
    for (; window.InCount() >= 16 && window.OutRoom() >= 24; window.in += 16) {
        window.out = EncodeSixteen(window.in, window.out);
    }
    for (; window.InCount() >= 4 && window.OutRoom() >= 5; window.in += 4) {
        const std::uint32_t value = ValueOf(window.in, 4);
        if (value == 0) {
            *window.out++ = 'z';
        } else {
            PutDigits(value, 5, window.out);
            window.out += 5;
        }
    }
    if (!window.isLast || window.InCount() >= 4 || window.OutRoom() < 5) return GFilterStep::cGoOn;
    EncodeBytesPartial(window);
    return GFilterStep::cEnd;
}

// Zero bytes make the group whole; the characters that they alone decide are left out. No 'z' here.
void GASCII85Encode::EncodeBytesPartial(GFilterWindow& window) {
    const long count = window.InCount();
    if (count == 0) return;
    PutDigits(ValueOf(window.in, count), count + 1, window.out);
    window.in += count;
    window.out += count + 1;
}
