#pragma once

#include <memory>

#include "framework/core/errors/GException.h"
#include "framework/streams/GInStream.h"

/// GHeldStream: the stream that another one works on, borrowed or owned.
///
/// It is made on the spot from what a constructor is given: a reference is borrowed and must outlive the
/// holder, a pointer is owned from then on, and null throws GExceptionID::cInvalidParameter.
template <class Stream>
class GHeldStream {
public:
    // Not explicit: constructors take streams, not holders.
    GHeldStream(Stream& borrowed) noexcept : mStream(&borrowed) {}
    GHeldStream(Stream* owned) : mOwned(owned), mStream(owned) {
        if (owned == nullptr) throw GSimpleException(GExceptionID::cInvalidParameter);
    }

    Stream& operator*() const noexcept { return *mStream; }
    Stream* operator->() const noexcept { return mStream; }

    /// Owns a clone of the stream. Throws GExceptionID::cGeneral when the clone is of another kind.
    GHeldStream Clone() const {
        std::unique_ptr<GInStream> clone(mStream->CreateClone());
        auto* const stream = dynamic_cast<Stream*>(clone.get());
        if (stream == nullptr) throw GSimpleException(GExceptionID::cGeneral);
        (void)clone.release();
        return GHeldStream(stream);
    }

private:
    std::unique_ptr<Stream> mOwned;
    Stream* mStream;
};
