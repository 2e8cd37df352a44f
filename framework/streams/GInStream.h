#pragma once

#include "framework/core/GExport.h"

class GBuffer;

/// GInStream: a source of bytes that is read front to back in chunks.
///
/// The end of the data is a result, not a failure; what a file or a decoder finds wrong is thrown.
/// A stream belongs to one thread at a time; CreateClone is the way to read one source from two
/// places.
class QUILLON_EXPORT GInStream {
public:
    virtual ~GInStream();

    /// A new, independent stream over the same source that stands where this one stands. The caller
    /// owns it; what this stream only borrows (a buffer, a source stream given by reference) must
    /// outlive the clone, too.
    virtual GInStream* CreateClone() const = 0;
    /// Replaces `out` with up to `maxBytes` bytes and returns how many; at the end of the data, and
    /// for a `maxBytes` below 1, `out` is emptied and the result is -1. May return fewer than asked
    /// before the end.
    virtual long Read(GBuffer& out, long maxBytes) = 0;
    /// Advances by up to `count` bytes and returns how far it got. Here it reads and discards; a
    /// count below 1 skips nothing and gives 0.
    virtual long long Skip(long long count);
    /// Back to the start of the data.
    virtual void Reset() = 0;

protected:
    GInStream() = default;
    GInStream(const GInStream&) = default;
    GInStream& operator=(const GInStream&) = default;
};
