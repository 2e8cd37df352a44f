#include "framework/streams/rows/GPNGKernels.h"

#include <emmintrin.h>

#include <cstdlib>
#include <cstring>

namespace {

using Byte = unsigned char;

__m128i Load(const Byte* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

void Store(Byte* bytes, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), value);
}

// The mean rounded down; the instruction rounds up.
__m128i Mean(__m128i left, __m128i above) {
    const __m128i odd = _mm_and_si128(_mm_xor_si128(left, above), _mm_set1_epi8(1));
    return _mm_sub_epi8(_mm_avg_epu8(left, above), odd);
}

__m128i Distance(__m128i difference) {
    return _mm_max_epi16(difference, _mm_sub_epi16(_mm_setzero_si128(), difference));
}

__m128i Select(__m128i mask, __m128i yes, __m128i no) {
    return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

// In 16-bit lanes. Of equally near ones left is taken before above, and above before the corner.
__m128i Nearest(__m128i left, __m128i above, __m128i corner) {
    const __m128i toLeft = _mm_sub_epi16(above, corner);
    const __m128i toAbove = _mm_sub_epi16(left, corner);
    const __m128i leftDistance = Distance(toLeft);
    const __m128i aboveDistance = Distance(toAbove);
    const __m128i cornerDistance = Distance(_mm_add_epi16(toLeft, toAbove));
    const __m128i least = _mm_min_epi16(cornerDistance, _mm_min_epi16(leftDistance, aboveDistance));
    return Select(_mm_cmpeq_epi16(least, leftDistance), left,
                  Select(_mm_cmpeq_epi16(least, aboveDistance), above, corner));
}

int NearestOf(int left, int above, int corner) {
    const int leftDistance = std::abs(above - corner);
    const int aboveDistance = std::abs(left - corner);
    const int cornerDistance = std::abs(left + above - 2 * corner);
    if (leftDistance <= aboveDistance && leftDistance <= cornerDistance) return left;
    return aboveDistance <= cornerDistance ? above : corner;
}

__m128i NearestBytes(__m128i left, __m128i above, __m128i corner) {
    const __m128i zero = _mm_setzero_si128();
    return _mm_packus_epi16(Nearest(_mm_unpacklo_epi8(left, zero), _mm_unpacklo_epi8(above, zero),
                                    _mm_unpacklo_epi8(corner, zero)),
                            Nearest(_mm_unpackhi_epi8(left, zero), _mm_unpackhi_epi8(above, zero),
                                    _mm_unpackhi_epi8(corner, zero)));
}

Byte Predict(GPNGTag tag, int left, int above, int corner) {
    switch (tag) {
        case GPNGTag::cNone:
            return 0;
        case GPNGTag::cSub:
            return static_cast<Byte>(left);
        case GPNGTag::cUp:
            return static_cast<Byte>(above);
        case GPNGTag::cAverage:
            return static_cast<Byte>((left + above) / 2);
        case GPNGTag::cPaeth:
            return static_cast<Byte>(NearestOf(left, above, corner));
    }
    return 0;
}

template <GPNGTag tag>
__m128i PredictSixteen(const Byte* row, const Byte* above, std::int32_t pixelLength) {
    if constexpr (tag == GPNGTag::cSub) return Load(row - pixelLength);
    if constexpr (tag == GPNGTag::cUp) return Load(above);
    if constexpr (tag == GPNGTag::cAverage) return Mean(Load(row - pixelLength), Load(above));
    return NearestBytes(Load(row - pixelLength), Load(above), Load(above - pixelLength));
}

template <GPNGTag tag>
void EncodeBytes(const Byte* row, const Byte* above, std::int32_t pixelLength, std::int32_t count,
                 Byte* out) {
    std::int32_t i = 0;
    for (; i + 16 <= count; i += 16) {
        Store(out + i, _mm_sub_epi8(Load(row + i), PredictSixteen<tag>(row + i, above + i, pixelLength)));
    }
    for (; i < count; ++i) {
        const std::int32_t left = i - pixelLength;
        out[i] = static_cast<Byte>(row[i] - Predict(tag, row[left], above[i], above[left]));
    }
}

// The byte to the left is a result itself: here byte by byte from `i` on, whatever the pixels are.
template <GPNGTag tag>
void DecodeBytes(const Byte* in, Byte* row, const Byte* above, std::int32_t pixelLength, std::int32_t count,
                 std::int32_t i = 0) {
    for (; i < count; ++i) {
        const std::int32_t left = i - pixelLength;
        row[i] = static_cast<Byte>(in[i] + Predict(tag, row[left], above[i], above[left]));
    }
}

void DecodeUp(const Byte* in, Byte* row, const Byte* above, std::int32_t count) {
    std::int32_t i = 0;
    for (; i + 16 <= count; i += 16) Store(row + i, _mm_add_epi8(Load(in + i), Load(above + i)));
    for (; i < count; ++i) row[i] = static_cast<Byte>(in[i] + above[i]);
}

// Pixels are loaded and stored as four or eight bytes; what is too much is a result that follows.
template <int pixelLength>
__m128i LoadPixel(const Byte* bytes) {
    if constexpr (pixelLength > 4) {
        return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes));
    } else {
        int word;
        std::memcpy(&word, bytes, sizeof word);
        return _mm_cvtsi32_si128(word);
    }
}

template <int pixelLength>
void StorePixel(Byte* bytes, __m128i pixel) {
    if constexpr (pixelLength > 4) {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), pixel);
    } else {
        const int word = _mm_cvtsi128_si32(pixel);
        std::memcpy(bytes, &word, sizeof word);
    }
}

// A vector full of the pixel at the bottom.
template <int pixelLength>
__m128i Repeat(__m128i pixel) {
    if constexpr (pixelLength == 1) pixel = _mm_unpacklo_epi8(pixel, pixel);
    if constexpr (pixelLength <= 2) pixel = _mm_shufflelo_epi16(pixel, 0);
    if constexpr (pixelLength == 4) return _mm_shuffle_epi32(pixel, 0);
    if constexpr (pixelLength != 3 && pixelLength != 6) return _mm_unpacklo_epi64(pixel, pixel);
    pixel = _mm_srli_si128(_mm_slli_si128(pixel, 16 - pixelLength), 16 - pixelLength);
    pixel = _mm_or_si128(pixel, _mm_slli_si128(pixel, pixelLength));
    return pixelLength == 6 ? pixel : _mm_or_si128(pixel, _mm_slli_si128(pixel, 6));
}

// Sums over as many pixels as a vector holds, in a logarithm of steps. What the pixels before add comes
// last, so that one vector waits for the other as short as can be.
template <int pixelLength>
void DecodeSub(const Byte* in, Byte* row, const Byte* above, std::int32_t count) {
    constexpr int cPixels = pixelLength == 1 ? 16 : pixelLength == 2 ? 8 : pixelLength <= 4 ? 4 : 2;
    constexpr int cBytes = cPixels * pixelLength;
    std::int32_t i = 0;
    if (count < 16) return DecodeBytes<GPNGTag::cSub>(in, row, above, pixelLength, count);
    __m128i left = Repeat<pixelLength>(LoadPixel<pixelLength>(row - pixelLength));
    for (; i + 16 <= count; i += cBytes) {
        __m128i sums = Load(in + i);
        sums = _mm_add_epi8(sums, _mm_slli_si128(sums, pixelLength));
        if constexpr (cPixels > 2) sums = _mm_add_epi8(sums, _mm_slli_si128(sums, 2 * pixelLength));
        if constexpr (cPixels > 4) sums = _mm_add_epi8(sums, _mm_slli_si128(sums, 4 * pixelLength));
        if constexpr (cPixels > 8) sums = _mm_add_epi8(sums, _mm_slli_si128(sums, 8 * pixelLength));
        sums = _mm_add_epi8(sums, left);
        Store(row + i, sums);
        left = Repeat<pixelLength>(_mm_srli_si128(sums, cBytes - pixelLength));
    }
    DecodeBytes<GPNGTag::cSub>(in, row, above, pixelLength, count, i);
}

template <int pixelLength>
void DecodeAverage(const Byte* in, Byte* row, const Byte* above, std::int32_t count) {
    std::int32_t i = 0;
    if constexpr (pixelLength > 1) {
        if (count < 8) return DecodeBytes<GPNGTag::cAverage>(in, row, above, pixelLength, count);
        __m128i left = LoadPixel<pixelLength>(row - pixelLength);
        for (; i + 8 <= count; i += pixelLength) {
            const __m128i up = LoadPixel<pixelLength>(above + i);
            left = _mm_add_epi8(LoadPixel<pixelLength>(in + i), Mean(left, up));
            StorePixel<pixelLength>(row + i, left);
        }
    }
    DecodeBytes<GPNGTag::cAverage>(in, row, above, pixelLength, count, i);
}

template <int pixelLength>
void DecodePaeth(const Byte* in, Byte* row, const Byte* above, std::int32_t count) {
    if (count < 8) return DecodeBytes<GPNGTag::cPaeth>(in, row, above, pixelLength, count);
    const __m128i zero = _mm_setzero_si128();
    const __m128i lowBytes = _mm_set1_epi16(0xFF);
    __m128i left = _mm_unpacklo_epi8(LoadPixel<pixelLength>(row - pixelLength), zero);
    __m128i corner = _mm_unpacklo_epi8(LoadPixel<pixelLength>(above - pixelLength), zero);
    std::int32_t i = 0;
    for (; i + 8 <= count; i += pixelLength) {
        const __m128i up = _mm_unpacklo_epi8(LoadPixel<pixelLength>(above + i), zero);
        const __m128i stored = _mm_unpacklo_epi8(LoadPixel<pixelLength>(in + i), zero);
        left = _mm_and_si128(_mm_add_epi8(stored, Nearest(left, up, corner)), lowBytes);
        StorePixel<pixelLength>(row + i, _mm_packus_epi16(left, left));
        corner = up;
    }
    DecodeBytes<GPNGTag::cPaeth>(in, row, above, pixelLength, count, i);
}

template <int pixelLength>
void DecodePixels(GPNGTag tag, const Byte* in, Byte* row, const Byte* above, std::int32_t count) {
    if (tag == GPNGTag::cSub) return DecodeSub<pixelLength>(in, row, above, count);
    if (tag == GPNGTag::cAverage) return DecodeAverage<pixelLength>(in, row, above, count);
    DecodePaeth<pixelLength>(in, row, above, count);
}

void DecodeAnyPixels(GPNGTag tag, const Byte* in, Byte* row, const Byte* above, std::int32_t pixelLength,
                     std::int32_t count) {
    if (tag == GPNGTag::cSub) return DecodeBytes<GPNGTag::cSub>(in, row, above, pixelLength, count);
    if (tag == GPNGTag::cAverage) return DecodeBytes<GPNGTag::cAverage>(in, row, above, pixelLength, count);
    DecodeBytes<GPNGTag::cPaeth>(in, row, above, pixelLength, count);
}

}  // namespace

void GPNGKernels::Encode(GPNGTag tag, const unsigned char* row, const unsigned char* above,
                         std::int32_t pixelLength, std::int32_t count, unsigned char* out) {
    switch (tag) {
        case GPNGTag::cNone:
            std::memcpy(out, row, static_cast<std::size_t>(count));
            return;
        case GPNGTag::cSub:
            return EncodeBytes<GPNGTag::cSub>(row, above, pixelLength, count, out);
        case GPNGTag::cUp:
            return EncodeBytes<GPNGTag::cUp>(row, above, pixelLength, count, out);
        case GPNGTag::cAverage:
            return EncodeBytes<GPNGTag::cAverage>(row, above, pixelLength, count, out);
        case GPNGTag::cPaeth:
            return EncodeBytes<GPNGTag::cPaeth>(row, above, pixelLength, count, out);
    }
}

void GPNGKernels::Decode(GPNGTag tag, const unsigned char* in, unsigned char* row, const unsigned char* above,
                         std::int32_t pixelLength, std::int32_t count) {
    if (tag == GPNGTag::cNone) {
        std::memcpy(row, in, static_cast<std::size_t>(count));
        return;
    }
    if (tag == GPNGTag::cUp) return DecodeUp(in, row, above, count);
    switch (pixelLength) {
        case 1:
            return DecodePixels<1>(tag, in, row, above, count);
        case 2:
            return DecodePixels<2>(tag, in, row, above, count);
        case 3:
            return DecodePixels<3>(tag, in, row, above, count);
        case 4:
            return DecodePixels<4>(tag, in, row, above, count);
        case 6:
            return DecodePixels<6>(tag, in, row, above, count);
        case 8:
            return DecodePixels<8>(tag, in, row, above, count);
        default:
            return DecodeAnyPixels(tag, in, row, above, pixelLength, count);
    }
}
