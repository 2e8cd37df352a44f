#pragma once

/// @file
/// The base of all streams that convert.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>

#include "framework/core/bytes/GBuffer.h"
#include "framework/streams/GHeldStream.h"
#include "framework/streams/GInStream.h"

class GBufferedInStream;

/// GFilterWindow: between which pointers a filter works. It advances `in` and `out`.
struct GFilterWindow {
    long InCount() const { return static_cast<long>(inEnd - in); }    ///< bytes that are left to read
    long OutRoom() const { return static_cast<long>(outEnd - out); }  ///< bytes that may still be written
    /// Passes on up to `limit` bytes as they are and returns how many.
    long CopyThrough(long limit) {
        const long count = std::min({limit, InCount(), OutRoom()});
        if (count > 0) std::memcpy(out, in, static_cast<std::size_t>(count));
        in += count;
        out += count;
        return count;
    }

    const unsigned char* in;     ///< the next byte to read
    const unsigned char* inEnd;  ///< behind the last one
    bool isLast;                 ///< the source has nothing behind inEnd
    unsigned char* out;          ///< where the next byte goes
    unsigned char* outEnd;       ///< behind the room
};

/// Where a filter stands when it returns.
enum class GFilterStep {
    cGoOn,       ///< more input or more room is needed
    cEnd,        ///< all is done
    cInvalid,    ///< what stands at `in` is wrong
    cTruncated,  ///< the source ended too early
    cWrongTag,   ///< the tag at `in` is not known
};

/// GFilterInStream: a stream that converts what it pulls from a source, the base of all encoders and
/// decoders.
///
/// A source given by reference is borrowed and must outlive the filter, one given by pointer is owned.
/// Copying a filter clones its source; to put two filters of one class upon each other, pass the inner
/// one by pointer. The source is read in chunks of 4096 bytes. The result is the same whatever sizes
/// it is read in, and a Read gives fewer bytes than asked at the end of the data only, or before a
/// failure. Counts of bytes have no limit.
///
/// Where the data is wrong, everything before it is delivered first. The Read after that throws, and so
/// does each one until Reset:
/// - GExceptionID::cInvalidDataToDecode: a byte or a value that cannot be;
/// - GExceptionID::cUnexpectedEndOfData: the source ended in the middle of something. The lack of an end
///   mark alone is no failure, it ends the data;
/// - GExceptionID::cWrongPNGTag: an unknown tag in front of a PNG row.
/// What the source throws passes through, also behind the bytes that came before, and only once: the
/// next Read asks the source again.
///
/// Behind an end mark the source is asked for nothing more. A source that can step back
/// (GBufferedInStream) is given back what was read behind the mark, by the Read that meets it, at the
/// latest by the one that returns -1.
class QUILLON_EXPORT GFilterInStream : public GInStream {
public:
    GFilterInStream& operator=(const GFilterInStream&) = delete;
    ~GFilterInStream() override;

    long Read(GBuffer& out, long maxBytes) final;
    void Reset() final;

protected:
    /// `neededRoom`: with so many bytes of room Convert gets on whatever the data is.
    GFilterInStream(GHeldStream<GInStream> source, std::int32_t neededRoom);
    /// Clones the source; what was read ahead is copied, so that both go on from the same place.
    GFilterInStream(const GFilterInStream& other);

    /// Converts as much as it can: until there is less room than the filter needs, or until the input
    /// is used up. Input that says nothing yet may stay; it is shown again with more behind it, and
    /// must be less than a chunk. With `isLast` it does not wait for input.
    virtual GFilterStep Convert(GFilterWindow& window) = 0;
    /// Forgets everything about the data, which begins anew.
    virtual void Restart() = 0;

private:
    void Fill(GBuffer& out, long maxBytes);
    void TakeCarry(GBuffer& out, long maxBytes);
    void ConvertInto(GBuffer& target, long room, long limit);
    void Pull();
    void GiveBack(long count);
    void ThrowFailure() const;

    GHeldStream<GInStream> mSource;
    std::int32_t mNeededRoom;
    GBuffer mChunk;  // what comes in behind input that is left; kept for its block
    GBuffer mInput;  // the input being converted
    std::int32_t mInputPosition = 0;
    GBuffer mCarry;  // output beyond what was asked for
    std::int32_t mCarryPosition = 0;
    GFilterStep mStep = GFilterStep::cGoOn;
    bool mStarved = true;  // the input left does not suffice to go on
    bool mSourceEnded = false;
    std::exception_ptr mDelayed;  // thrown by the source behind bytes that had to be delivered first
};
