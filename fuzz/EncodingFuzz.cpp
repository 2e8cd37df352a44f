// Text in every encoding into UTF-16 and back.
#include <iterator>

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GMacExpertEncoding.h"
#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "fuzz/FuzzInput.h"

namespace {

const GEncoding* ChooseEncoding(std::uint8_t choice) {
    const GEncoding* const encodings[] = {
        GUTF8Encoding::GetInstance(),     GUnicodeEncoding::GetInstance(),   GShiftJISEncoding::GetInstance(),
        GWinAnsiEncoding::GetInstance(),  GMacRomanEncoding::GetInstance(),  GPDFDocEncoding::GetInstance(),
        GStandardEncoding::GetInstance(), GMacExpertEncoding::GetInstance(), GASCIIEncoding::GetInstance()};
    return encodings[choice % std::size(encodings)];
}

// What reading gives, UTF-8 can say.
void TakeThroughUTF8(const GBuffer& bytes, const GEncoding* source) {
    const GUnicodeEncoding* unicode = GUnicodeEncoding::GetInstance();
    const GUTF8Encoding* utf8 = GUTF8Encoding::GetInstance();
    GBuffer units;
    GBuffer written;
    GBuffer again;
    source->ConvertTo(bytes, unicode, units);
    utf8->ConvertFrom(units, unicode, written);
    Require(utf8->ConvertTo(written, unicode, again) != GEncoding::cInvalid, "what was written can be read");
    Require(again == units, "units come back from UTF-8");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const GEncoding* source = ChooseEncoding(input.TakeByte());
    const GEncoding* target = ChooseEncoding(input.TakeByte());
    const GBuffer content = input.TakeRest();
    TakeThroughUTF8(content, source);
    const GString text(content, source);
    const GBuffer encoded = text.GetBuffer(target);
    const GBuffer again = GString(encoded, target).GetBuffer(target);
    Require(GString(again, target).GetBuffer(target) == again, "text that was converted once stays the same");
    text.GetHash();
    return 0;
}
