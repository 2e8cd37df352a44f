// Separated lists: any bytes split, what was merged splits into the same elements, and what a text was
// split into joins to the text again.
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GBufferSupport.h"
#include "framework/core/text/GStringSupport.h"
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

    FuzzInput texts(bytes, count);
    const GString separator = texts.TakeText();  // half a unit alone is bytes, but no text
    const GString text = texts.TakeRestAsText();
    GTable<GString> parts;
    GStringSupport::SeparatedStringToStringTable(text, separator, parts, true);
    GString joined;
    GStringSupport::StringTableToSeparatedString(parts, separator, joined);
    Require(joined == text, "the parts of a text join to the text");
    return 0;
}
