#pragma once

#include "framework/streams/GHeldStream.h"
#include "framework/streams/GInStream.h"
#include "fuzz/FuzzInput.h"

/// FilterKinds: every pair of an encoder and its decoder, by name; filters without a counterpart are
/// decoders.
class FilterKinds {
public:
    using Source = GHeldStream<GInStream>;
    struct Parameters {
        long columns;
        long colours;
        long bits;
        long otherBits;
    };
    struct Pair {
        const char* name;
        GInStream* (*makeEncoder)(Source source, const Parameters& parameters);  ///< may be null
        GInStream* (*makeDecoder)(Source source, const Parameters& parameters);
        bool hasRows = false;  ///< the decoder finds a short last row's end unexpected
    };

    /// Picks a pair and its parameters. The environment variable FILTER names the only pair to pick, for
    /// a long run of one.
    explicit FilterKinds(FuzzInput& input);

    const Pair& GetPair() const { return mPair; }
    bool HasEncoder() const { return mPair.makeEncoder != nullptr; }
    GInStream* MakeEncoder(Source source) const { return mPair.makeEncoder(std::move(source), mParameters); }
    GInStream* MakeDecoder(Source source) const { return mPair.makeDecoder(std::move(source), mParameters); }

private:
    const Pair& mPair;
    Parameters mParameters;
};

/// A source that delivers a few bytes at once, another count each time.
class PieceSource : public GInStream {
public:
    explicit PieceSource(GBuffer data) : mData(std::move(data)) {}

    GInStream* CreateClone() const override { return new PieceSource(*this); }
    long Read(GBuffer& out, long maxBytes) override;
    void Reset() override { mPosition = 0; }

private:
    GBuffer mData;
    long mPosition = 0;
};

/// What a stream delivers to its end or failure, in pieces of that size, or of sizes that vary by the
/// bytes delivered when it is 0.
struct FilterOutcome {
    FilterOutcome(GInStream& stream, long size);

    bool operator==(const FilterOutcome& other) const {
        return bytes == other.bytes && failure == other.failure;
    }

    GBuffer bytes;
    long failure = 0;
    bool isCut = false;  ///< there was more than is worth looking at
};
