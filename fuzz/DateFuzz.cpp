// Dates as page-description documents write them.
#include "framework/core/time/GDateTime.h"
#include "fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const GBuffer text = input.TakeRest();
    GDateTime date;
    const long result = date.SetFromPDFDateTime(text);
    Require(result == GDateTime::CheckPDFDateTime(text), "checking and reading agree");
    date.Normalize();
    GBuffer written;
    date.GetAsPDFDateTime(written);
    GString forPeople;
    date.GetDateAsString(forPeople, true, GString("dddd, d MMMM yyyy HH:mm:ss"));
    return 0;
}
