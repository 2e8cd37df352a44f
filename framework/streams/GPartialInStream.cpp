#include "framework/streams/GPartialInStream.h"

#include <algorithm>
#include <utility>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

GPartialInStream::GPartialInStream(GHeldStream<GInStream> source, long long start, long long length)
    : mSource(std::move(source)), mStart(start), mLength(length) {
    if (start < 0 || length < 0) throw GSimpleException(GExceptionID::cInvalidParameter);
}

GPartialInStream::GPartialInStream(const GPartialInStream& other)
    : GInStream(other),
      mSource(other.mSource.Clone()),
      mStart(other.mStart),
      mLength(other.mLength),
      mPosition(other.mPosition) {}

GPartialInStream* GPartialInStream::CreateClone() const {
    return new GPartialInStream(*this);
}

void GPartialInStream::GoToStart() {
    if (mPosition >= 0) return;
    mSource->Reset();
    mPosition = mSource->Skip(mStart) == mStart ? 0 : mLength;
}

long GPartialInStream::Read(GBuffer& out, long maxBytes) {
    GoToStart();
    const long count =
        mSource->Read(out, static_cast<long>(std::min<long long>(maxBytes, mLength - mPosition)));
    if (count > 0) mPosition += count;
    return count;
}

long long GPartialInStream::Skip(long long count) {
    if (count < 1) return 0;
    GoToStart();
    const long long skipped = mSource->Skip(std::min(count, mLength - mPosition));
    mPosition += skipped;
    return skipped;
}

void GPartialInStream::Reset() {
    mPosition = -1;
}
