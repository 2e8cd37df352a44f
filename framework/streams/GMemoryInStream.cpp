#include "framework/streams/GMemoryInStream.h"

#include <algorithm>

#include "framework/core/bytes/GBuffer.h"

GMemoryInStream::GMemoryInStream(const GBuffer& data) : mData(&data) {}

GMemoryInStream::GMemoryInStream(const GBuffer* data) : mData(data) {}

GMemoryInStream* GMemoryInStream::CreateClone() const {
    return new GMemoryInStream(*this);
}

long GMemoryInStream::Read(GBuffer& out, long maxBytes) {
    const long count = std::min<long>(maxBytes, GetLength() - mPosition);
    if (count < 1) {
        out.Clear();
        return -1;
    }
    out.CopyByteArray(mData->GetRawData() + mPosition, count, count);
    mPosition += static_cast<std::int32_t>(count);
    return count;
}

long long GMemoryInStream::Skip(long long count) {
    const long long moved =
        std::max<long long>(std::min<long long>(count, GetLength() - mPosition), -mPosition);
    mPosition += static_cast<std::int32_t>(moved);
    return moved;
}

void GMemoryInStream::Reset() {
    mPosition = 0;
    mRollBackPoint = -1;
}

long GMemoryInStream::Unread(long count) {
    const long moved = std::clamp<long>(count, 0, mPosition);
    mPosition -= static_cast<std::int32_t>(moved);
    return moved;
}

void GMemoryInStream::SetRollBackPoint() {
    mRollBackPoint = mPosition;
}

long GMemoryInStream::RollBack() {
    if (mRollBackPoint < 0) return -1;
    const long givenBack = std::max(mPosition - mRollBackPoint, 0);
    mPosition = mRollBackPoint;
    mRollBackPoint = -1;
    return givenBack;
}

long GMemoryInStream::GetLength() const {
    return mData->GetLength();
}
