// Text in every encoding into UTF-16 and back.
#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GMacExpertEncoding.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GPDFDocEncoding.h"
#include "framework/core/GShiftJISEncoding.h"
#include "framework/core/GStandardEncoding.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GUnicodeEncoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "fuzz/FuzzInput.h"

namespace {

const GEncoding* ChooseEncoding(std::uint8_t choice) {
    switch (choice % 9) {
        case 0:
            return GUTF8Encoding::GetInstance();
        case 1:
            return GUnicodeEncoding::GetInstance();
        case 2:
            return GShiftJISEncoding::GetInstance();
        case 3:
            return GWinAnsiEncoding::GetInstance();
        case 4:
            return GMacRomanEncoding::GetInstance();
        case 5:
            return GPDFDocEncoding::GetInstance();
        case 6:
            return GStandardEncoding::GetInstance();
        case 7:
            return GMacExpertEncoding::GetInstance();
        default:
            return GASCIIEncoding::GetInstance();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const GEncoding* source = ChooseEncoding(input.TakeByte());
    const GEncoding* target = ChooseEncoding(input.TakeByte());
    const GString text(input.TakeRest(), source);
    const GBuffer encoded = text.GetBuffer(target);
    const GBuffer again = GString(encoded, target).GetBuffer(target);
    Require(GString(again, target).GetBuffer(target) == again, "text that was converted once stays the same");
    text.GetHash();
    return 0;
}
