#pragma once

#include <memory>

#include "framework/core/GExport.h"
#include "framework/streams/GInStream.h"

/// GHeldStreamCheck: what does not depend on the kind of stream.
struct QUILLON_EXPORT GHeldStreamCheck {
    /// Throws GExceptionID::cInvalidParameter for null.
    static void RequireStream(const void* stream);
    /// Throws GExceptionID::cGeneral for null.
    static void RequireKind(const void* stream);
};

/// GHeldStream: the stream that another one works on, borrowed or owned.
///
/// It is made on the spot from what a constructor is given: a reference is borrowed and must outlive the
/// holder, a pointer is owned from then on, and null throws GExceptionID::cInvalidParameter.
template <class Stream>
class GHeldStream {
public:
    // Not explicit: constructors take streams, not holders.
    ///@{ Borrows the reference, or owns the pointer; null throws GExceptionID::cInvalidParameter.
    GHeldStream(Stream& borrowed) noexcept : mStream(&borrowed) {}
    GHeldStream(Stream* owned) : mOwned(owned), mStream(owned) { GHeldStreamCheck::RequireStream(owned); }
    ///@}

    ///@{ The stream; valid as long as the holder.
    Stream& operator*() const noexcept { return *mStream; }
    Stream* operator->() const noexcept { return mStream; }
    ///@}

    /// Owns a clone of the stream. Throws GExceptionID::cGeneral when the clone is of another kind.
    GHeldStream Clone() const {
        std::unique_ptr<GInStream> clone(mStream->CreateClone());
        auto* const stream = dynamic_cast<Stream*>(clone.get());
        GHeldStreamCheck::RequireKind(stream);
        (void)clone.release();
        return GHeldStream(stream);
    }

private:
    std::unique_ptr<Stream> mOwned;
    Stream* mStream;
};
