#include "framework/streams/encodings/GRunLengthDecode.h"

#include <emmintrin.h>

#include <cstring>
#include <utility>

namespace {

constexpr long cLongestRun = 128;
constexpr std::int32_t cNeededRoom = cLongestRun;
constexpr unsigned char cEndMark = 128;

// Both write whole vectors, that is up to `cLongestRun` bytes, of which `count` mean something.
void Repeat(unsigned char value, long count, unsigned char* out) {
    const __m128i values = _mm_set1_epi8(static_cast<char>(value));
    for (long i = 0; i < count; i += 16) _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), values);
}

void CopyWide(const unsigned char* in, long count, unsigned char* out) {
    for (long i = 0; i < count; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), bytes);
    }
}

// False, with nothing done, when the run is not all there.
bool TakeRun(GFilterWindow& window) {
    const unsigned char length = window.in[0];
    const bool isRepeat = length > cEndMark;
    const long count = isRepeat ? 257 - length : length + 1;
    const long needed = isRepeat ? 1 : count;
    const long available = window.InCount() - 1;
    if (available < needed) return false;
    if (isRepeat) {
        Repeat(window.in[1], count, window.out);
    } else if (available >= cLongestRun) {
        CopyWide(window.in + 1, count, window.out);
    } else {
        std::memcpy(window.out, window.in + 1, static_cast<std::size_t>(count));
    }
    window.in += 1 + needed;
    window.out += count;
    return true;
}

void TakeCutRun(GFilterWindow& window) {
    const long count = window.in[0] > cEndMark ? 0 : window.InCount() - 1;
    std::memcpy(window.out, window.in + 1, static_cast<std::size_t>(count));
    window.in += 1 + count;
    window.out += count;
}

}  // namespace

GRunLengthDecode::GRunLengthDecode(GHeldStream<GInStream> source)
    : GFilterInStream(std::move(source), cNeededRoom) {}

GRunLengthDecode* GRunLengthDecode::CreateClone() const {
    return new GRunLengthDecode(*this);
}

GFilterStep GRunLengthDecode::Convert(GFilterWindow& window) {
    while (window.OutRoom() >= cNeededRoom) {
        if (window.InCount() == 0) return window.isLast ? GFilterStep::cEnd : GFilterStep::cGoOn;
        if (window.in[0] == cEndMark) {
            ++window.in;
            return GFilterStep::cEnd;
        }
        if (TakeRun(window)) continue;
        if (!window.isLast) return GFilterStep::cGoOn;
        TakeCutRun(window);
        return GFilterStep::cTruncated;
    }
    return GFilterStep::cGoOn;
}
