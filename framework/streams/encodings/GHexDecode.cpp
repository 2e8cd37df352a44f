#include "framework/streams/encodings/GHexDecode.h"

#include <emmintrin.h>

#include <utility>

#include "framework/streams/encodings/GTextByte.h"

namespace {

constexpr std::int32_t cNeededRoom = 16;
constexpr int cAllValid = 0xFFFF;

__m128i IsAtMost(__m128i bytes, char limit) {
    return _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(limit)), bytes);
}

// Eight bytes from sixteen digits; false, with nothing written, when they are not all digits.
bool DecodeSixteen(const unsigned char* in, unsigned char* out) {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
    const __m128i digit = _mm_sub_epi8(text, _mm_set1_epi8('0'));
    const __m128i letter = _mm_sub_epi8(_mm_or_si128(text, _mm_set1_epi8(0x20)), _mm_set1_epi8('a'));
    const __m128i isDigit = IsAtMost(digit, 9);
    const __m128i isLetter = IsAtMost(letter, 5);
    if (_mm_movemask_epi8(_mm_or_si128(isDigit, isLetter)) != cAllValid) return false;
    const __m128i nibbles = _mm_or_si128(_mm_and_si128(isDigit, digit),
                                         _mm_and_si128(isLetter, _mm_add_epi8(letter, _mm_set1_epi8(10))));
    const __m128i pairs = _mm_or_si128(_mm_slli_epi16(nibbles, 4), _mm_srli_epi16(nibbles, 8));
    const __m128i bytes = _mm_and_si128(pairs, _mm_set1_epi16(0xFF));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(bytes, bytes));
    return true;
}

// The value of a digit, or -1.
std::int32_t ValueOf(unsigned char byte) {
    if (byte >= '0' && byte <= '9') return byte - '0';
    const unsigned char lower = byte | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

GHexDecode::GHexDecode(GHeldStream<GInStream> source) : GFilterInStream(std::move(source), cNeededRoom) {}

GHexDecode* GHexDecode::CreateClone() const {
    return new GHexDecode(*this);
}

void GHexDecode::Restart() {
    mHighDigit = -1;
}

GFilterStep GHexDecode::Convert(GFilterWindow& window) {
    while (window.OutRoom() >= 8) {
        if (mHighDigit < 0 && window.InCount() >= 16 && DecodeSixteen(window.in, window.out)) {
            window.in += 16;
            window.out += 8;
            continue;
        }
        if (window.InCount() == 0) return window.isLast ? Finish(window) : GFilterStep::cGoOn;
        const GFilterStep step = TakeByte(window);
        if (step != GFilterStep::cGoOn) return step;
    }
    return GFilterStep::cGoOn;
}

GFilterStep GHexDecode::TakeByte(GFilterWindow& window) {
    const unsigned char byte = *window.in;
    const std::int32_t value = ValueOf(byte);
    if (value < 0 && byte != '>' && !GTextByte::IsWhiteSpace(byte)) return GFilterStep::cInvalid;
    ++window.in;
    if (byte == '>') return Finish(window);
    if (value < 0) return GFilterStep::cGoOn;
    if (mHighDigit < 0) {
        mHighDigit = value;
    } else {
        *window.out++ = static_cast<unsigned char>(mHighDigit << 4 | value);
        mHighDigit = -1;
    }
    return GFilterStep::cGoOn;
}

GFilterStep GHexDecode::Finish(GFilterWindow& window) const {
    if (mHighDigit >= 0) *window.out++ = static_cast<unsigned char>(mHighDigit << 4);
    return GFilterStep::cEnd;
}
