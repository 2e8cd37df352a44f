#include "framework/streams/GReadAheadStream.h"

#include <algorithm>
#include <utility>

GReadAheadStream::GReadAheadStream(GHeldStream<GInStream> source) : mSource(std::move(source)) {}

GReadAheadStream::GReadAheadStream(const GReadAheadStream& other)
    : GBufferedInStream(other),
      mSource(other.mSource.Clone()),
      mKept(other.mKept),
      mPosition(other.mPosition),
      mRollBackPoint(other.mRollBackPoint) {}

GReadAheadStream* GReadAheadStream::CreateClone() const {
    return new GReadAheadStream(*this);
}

long GReadAheadStream::Read(GBuffer& out, long maxBytes) {
    out.Clear();
    const long wanted = std::min(maxBytes, cWayBack);
    if (wanted < 1 || (mPosition == mKept.GetLength() && !Pull(wanted))) return -1;
    const long count = std::min(wanted, mKept.GetLength() - mPosition);
    out.CopyByteArray(mKept.GetRawData() + mPosition, count);
    mPosition += static_cast<std::int32_t>(count);
    return count;
}

bool GReadAheadStream::Pull(long maxBytes) {
    if (mSource->Read(mChunk, maxBytes) < 1) return false;
    Forget();
    mKept.AppendByteArray(mChunk.GetRawData(), mChunk.GetLength());
    return true;
}

// Only when there is as much to forget as to keep, so that bytes are seldom moved.
void GReadAheadStream::Forget() {
    long first = std::max(mPosition - cWayBack, 0L);
    if (mRollBackPoint >= 0) first = std::min<long>(first, mRollBackPoint);
    if (first < cWayBack) return;
    mKept.Remove(0, first);
    mPosition -= static_cast<std::int32_t>(first);
    if (mRollBackPoint >= 0) mRollBackPoint -= static_cast<std::int32_t>(first);
}

void GReadAheadStream::Reset() {
    mSource->Reset();
    mKept.Clear();
    mPosition = 0;
    mRollBackPoint = -1;
}

long GReadAheadStream::Unread(long count) {
    const long moved = std::clamp<long>(count, 0, mPosition);
    mPosition -= static_cast<std::int32_t>(moved);
    return moved;
}

void GReadAheadStream::SetRollBackPoint() {
    mRollBackPoint = mPosition;
}

long GReadAheadStream::RollBack() {
    if (mRollBackPoint < 0) return -1;
    const long givenBack = std::max(mPosition - mRollBackPoint, 0);
    mPosition = std::exchange(mRollBackPoint, -1);
    return givenBack;
}
