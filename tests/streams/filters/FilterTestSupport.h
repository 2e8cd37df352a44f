#pragma once

#include <map>

#include "framework/streams/encodings/GASCII85Decode.h"
#include "framework/streams/encodings/GASCII85Encode.h"
#include "framework/streams/encodings/GHexDecode.h"
#include "framework/streams/encodings/GHexEncode.h"
#include "framework/streams/encodings/GLZWDecode.h"
#include "framework/streams/encodings/GLZWEncode.h"
#include "framework/streams/encodings/GRunLengthDecode.h"
#include "framework/streams/encodings/GRunLengthEncode.h"
#include "framework/streams/rows/GAddZeroes.h"
#include "framework/streams/rows/GBitConvert.h"
#include "framework/streams/rows/GLinePadder.h"
#include "framework/streams/rows/GPNGDecode.h"
#include "framework/streams/rows/GPNGEncode.h"
#include "tests/streams/StreamTestSupport.h"

/// Makes a filter that owns its source.
using FilterMaker = std::function<GInStream*(GInStream*)>;

template <class Filter, class... Parameters>
FilterMaker Maker(Parameters... parameters) {
    return [=](GInStream* source) { return new Filter(source, parameters...); };
}

inline const std::map<std::string, FilterMaker> cFilters = {
    {"hex", Maker<GHexEncode>()},
    {"hex lines", Maker<GHexEncode>(true)},
    {"unhex", Maker<GHexDecode>()},
    {"85", Maker<GASCII85Encode>()},
    {"85 lines", Maker<GASCII85Encode>(true)},
    {"un85", Maker<GASCII85Decode>()},
    {"runs", Maker<GRunLengthEncode>()},
    {"unruns", Maker<GRunLengthDecode>()},
    {"lzw", Maker<GLZWEncode>()},
    {"unlzw", Maker<GLZWDecode>()},
    {"lzw late", Maker<GLZWEncode>(0L)},
    {"unlzw late", Maker<GLZWDecode>(0L)},
    {"none 3", Maker<GPNGNoneEncode>(3L)},
    {"paeth 3", Maker<GPNGPaethEncode>(3L)},
    {"sub 3 x 3 x 4", Maker<GPNGSubEncode>(3L, 3L, 4L)},
    {"un-up 3", Maker<GPNGUpDecode>(3L)},
    {"un-any 3", Maker<GPNGOptiDecode>(3L)},
    {"3 zeros", Maker<GAddZeroes>(3LL)},
    {"pad 3 to 5", Maker<GLinePadder>(3L, 5L, 0x78L)},
    {"pad 3 to 3", Maker<GLinePadder>(3L, 3L)},
    {"expand 1 to 8", Maker<GBitExpander>(3L, 1L, 1L, 8L)},
    {"expand 2 to 4", Maker<GBitExpander>(3L, 1L, 2L, 4L)},
    {"expand 8 to 16", Maker<GBitExpander>(1L, 3L, 8L, 16L)},
    {"compress 8 to 4", Maker<GBitCompressor>(3L, 1L, 8L, 4L)},
    {"compress 16 to 1", Maker<GBitCompressor>(2L, 1L, 16L, 1L)},
};

/// The source behind filters of these names, the first one next to it; owns all.
inline std::unique_ptr<GInStream> ChainOf(const std::vector<const char*>& names, GInStream* source) {
    for (const char* const name : names) source = cFilters.at(name)(source);
    return std::unique_ptr<GInStream>(source);
}

/// One for each tag, in their order.
inline std::vector<FilterMaker> PNGEncoders(long columns, long colours, long bits) {
    return {Maker<GPNGNoneEncode>(columns, colours, bits), Maker<GPNGSubEncode>(columns, colours, bits),
            Maker<GPNGUpEncode>(columns, colours, bits), Maker<GPNGAvgEncode>(columns, colours, bits),
            Maker<GPNGPaethEncode>(columns, colours, bits)};
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
    outcome.failure = ThrownBy(read);
    const std::size_t length = outcome.bytes.size();
    if (ThrownBy(read) != outcome.failure) outcome.failure = -1;
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

/// Expects the same in every size, behind a reset and from a clone, of each stream that `make` makes.
template <class Make>
void ExpectEverywhere(const Make& make, const Outcome& expected) {
    for (const long size : {1L, 7L, 4096L, cAll}) {
        const std::unique_ptr<GInStream> stream(make());
        ASSERT_EQ(OutcomeOf(*stream, size), expected) << "pieces of " << size;
        stream->Reset();
        ASSERT_EQ(OutcomeOf(*stream, size), expected) << "behind a reset";
    }
    const long length = static_cast<long>(expected.bytes.size());
    for (long position = 0; position <= length; position += 1 + length / 60) {
        const std::unique_ptr<GInStream> stream(make());
        ASSERT_EQ(stream->Skip(position), position);
        const std::unique_ptr<GInStream> clone(stream->CreateClone());
        const Outcome rest = {expected.bytes.substr(static_cast<std::size_t>(position)), expected.failure};
        ASSERT_EQ(OutcomeOf(*stream, 3), rest);
        ASSERT_EQ(OutcomeOf(*clone, cAll), rest);
    }
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
