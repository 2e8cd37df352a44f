#pragma once

#include "framework/core/bytes/GBuffer.h"
#include "framework/streams/GBufferedInStream.h"
#include "framework/streams/GHeldStream.h"

/// GReadAheadStream: steps back in any source, which it keeps the last bytes of.
///
/// The way back is all that was read since the rollback point was set, without one at least 64 KiB. A
/// Read gives 64 KiB at most.
class QUILLON_EXPORT GReadAheadStream : public GBufferedInStream {
public:
    static constexpr long cWayBack = 0x10000;  ///< bytes

    /// From a reference the source is borrowed, from a pointer owned.
    explicit GReadAheadStream(GHeldStream<GInStream> source);
    /// Clones the source and copies the bytes that are kept.
    GReadAheadStream(const GReadAheadStream& other);
    GReadAheadStream& operator=(const GReadAheadStream&) = delete;

    GReadAheadStream* CreateClone() const override;
    long Read(GBuffer& out, long maxBytes) override;
    void Reset() override;
    long Unread(long count) override;
    void SetRollBackPoint() override;
    long RollBack() override;

private:
    bool Pull(long maxBytes);
    void Forget();

    GHeldStream<GInStream> mSource;
    GBuffer mKept;  // the last bytes of the source
    GBuffer mChunk;
    std::int32_t mPosition = 0;        // in mKept
    std::int32_t mRollBackPoint = -1;  // in mKept; -1: none
};
