#pragma once

#include "framework/streams/GHeldStream.h"
#include "framework/streams/GInStream.h"

/// GPartialInStream: a part of a source as a stream of its own. What of the part lies beyond the end of
/// the source is not there.
class QUILLON_EXPORT GPartialInStream : public GInStream {
public:
    /// The `length` bytes behind the first `start` bytes of the source, wherever it stands now: it is
    /// moved by the first Read. From a reference the source is borrowed, from a pointer owned. Negative
    /// counts throw GExceptionID::cInvalidParameter.
    GPartialInStream(GHeldStream<GInStream> source, long long start, long long length);
    GPartialInStream(const GPartialInStream& other);  ///< clones the source, whether borrowed or owned
    GPartialInStream& operator=(const GPartialInStream&) = delete;

    GPartialInStream* CreateClone() const override;
    long Read(GBuffer& out, long maxBytes) override;
    long long Skip(long long count) override;
    void Reset() override;

private:
    void GoToStart();

    GHeldStream<GInStream> mSource;
    long long mStart;
    long long mLength;
    long long mPosition = -1;  // in the part; -1: the source does not stand in it yet
};
