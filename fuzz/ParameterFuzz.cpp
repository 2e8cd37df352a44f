// Texts with markers, and parameters that look like markers.
#include "framework/core/containers/GTable.h"
#include "framework/core/errors/GLngString.h"
#include "fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const GString first = input.TakeText();
    const GString second = input.TakeText();
    const GString marked = input.TakeRestAsText();
    marked.EnsureUnicode();  // half a unit at the end is not part of the text

    GString text = marked;
    text.SubstituteParams(first, second);
    GString incomplete = marked;
    GTable<const GString*> parameters;
    parameters.Append(nullptr);
    parameters.Append(&second);
    incomplete.SubstituteParams(parameters);
    GString untouched = marked;
    untouched.SubstituteParams(GTable<const GString*>());
    Require(untouched == marked, "without parameters all markers stay");

    GString own = marked;
    own.SubstituteParams(own, own);
    GString copied = marked;
    Require(own == copied.SubstituteParams(marked, marked), "a text may be its own parameter");

    GLngString forPeople(marked);
    forPeople.AddParam(first).AddParam(second);
    Require(marked.IsEmpty() || forPeople.GetString() == text, "both ways put the parameters in alike");
    return 0;
}
