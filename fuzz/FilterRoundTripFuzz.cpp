// What an encoder writes, in pieces of many sizes, its decoder reads.
#include <memory>

#include "framework/streams/GMemoryInStream.h"
#include "fuzz/FilterKinds.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const FilterKinds kind(input);
    if (!kind.HasEncoder()) return 0;
    const GBuffer data = input.TakeRest();
    const std::unique_ptr<GInStream> encoder(kind.MakeEncoder(new GMemoryInStream(data)));
    const FilterOutcome whole(*encoder, 1L << 20);
    const std::unique_ptr<GInStream> pieces(kind.MakeEncoder(new PieceSource(data)));
    Require(FilterOutcome(*pieces, 0) == whole && whole.failure == 0, "the sizes of reads change nothing");
    const std::unique_ptr<GInStream> decoder(kind.MakeDecoder(new PieceSource(whole.bytes)));
    const FilterOutcome back(*decoder, 0);
    Require(back.bytes == data, "what was encoded is decoded");
    Require(back.failure == 0 || (kind.GetPair().hasRows && back.failure == 2453),
            "nothing is wrong with it");
    return 0;
}
