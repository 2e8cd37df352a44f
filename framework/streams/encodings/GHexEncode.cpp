#include "framework/streams/encodings/GHexEncode.h"

#include <emmintrin.h>

#include <utility>

namespace {

__m128i DigitsOf(__m128i nibbles) {
    const __m128i isLetter = _mm_cmpgt_epi8(nibbles, _mm_set1_epi8(9));
    const __m128i gap = _mm_and_si128(isLetter, _mm_set1_epi8('A' - '9' - 1));
    return _mm_add_epi8(_mm_add_epi8(nibbles, _mm_set1_epi8('0')), gap);
}

void EncodeSixteen(const unsigned char* in, unsigned char* out) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
    const __m128i lowBits = _mm_set1_epi8(0x0F);
    const __m128i high = DigitsOf(_mm_and_si128(_mm_srli_epi16(bytes, 4), lowBits));
    const __m128i low = DigitsOf(_mm_and_si128(bytes, lowBits));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(high, low));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16), _mm_unpackhi_epi8(high, low));
}

unsigned char DigitOf(unsigned nibble) {
    return static_cast<unsigned char>("0123456789ABCDEF"[nibble]);
}

}  // namespace

GHexEncode::GHexEncode(GHeldStream<GInStream> source, bool breakLines)
    : GTextEncode(std::move(source), ">", breakLines) {}

GHexEncode* GHexEncode::CreateClone() const {
    return new GHexEncode(*this);
}

GFilterStep GHexEncode::Encode(GFilterWindow& window) const {
    for (; window.InCount() >= 16 && window.OutRoom() >= 32; window.in += 16, window.out += 32) {
        EncodeSixteen(window.in, window.out);
    }
    for (; window.InCount() > 0 && window.OutRoom() >= 2; ++window.in) {
        *window.out++ = DigitOf(*window.in >> 4);
        *window.out++ = DigitOf(*window.in & 0x0FU);
    }
    return window.isLast && window.InCount() == 0 ? GFilterStep::cEnd : GFilterStep::cGoOn;
}
