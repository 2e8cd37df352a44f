// What documents say of themselves, in made-up bytes: read to an end, and the same from any source.
#include "framework/streams/GMemoryInStream.h"
#include "framework/streams/documents/GPostScriptComments.h"
#include "fuzz/FilterKinds.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    const GBuffer data = FuzzInput(bytes, count).TakeRest();
    const GPostScriptComments one = GPostScriptComments::Read(GMemoryInStream(data));
    const GPostScriptComments other = GPostScriptComments::Read(PieceSource(data));
    Require(one.title == other.title && one.pages == other.pages && one.copies == other.copies &&
                one.isComplete == other.isComplete && one.isPostScript == other.isPostScript,
            "the source does not matter");
    Require(one.isPostScript || (one.title.IsEmpty() && one.pages < 0 && one.copies < 0),
            "what is no PostScript says nothing");
    return 0;
}
