#pragma once

#include <vector>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/streams/GHeldStream.h"
#include "framework/streams/GInStream.h"

/// GInterleavedInStream: the bytes of several sources in turn, as the planes of an image become pixels.
///
/// It ends with the first source that has nothing left when its turn begins. A source that ends inside
/// its turn is an unexpected end: GExceptionID::cUnexpectedEndOfData behind what came before, again at
/// each Read until Reset. A Read may give fewer bytes than asked.
class QUILLON_EXPORT GInterleavedInStream : public GInStream {
public:
    /// `unit` bytes of each source in turn. The sources are borrowed. No source, a null one and a unit
    /// below 1 throw GExceptionID::cInvalidParameter.
    GInterleavedInStream(const GTable<GInStream*>& sources, long unit);
    /// The same, taking ownership of the table and the sources in it.
    GInterleavedInStream(GTable<GInStream*>* sources, long unit);
    GInterleavedInStream(const GInterleavedInStream& other);  ///< owns clones of all sources
    GInterleavedInStream& operator=(const GInterleavedInStream&) = delete;
    ~GInterleavedInStream() override;

    GInterleavedInStream* CreateClone() const override;
    long Read(GBuffer& out, long maxBytes) override;
    void Reset() override;

private:
    struct Lane {
        long GetRest() const { return chunk.GetLength() - position; }

        GHeldStream<GInStream> source;
        GBuffer chunk;
        std::int32_t position = 0;
    };

    void Check() const;
    bool Refill(Lane& lane);

    std::vector<Lane> mLanes;
    std::int32_t mUnit;
    std::size_t mTurn = 0;
    std::int32_t mTaken = 0;  // of the turn's bytes
};
