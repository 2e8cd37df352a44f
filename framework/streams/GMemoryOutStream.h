#pragma once

#include "framework/streams/GOutStream.h"

/// GMemoryOutStream: appends to a buffer that the caller keeps alive.
class QUILLON_EXPORT GMemoryOutStream : public GOutStream {
public:
    explicit GMemoryOutStream(GBuffer& target);  ///< borrows the buffer and appends to what it holds
    /// The same for a pointer, which is not owned and not null.
    explicit GMemoryOutStream(GBuffer* target);

    /// Appends all of `data`. Throws GMemoryException when the buffer cannot grow that far.
    long Write(const GBuffer& data) override;

private:
    GBuffer* mTarget;  // not owned
};
