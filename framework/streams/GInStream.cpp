#include "framework/streams/GInStream.h"

#include <algorithm>

#include "framework/core/bytes/GBuffer.h"

namespace {

constexpr long long cSkipChunk = 0x100000;  // bytes read and dropped at once

}  // namespace

GInStream::~GInStream() = default;

long long GInStream::Skip(long long count) {
    GBuffer dropped;
    long long skipped = 0;
    while (skipped < count) {
        const long taken = Read(dropped, static_cast<long>(std::min(count - skipped, cSkipChunk)));
        if (taken < 1) break;
        skipped += taken;
    }
    return skipped;
}
