// Separated lists: any bytes split, and what was merged splits into the same elements.
#include "framework/core/GBufferSupport.h"
#include "framework/core/GTable.h"
#include "fuzz/FuzzInput.h"

namespace {

bool AreSame(const GTable<GBuffer>& a, const GTable<GBuffer>& b) {
    if (a.GetCount() != b.GetCount()) return false;
    for (long i = 0; i < a.GetCount(); ++i) {
        if (a[i] != b[i]) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput whole(bytes, count);
    GTable<GBuffer> fields;
    GBufferSupport::SplitSeparatedBuffer(whole.TakeRest(), fields);

    FuzzInput input(bytes, count);
    GTable<GBuffer> elements;
    while (!input.IsEmpty()) elements.Append(input.TakeBytes());
    GBuffer merged;
    GBufferSupport::MergeIntoSeparatedBuffer(elements, merged);
    GTable<GBuffer> back;
    GBufferSupport::SplitSeparatedBuffer(merged, back);
    const bool isOneEmptyElement = elements.GetCount() == 1 && elements[0].IsEmpty();
    Require(isOneEmptyElement || AreSame(elements, back), "a merged list splits into its elements");
    return 0;
}
