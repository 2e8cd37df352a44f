#include "framework/streams/rows/GInterleavedInStream.h"

#include <algorithm>
#include <memory>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

namespace {

constexpr long cChunk = 4096;

std::int32_t CheckUnit(long unit) {
    if (unit < 1 || unit > GBuffer::cMaxLength) throw GSimpleException(GExceptionID::cInvalidParameter);
    return static_cast<std::int32_t>(unit);
}

template <class Stream>
void Require(const Stream* stream) {
    if (stream == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
}

}  // namespace

GInterleavedInStream::GInterleavedInStream(const GTable<GInStream*>& sources, long unit)
    : mUnit(CheckUnit(unit)) {
    for (GInStream* const source : sources) {
        Require(source);
        mLanes.push_back({GHeldStream<GInStream>(*source), GBuffer()});
    }
    Check();
}

// All are owned before the first can be found wrong.
GInterleavedInStream::GInterleavedInStream(GTable<GInStream*>* sources, long unit) : mUnit(1) {
    Require(sources);
    const std::unique_ptr<GTable<GInStream*>> table(sources);
    std::vector<std::unique_ptr<GInStream>> owned;
    for (GInStream* const source : *table) owned.emplace_back(source);
    for (auto& source : owned) {
        Require(source.get());
        mLanes.push_back({GHeldStream<GInStream>(source.release()), GBuffer()});
    }
    mUnit = CheckUnit(unit);
    Check();
}

GInterleavedInStream::GInterleavedInStream(const GInterleavedInStream& other)
    : GInStream(other), mUnit(other.mUnit), mTurn(other.mTurn), mTaken(other.mTaken) {
    for (const Lane& lane : other.mLanes) {
        mLanes.push_back({lane.source.Clone(), lane.chunk, lane.position});
    }
}

GInterleavedInStream::~GInterleavedInStream() = default;

void GInterleavedInStream::Check() const {
    if (mLanes.empty()) throw GSimpleException(GExceptionID::cInvalidParameter);
}

GInterleavedInStream* GInterleavedInStream::CreateClone() const {
    return new GInterleavedInStream(*this);
}

void GInterleavedInStream::Reset() {
    for (Lane& lane : mLanes) {
        lane.source->Reset();
        lane.chunk.Clear();
        lane.position = 0;
    }
    mTurn = 0;
    mTaken = 0;
}

bool GInterleavedInStream::Refill(Lane& lane) {
    lane.chunk.Clear();
    lane.position = 0;
    if (lane.source->Read(lane.chunk, cChunk) > 0) return true;
    if (mTaken > 0) throw GSimpleException(GExceptionID::cUnexpectedEndOfData);
    return false;
}

// Sources are asked only while there is nothing to deliver: what they throw takes nothing along.
long GInterleavedInStream::Read(GBuffer& out, long maxBytes) {
    out.Clear();
    while (out.GetLength() < maxBytes) {
        Lane& lane = mLanes[mTurn];
        if (lane.GetRest() == 0 && (!out.IsEmpty() || !Refill(lane))) break;
        const long count = std::min({lane.GetRest(), maxBytes - out.GetLength(), long{mUnit - mTaken}});
        out.AppendByteArray(lane.chunk.GetRawData() + lane.position, count);
        lane.position += static_cast<std::int32_t>(count);
        mTaken += static_cast<std::int32_t>(count);
        if (mTaken < mUnit) continue;
        mTaken = 0;
        mTurn = (mTurn + 1) % mLanes.size();
    }
    return out.IsEmpty() ? -1 : out.GetLength();
}
