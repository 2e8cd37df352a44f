// Made-up bytes through every decoder: in one piece, in pieces of many sizes, behind a reset, and from a
// clone; and what a decoder has not used is still there.
#include <memory>

#include "framework/streams/GMemoryInStream.h"
#include "fuzz/FilterKinds.h"

namespace {

void CheckRest(const FilterKinds& kind, const GBuffer& data, long used, const FilterOutcome& whole) {
    const GBuffer head = data.GetSubBuffer(0, used);
    const std::unique_ptr<GInStream> decoder(kind.MakeDecoder(new GMemoryInStream(head)));
    Require(FilterOutcome(*decoder, 1L << 20) == whole, "what follows the end mark does not matter");
}

void CheckClone(GInStream& decoder, const FilterOutcome& whole) {
    decoder.Reset();
    const long half = whole.bytes.GetLength() / 2;
    Require(decoder.Skip(half) == half, "what is there can be skipped");
    const std::unique_ptr<GInStream> clone(decoder.CreateClone());
    const FilterOutcome rest(*clone, 1L << 20);
    Require(rest.bytes == whole.bytes.GetSubBuffer(half) && rest.failure == whole.failure,
            "a clone goes on where the original stands");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const FilterKinds kind(input);
    const GBuffer data = input.TakeRest();
    GMemoryInStream source(data);
    const std::unique_ptr<GInStream> decoder(kind.MakeDecoder(source));
    const FilterOutcome whole(*decoder, 1L << 20);
    Require(whole.failure == 0 || whole.failure == 2452 || whole.failure == 2453 || whole.failure == 2457,
            "a failure says what is wrong with the data");
    if (whole.failure != 0) Require(FilterOutcome(*decoder, 1).failure == whole.failure, "it stays");
    const std::unique_ptr<GInStream> pieces(kind.MakeDecoder(new PieceSource(data)));
    Require(FilterOutcome(*pieces, 0) == whole, "the sizes of reads change nothing");
    if (whole.isCut) return 0;
    if (whole.failure == 0) CheckRest(kind, data, source.GetPosition(), whole);
    CheckClone(*decoder, whole);
    return 0;
}
