#include "fuzz/FilterKinds.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "framework/streams/cipher/GDecryptInStream.h"
#include "framework/streams/encodings/GASCII85Decode.h"
#include "framework/streams/encodings/GASCII85Encode.h"
#include "framework/streams/encodings/GHexDecode.h"
#include "framework/streams/encodings/GHexEncode.h"
#include "framework/streams/encodings/GLZWDecode.h"
#include "framework/streams/encodings/GLZWEncode.h"
#include "framework/streams/encodings/GRunLengthDecode.h"
#include "framework/streams/encodings/GRunLengthEncode.h"
#include "framework/streams/rows/GBitConvert.h"
#include "framework/streams/rows/GLinePadder.h"
#include "framework/streams/rows/GPNGDecode.h"
#include "framework/streams/rows/GPNGEncode.h"

namespace {

using Source = FilterKinds::Source;
using Parameters = FilterKinds::Parameters;

constexpr long cMostBytes = 1L << 20;  // more tells nothing new

template <class Filter, auto... cArguments>
GInStream* Make(Source source, const Parameters&) {
    return new Filter(std::move(source), cArguments...);
}

template <class Filter>
GInStream* MakeRows(Source source, const Parameters& parameters) {
    return new Filter(std::move(source), parameters.columns, parameters.colours, parameters.bits);
}

template <class Filter>
GInStream* MakeBits(Source source, const Parameters& parameters) {
    const auto [least, most] = std::minmax(parameters.bits, parameters.otherBits);
    const bool grows = std::is_same_v<Filter, GBitExpander>;
    return new Filter(std::move(source), parameters.columns, parameters.colours, grows ? least : most,
                      grows ? most : least);
}

GInStream* MakePadder(Source source, const Parameters& parameters) {
    return new GLinePadder(std::move(source), parameters.columns, parameters.columns + parameters.colours);
}

GInStream* MakeDecryptor(Source source, const Parameters& parameters) {
    return new GDecryptInStream(
        std::move(source),
        GBuffer("0123456789abcdef0123456789abcdef").GetSubBuffer(0, parameters.colours % 2 == 0 ? 16 : 32));
}

constexpr FilterKinds::Pair cPairs[] = {
    {"hex", &Make<GHexEncode>, &Make<GHexDecode>},
    {"hex lines", &Make<GHexEncode, true>, &Make<GHexDecode>},
    {"85", &Make<GASCII85Encode>, &Make<GASCII85Decode>},
    {"85 lines", &Make<GASCII85Encode, true>, &Make<GASCII85Decode>},
    {"runs", &Make<GRunLengthEncode>, &Make<GRunLengthDecode>},
    {"lzw", &Make<GLZWEncode>, &Make<GLZWDecode>},
    {"lzw late", &Make<GLZWEncode, 0L>, &Make<GLZWDecode, 0L>},
    {"none", &MakeRows<GPNGNoneEncode>, &MakeRows<GPNGNoneDecode>, true},
    {"sub", &MakeRows<GPNGSubEncode>, &MakeRows<GPNGSubDecode>, true},
    {"up", &MakeRows<GPNGUpEncode>, &MakeRows<GPNGUpDecode>, true},
    {"average", &MakeRows<GPNGAvgEncode>, &MakeRows<GPNGAvgDecode>, true},
    {"paeth", &MakeRows<GPNGPaethEncode>, &MakeRows<GPNGPaethDecode>, true},
    {"any", nullptr, &MakeRows<GPNGOptiDecode>, true},
    {"cipher", nullptr, &MakeDecryptor},
    {"expand", nullptr, &MakeBits<GBitExpander>},
    {"compress", nullptr, &MakeBits<GBitCompressor>},
    {"pad", nullptr, &MakePadder},
};

const FilterKinds::Pair& PickPair(std::uint8_t byte) {
    static const char* const sName = std::getenv("FILTER");
    if (sName == nullptr) return cPairs[byte % std::size(cPairs)];
    const auto* const pair = std::find_if(std::begin(cPairs), std::end(cPairs), [](const auto& candidate) {
        return std::strcmp(candidate.name, sName) == 0;
    });
    Require(pair != std::end(cPairs), "FILTER names a pair");
    return *pair;
}

}  // namespace

FilterKinds::FilterKinds(FuzzInput& input) : mPair(PickPair(input.TakeByte())) {
    mParameters.columns = 1 + input.TakeByte();
    mParameters.colours = 1 + input.TakeByte() % 9;
    const std::uint8_t bits = input.TakeByte();
    mParameters.bits = 1L << bits % 5;
    mParameters.otherBits = 1L << bits / 5 % 5;
}

long PieceSource::Read(GBuffer& out, long maxBytes) {
    out = mData.GetSubBuffer(mPosition, std::min(maxBytes, 1 + mPosition * 5 % 23));
    mPosition += out.GetLength();
    return out.IsEmpty() ? -1 : out.GetLength();
}

FilterOutcome::FilterOutcome(GInStream& stream, long size) {
    GBuffer piece;
    try {
        while (bytes.GetLength() < cMostBytes) {
            const long wanted = size > 0 ? size : 1 + bytes.GetLength() * 7 % 601;
            if (stream.Read(piece, wanted) < 0) return;
            bytes += piece;
        }
        bytes.SetLength(cMostBytes);
        isCut = true;
    } catch (const GException& exception) {
        failure = exception.GetExceptionID();
    }
}
