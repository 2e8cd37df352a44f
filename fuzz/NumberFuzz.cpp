// Numbers read from text, and written and read again.
#include <cmath>
#include <limits>

#include "fuzz/FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    FuzzInput input(bytes, count);
    const long precision = static_cast<signed char>(input.TakeByte());
    const GBuffer text = input.TakeRest();
    text.GetUInt32();
    const long long integer = text.GetInt64();
    Require(GString(integer).GetInt64() == integer, "an integer survives being written");
    const long narrow = text.GetInt32();
    Require(narrow >= std::numeric_limits<std::int32_t>::min() &&
                narrow <= std::numeric_limits<std::int32_t>::max(),
            "a 32-bit number has 32 bits");
    const double real = text.GetReal();
    Require(!std::isnan(real), "text gives no NaN");
    const GString fixed(real, precision);
    Require(!std::isfinite(real) || std::fabs(real) > 1e15 || std::fabs(fixed.GetReal() - real) <= 1.0,
            "a written real is near itself");
    return 0;
}
