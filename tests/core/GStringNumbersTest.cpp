#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <tuple>

#include "framework/core/GString.h"
#include "tests/core/TextForTests.h"

namespace {

constexpr double cInfinity = std::numeric_limits<double>::infinity();
constexpr double cNaN = std::numeric_limits<double>::quiet_NaN();

std::string TextOf(const GString& text) {
    return BytesOf(text.GetEncodedBuffer());
}

std::string Print(const char* format, double value) {
    char text[400];
    return std::string(text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, value)));
}

// What is left of a number when its trailing zeros, and then a trailing point, are dropped.
std::string Strip(std::string text) {
    if (text.find('.') == std::string::npos) return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

TEST(GStringNumbers, IntegersInDecimal) {
    const auto beyond32Bits = static_cast<long>(4294967301LL);
    const std::pair<GString, const char*> rows[] = {
        {GString(0), "0"},
        {GString(-7), "-7"},
        {GString(std::numeric_limits<int>::min()), "-2147483648"},
        {GString(4294967295u), "4294967295"},
        {GString(2147483647L), "2147483647"},
        {GString(4294967295UL), "4294967295"},
        {GString(beyond32Bits), "5"},
        {GString(static_cast<unsigned long>(beyond32Bits)), "5"},
        {GString(-9223372036854775807LL - 1), "-9223372036854775808"},
        {GString(9223372036854775807ULL), "9223372036854775807"},
        {GString(9223372036854775808ULL), "-9223372036854775808"},  // printed as signed
        {GString(18446744073709551615ULL), "-1"},
    };
    for (const auto& [number, text] : rows) EXPECT_EQ(TextOf(number), text);
    const std::tuple<long, long, const char*> padded[] = {
        {7, 3, "007"}, {1234, 3, "1234"},       {-7, 3, "-007"}, {0, 0, ""},
        {0, 1, "0"},   {7, 12, "000000000007"}, {7, -1, "7"},    {beyond32Bits, 3, "005"}};
    for (const auto& [value, digits, expected] : padded) {
        GString text("old");
        text.SetInt(value, digits);
        EXPECT_EQ(TextOf(text), expected) << value << ", " << digits;
    }
    GString text;
    text.SetInt(1, 0x7FFFFFFF);
    EXPECT_EQ(text.GetLength(), 1022);
}

TEST(GStringNumbers, Reals) {
    const std::string largest = Print("%.0f", std::numeric_limits<double>::max());
    EXPECT_EQ(largest.size(), 309u);
    const std::pair<double, std::string> plain[] = {{2.5, "2.5"},
                                                    {3.0, "3"},
                                                    {-0.000001, "-0.000001"},
                                                    {0.0, "0"},
                                                    {-0.0, "-0"},
                                                    {100, "100"},
                                                    {0.1, "0.1"},
                                                    {1e-7, "0"},
                                                    {-1e-7, "-0"},
                                                    {123456.789, "123456.789"},
                                                    {cInfinity, largest},
                                                    {-cInfinity, "-" + largest},
                                                    {cNaN, "nan"}};
    for (const auto& [value, text] : plain) EXPECT_EQ(TextOf(GString(value)), text);
    const std::tuple<double, const char*, const char*> formatted[] = {
        {2.5, "%.3f", "2.5"},      {2.0, "%.3f", "2"},     {2.0, "%.0f", "2"},
        {1.5, "%8.2f", "    1.5"}, {100.0, "%.0f", "100"}, {1234.5, "%e", "1.234500e+03"},
        {0.0001, "%g", "0.0001"}};
    for (const auto& [value, format, text] : formatted)
        EXPECT_EQ(TextOf(GString(value, GBuffer(format))), text) << format;
    const std::tuple<double, long, std::string> precise[] = {{1.0 / 3, 20, "0.3333333333333333"},
                                                             {1.0 / 3, -1, "0.3333333333333333"},
                                                             {1.0 / 3, 16, "0.3333333333333333"},
                                                             {1.0 / 3, 4, "0.3333"},
                                                             {0.1, 3, "0.1"},
                                                             {12.0, 0, "12"},
                                                             {2.5, 0, "2"},
                                                             {3.5, 0, "4"},
                                                             {1e22, 2, "10000000000000000000000"},
                                                             {-0.5, 1, "-0.5"},
                                                             {cNaN, 3, "nan"},
                                                             {-cNaN, 3, "-nan"},
                                                             {cInfinity, 0x7FFFFFFF, largest}};
    for (const auto& [value, precision, text] : precise)
        EXPECT_EQ(TextOf(GString(value, precision)), text) << precision;
    GString text;
    text.SetWithHighPrecision(1.0 / 3);
    EXPECT_EQ(TextOf(text), "0.333333333333333");
}

TEST(GStringNumbers, RandomNumbersPrintAsThePrinterOfTheCLibraryDoes) {
    std::mt19937_64 random(20021);
    for (int i = 0; i < 20000; ++i) {
        const double value = static_cast<double>(static_cast<std::int64_t>(random())) /
                             static_cast<double>(std::uint64_t{1} << (random() % 64));
        ASSERT_EQ(TextOf(GString(value)), Strip(Print("%f", value))) << value;
        ASSERT_EQ(TextOf(GString(value, 9L)), Strip(Print("%.9f", value))) << value;
        const auto integer = static_cast<std::int32_t>(random());
        ASSERT_EQ(TextOf(GString(integer)), std::to_string(integer));
        ASSERT_EQ(GString(integer).GetInt32(), integer);
        const auto wide = static_cast<long long>(random());
        ASSERT_EQ(TextOf(GString(wide)), std::to_string(wide));
        ASSERT_EQ(GString(wide).GetInt64(), wide);
    }
}

TEST(GStringNumbers, AreReadFromText) {
    const std::tuple<const char16_t*, std::int32_t, std::uint32_t, long long, double> rows[] = {
        {u"", 0, 0, 0, 0},
        {u"x", 0, 0, 0, 0},
        {u"12", 12, 12, 12, 12},
        {u"  -12x", -12, 4294967284u, -12, -12},
        {u"+7", 7, 7, 7, 7},
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
