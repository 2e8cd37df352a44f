#include "framework/streams/encodings/GRunLengthEncode.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace {

constexpr long cLongestRun = 128;
// With so much input a run is decided, and the vectors that look for its end read no byte too many.
constexpr long cLookAhead = cLongestRun + 32;
constexpr std::int32_t cNeededRoom = 1 + cLongestRun + 16;
constexpr unsigned char cEndMark = 128;

__m128i Load(const unsigned char* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

// How many bytes at the start equal the first one.
long CountEqual(const unsigned char* bytes, long limit, bool wide) {
    const __m128i first = _mm_set1_epi8(static_cast<char>(bytes[0]));
    long count = 1;
    for (; wide && count < limit; count += 16) {
        const auto equal =
            static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(Load(bytes + count), first)));
        if (equal != 0xFFFF) return std::min<long>(limit, count + std::countr_one(equal));
    }
    while (count < limit && bytes[count] == bytes[0]) ++count;
    return std::min(count, limit);
}

// How many bytes stand before the first three equal ones. The first two bytes differ.
long CountBeforeThreeEqual(const unsigned char* bytes, long limit, bool wide) {
    long count = 1;
    for (; wide && count + 2 < limit; count += 16) {
        const __m128i middle = Load(bytes + count + 1);
        const __m128i equal = _mm_and_si128(_mm_cmpeq_epi8(Load(bytes + count), middle),
                                            _mm_cmpeq_epi8(middle, Load(bytes + count + 2)));
        const auto found = static_cast<unsigned>(_mm_movemask_epi8(equal));
        if (found == 0) continue;
        count += std::countr_zero(found);
        return count + 2 < limit ? count : limit;
    }
    for (; count + 2 < limit; ++count) {
        if (bytes[count] == bytes[count + 1] && bytes[count] == bytes[count + 2]) return count;
    }
    return limit;
}

}  // namespace

GRunLengthEncode::GRunLengthEncode(GHeldStream<GInStream> source)
    : GFilterInStream(std::move(source), cNeededRoom) {}

GRunLengthEncode* GRunLengthEncode::CreateClone() const {
    return new GRunLengthEncode(*this);
}

GFilterStep GRunLengthEncode::Convert(GFilterWindow& window) {
    while (window.OutRoom() >= cNeededRoom) {
        const long available = window.InCount();
        const bool wide = available >= cLookAhead;
        if (!wide && !window.isLast) return GFilterStep::cGoOn;
        if (available == 0) {
            *window.out++ = cEndMark;
            return GFilterStep::cEnd;
        }
        const long limit = std::min(available, cLongestRun);
        if (limit >= 2 && window.in[0] == window.in[1]) {
            const long count = CountEqual(window.in, limit, wide);
            *window.out++ = static_cast<unsigned char>(257 - count);
            *window.out++ = window.in[0];
            window.in += count;
        } else {
            const long count = CountBeforeThreeEqual(window.in, limit, wide);
            *window.out++ = static_cast<unsigned char>(count - 1);
            std::memcpy(window.out, window.in, static_cast<std::size_t>(count));
            window.in += count;
            window.out += count;
        }
    }
    return GFilterStep::cGoOn;
}
