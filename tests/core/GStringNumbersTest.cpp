#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "framework/core/GString.h"
#include "tests/core/TextForTests.h"

// How numbers are written and read is the buffer's; here is what a string makes of its arguments.

namespace {

constexpr double cInfinity = std::numeric_limits<double>::infinity();
constexpr double cNaN = std::numeric_limits<double>::quiet_NaN();
const long cBeyond32Bits = static_cast<long>(4294967301LL);

GString WithDigits(long value, long digits) {
    GString text("old");
    text.SetInt(value, digits);
    return text;
}

GString WithHighPrecision(double value) {
    GString text("old");
    text.SetWithHighPrecision(value);
    return text;
}

TEST(GStringNumbers, AreWritten) {
    const std::string largest = BytesOf(GBuffer(std::numeric_limits<double>::max()));
    const std::tuple<const char*, GString, std::string> rows[] = {
        {"int", GString(std::numeric_limits<int>::min()), "-2147483648"},
        {"unsigned", GString(4294967295u), "4294967295"},
        {"long", GString(-2147483647L), "-2147483647"},
        {"unsigned long", GString(4294967295UL), "4294967295"},
        {"long of 64 bits", GString(cBeyond32Bits), "5"},
        {"unsigned long of 64 bits", GString(static_cast<unsigned long>(cBeyond32Bits)), "5"},
        {"64 bits", GString(-9223372036854775807LL - 1), "-9223372036854775808"},
        {"unsigned 64 bits", GString(9223372036854775807ULL), "9223372036854775807"},
        {"unsigned 64 bits, printed as signed", GString(9223372036854775808ULL), "-9223372036854775808"},
        {"least digits", WithDigits(-7, 3), "-007"},
        {"more than the least digits", WithDigits(1234, 3), "1234"},
        {"no digits of nothing", WithDigits(0, 0), ""},
        {"least digits of a long of 64 bits", WithDigits(cBeyond32Bits, 3), "005"},
        {"most digits", WithDigits(1, 0x7FFFFFFF), std::string(1021, '0') + "1"},
        {"real", GString(2.5), "2.5"},
        {"whole real", GString(3.0), "3"},
        {"small real", GString(-0.000001), "-0.000001"},
        {"smaller real", GString(1e-7), "0"},
        {"infinity", GString(cInfinity), largest},
        {"negative infinity", GString(-cInfinity), "-" + largest},
        {"no number", GString(cNaN), "nan"},
        {"format", GString(1.5, GBuffer("%8.2f")), "    1.5"},
        {"precision", GString(1.0 / 3, 4L), "0.3333"},
        {"precision of nothing", GString(12.0, 0L), "12"},
        {"precision beyond 16", GString(1.0 / 3, 20L), "0.3333333333333333"},
        {"negative precision", GString(1.0 / 3, -1L), "0.3333333333333333"},
        {"precision of infinity", GString(cInfinity, 0x7FFFFFFFL), largest},
        {"precision of no number", GString(-cNaN, 3L), "-nan"},
        {"high precision", WithHighPrecision(1.0 / 3), "0.333333333333333"},
    };
    for (const auto& [what, number, text] : rows) {
        EXPECT_EQ(BytesOf(number.GetEncodedBuffer()), text) << what;
        EXPECT_EQ(BytesOf(number.GetEncodingName()), "ASCIIEncoding") << what;
    }
}

TEST(GStringNumbers, AreReadFromText) {
    const std::tuple<const char16_t*, std::int32_t, std::uint32_t, long long, double> rows[] = {
        {u"", 0, 0, 0, 0},
        {u"x", 0, 0, 0, 0},
        {u"  -12x", -12, 4294967284u, -12, -12},
        {u"2147483648", 2147483647, 2147483648u, 2147483648LL, 2147483648.0},
        {u"-2147483649", -2147483647 - 1, 2147483647u, -2147483649LL, -2147483649.0},
        {u"4294967297", 2147483647, 1, 4294967297LL, 4294967297.0},
        {u"1.5e3", 1, 1, 1, 1500},
        {u"\b12", 0, 12, 12, 12},
        {u"\f12", 12, 0, 0, 0},
        {u"12\u0661", 12, 12, 12, 12},
        {u"\uFF11", 0, 0, 0, 0},
    };
    for (const auto& [units, int32, uint32, int64, real] : rows) {
        const GString text = StringOf(units);
        SCOPED_TRACE(testing::PrintToString(std::u16string(units)));
        EXPECT_EQ(text.GetInt32(), int32);
        EXPECT_EQ(text.GetUInt32(), uint32);
        EXPECT_EQ(text.GetInt64(), int64);
        EXPECT_EQ(text.GetReal(), real);
    }
}

}  // namespace
