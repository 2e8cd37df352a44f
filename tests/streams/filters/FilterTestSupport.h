#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "framework/streams/GInStream.h"
#include "tests/streams/StreamTestSupport.h"

/// Makes a filter that owns its source.
using FilterMaker = std::function<GInStream*(GInStream*)>;

template <class Filter, class... Parameters>
FilterMaker Maker(Parameters... parameters) {
    return [=](GInStream* source) { return new Filter(source, parameters...); };
}

/// What a stream delivers up to its end, or up to its failure: a number, 0 for none.
struct Outcome {
    std::string bytes;
    long failure = 0;

    bool operator==(const Outcome&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    out << outcome.bytes.size() << " bytes, failure " << outcome.failure << ": ";
    for (const char byte : outcome.bytes.substr(0, 40)) out << (byte & 0xFF) << ' ';
    return out;
}

constexpr long cAll = 0x7FFFFFFF;

/// Reads in pieces of `size` to the end or the failure, which must stay.
inline Outcome OutcomeOf(GInStream& stream, long size) {
    Outcome outcome;
    GBuffer piece;
    const auto read = [&] {
        while (stream.Read(piece, size) > 0) outcome.bytes += BytesOf(piece);
    };
    outcome.failure = FailureOf(read);
    const std::size_t length = outcome.bytes.size();
    if (FailureOf(read) != outcome.failure) outcome.failure = -1;
    if (outcome.bytes.size() != length) outcome.bytes += "(and more behind the end)";
    return outcome;
}

inline std::unique_ptr<GInStream> FilterOf(const FilterMaker& make, const std::string& input,
                                           long sourcePiece = cAll) {
    return std::unique_ptr<GInStream>(make(new PieceStream(input, sourcePiece)));
}

inline Outcome OutcomeOf(const FilterMaker& make, const std::string& input) {
    return OutcomeOf(*FilterOf(make, input), cAll);
}

/// Bytes that compress in every way: runs, repeats of longer pieces, and nothing to be found.
inline std::string MixedBytes(std::size_t length, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes;
    while (bytes.size() < length) {
        const std::size_t count = 1 + random() % 300;
        const unsigned kind = random() % 4;
        if (kind == 0) bytes.append(count, static_cast<char>(random()));
        if (kind == 1) bytes.append(count, '\0');
        for (std::size_t i = 0; kind == 2 && i < count; ++i) bytes += static_cast<char>(random());
        if (kind == 3 && !bytes.empty()) bytes += bytes.substr(random() % bytes.size(), count);
    }
    return bytes.substr(0, length);
}
