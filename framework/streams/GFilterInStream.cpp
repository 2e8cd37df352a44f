#include "framework/streams/GFilterInStream.h"

#include <algorithm>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"
#include "framework/streams/GBufferedInStream.h"

namespace {

constexpr long cSourceChunk = 4096;
constexpr long cStride = 0x10000;   // bytes of room that are made at once
constexpr long cCarryRoom = 0x400;  // what small reads are served from

// Makes `target` longer by `room` bytes and returns where they begin. `limit` is how long it can become at
// all: up to there it grows by doubling.
unsigned char* Lengthen(GBuffer& target, long room, long limit) {
    const long length = target.GetLength();
    if (target.GetAllocatedLength() < length + room) {
        const long doubled =
            std::min(limit, std::min(target.GetAllocatedLength(), GBuffer::cMaxLength / 2L) * 2);
        target.Allocate(std::max(length + room, doubled));
    }
    target.SetLength(length + room);
    return target.GetWritePtr() + length;
}

}  // namespace

GFilterInStream::GFilterInStream(GHeldStream<GInStream> source, std::int32_t neededRoom)
    : mSource(std::move(source)), mNeededRoom(neededRoom) {}

GFilterInStream::GFilterInStream(const GFilterInStream& other)
    : GInStream(other),
      mSource(other.mSource.Clone()),
      mNeededRoom(other.mNeededRoom),
      mInput(other.mInput),
      mInputPosition(other.mInputPosition),
      mCarry(other.mCarry),
      mCarryPosition(other.mCarryPosition),
      mStep(other.mStep),
      mStarved(other.mStarved),
      mSourceEnded(other.mSourceEnded),
      mDelayed(other.mDelayed) {}

GFilterInStream::~GFilterInStream() = default;

void GFilterInStream::Reset() {
    mSource->Reset();
    Restart();
    mInput.Clear();
    mInputPosition = 0;
    mCarry.Clear();
    mCarryPosition = 0;
    mStep = GFilterStep::cGoOn;
    mStarved = true;
    mSourceEnded = false;
    mDelayed = nullptr;
}

// Inlined, as Fill is: of a small read of what converts fast, the calls would be a good part.
[[gnu::always_inline]] inline void GFilterInStream::ConvertInto(GBuffer& target, long room, long limit) {
    const long length = target.GetLength();
    unsigned char* const place = Lengthen(target, room, limit);
    const unsigned char* const input = mInput.GetRawData();
    GFilterWindow window = {input + mInputPosition, input + mInput.GetLength(), mSourceEnded, place,
                            place + room};
    try {
        mStep = Convert(window);
    } catch (...) {
        target.SetLength(length);
        throw;
    }
    target.SetLength(length + static_cast<long>(window.out - place));
    mInputPosition = static_cast<std::int32_t>(window.in - input);
    mStarved = mStep == GFilterStep::cGoOn && window.OutRoom() >= mNeededRoom;
    // A filter that waits for more than there is would wait for ever.
    if (mStarved && mSourceEnded) mStep = GFilterStep::cTruncated;
    if (mStep == GFilterStep::cEnd) GiveBack(window.InCount());
}

[[gnu::always_inline]] inline void GFilterInStream::Fill(GBuffer& out, long maxBytes) {
    if (mDelayed) std::rethrow_exception(std::exchange(mDelayed, nullptr));
    while (out.GetLength() < maxBytes) {
        if (!mCarry.IsEmpty()) TakeCarry(out, maxBytes);
        const long room = maxBytes - out.GetLength();
        if (room == 0) return;
        if (mStep != GFilterStep::cGoOn) return ThrowFailure();
        if (mStarved) Pull();
        // Small reads share one conversion; of large ones only the end may be too small for one.
        const long least = std::max<long>(mNeededRoom, maxBytes < cCarryRoom ? cCarryRoom : 0);
        const bool suffices = room >= least;
        ConvertInto(suffices ? out : mCarry, suffices ? std::min(room, cStride) : least,
                    suffices ? maxBytes : 0);
    }
}

long GFilterInStream::Read(GBuffer& out, long maxBytes) {
    out.Clear();
    if (maxBytes < 1) return -1;
    try {
        Fill(out, std::min<long>(maxBytes, GBuffer::cMaxLength));
    } catch (...) {
        if (out.IsEmpty()) throw;
        mDelayed = std::current_exception();
    }
    return out.IsEmpty() ? -1 : out.GetLength();
}

void GFilterInStream::TakeCarry(GBuffer& out, long maxBytes) {
    const long count = std::min(mCarry.GetLength() - mCarryPosition, maxBytes - out.GetLength());
    out.AppendByteArray(mCarry.GetRawData() + mCarryPosition, count);
    mCarryPosition += static_cast<std::int32_t>(count);
    if (mCarryPosition < mCarry.GetLength()) return;
    mCarry.Clear();
    mCarryPosition = 0;
}

void GFilterInStream::Pull() {
    const long left = mInput.GetLength() - mInputPosition;
    if (left == 0) {
        mInput.Clear();
        mInputPosition = 0;
        mSourceEnded = mSource->Read(mInput, cSourceChunk) < 1;
    } else {
        mSourceEnded = mSource->Read(mChunk, cSourceChunk) < 1;
        mInput.Remove(0, mInputPosition);
        mInputPosition = 0;
        mInput.AppendByteArray(mChunk.GetRawData(), mChunk.GetLength());
    }
    mStarved = false;
}

void GFilterInStream::GiveBack(long count) {
    mInput.Clear();
    mInputPosition = 0;
    auto* const source = dynamic_cast<GBufferedInStream*>(&*mSource);
    if (count > 0 && source != nullptr) source->Unread(count);
}

void GFilterInStream::ThrowFailure() const {
    if (mStep == GFilterStep::cInvalid) throw GSimpleException(GExceptionID::cInvalidDataToDecode);
    if (mStep == GFilterStep::cTruncated) throw GSimpleException(GExceptionID::cUnexpectedEndOfData);
    if (mStep == GFilterStep::cWrongTag) throw GSimpleException(GExceptionID::cWrongPNGTag);
}
