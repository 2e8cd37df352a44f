#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>

#include "framework/core/GString.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TextForTests.h"

namespace {

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
    EXPECT_EQ(TextOf(GString(0)), "0");
    EXPECT_EQ(TextOf(GString(-7)), "-7");
    EXPECT_EQ(TextOf(GString(std::numeric_limits<int>::min())), "-2147483648");
    EXPECT_EQ(TextOf(GString(4294967295u)), "4294967295");
    EXPECT_EQ(TextOf(GString(2147483647L)), "2147483647");
    EXPECT_EQ(TextOf(GString(4294967295UL)), "4294967295");
    EXPECT_EQ(TextOf(GString(-9223372036854775807LL - 1)), "-9223372036854775808");
    EXPECT_EQ(TextOf(GString(9223372036854775807ULL)), "9223372036854775807");
    EXPECT_EQ(TextOf(GString(9223372036854775808ULL)), "-9223372036854775808") << "printed as signed";
    EXPECT_EQ(TextOf(GString(18446744073709551615ULL)), "-1");
}

TEST(GStringNumbers, ALongHas32Bits) {
    const auto wide = static_cast<long>(4294967301LL);
    EXPECT_EQ(TextOf(GString(wide)), "5");
    EXPECT_EQ(TextOf(GString(static_cast<unsigned long>(wide))), "5");
    GString text;
    text.SetInt(wide, 3);
    EXPECT_EQ(TextOf(text), "005");
}

TEST(GStringNumbers, MinimalDigits) {
    const struct {
        long value;
        long digits;
        const char* text;
    } rows[] = {{7, 3, "007"}, {1234, 3, "1234"},       {-7, 3, "-007"}, {0, 0, ""},
                {0, 1, "0"},   {7, 12, "000000000007"}, {7, -1, "7"}};
    for (const auto& row : rows) {
        GString text("old");
        text.SetInt(row.value, row.digits);
        EXPECT_EQ(TextOf(text), row.text) << row.value << ", " << row.digits;
    }
}

TEST(GStringNumbers, RealsWithoutFormat) {
    const struct {
        double value;
        const char* text;
    } rows[] = {{2.5, "2.5"},
                {3.0, "3"},
                {-0.000001, "-0.000001"},
                {0.0, "0"},
                {-0.0, "-0"},
                {100.0, "100"},
                {0.1, "0.1"},
                {1e-7, "0"},
                {-1e-7, "-0"},
                {123456.789, "123456.789"}};
    for (const auto& row : rows) EXPECT_EQ(TextOf(GString(row.value)), row.text);
    const std::string largest = Print("%.0f", std::numeric_limits<double>::max());
    EXPECT_EQ(largest.size(), 309u);
    EXPECT_EQ(TextOf(GString(std::numeric_limits<double>::infinity())), largest);
    EXPECT_EQ(TextOf(GString(-std::numeric_limits<double>::infinity())), "-" + largest);
    EXPECT_EQ(TextOf(GString(1.0)), "1");
}

TEST(GStringNumbers, RealsByFormat) {
    const struct {
        double value;
        const char* format;
        const char* text;
    } rows[] = {{2.5, "%.3f", "2.5"},      {2.0, "%.3f", "2"},     {2.0, "%.0f", "2"},
                {1.5, "%8.2f", "    1.5"}, {100.0, "%.0f", "100"}, {1234.5, "%e", "1.234500e+03"},
                {0.0001, "%g", "0.0001"}};
    for (const auto& row : rows)
        EXPECT_EQ(TextOf(GString(row.value, GBuffer(row.format))), row.text) << row.format;
}

TEST(GStringNumbers, RealsByPrecision) {
    const struct {
        double value;
        long precision;
        const char* text;
    } rows[] = {{1.0 / 3, 20, "0.3333333333333333"},
                {1.0 / 3, -1, "0.3333333333333333"},
                {1.0 / 3, 16, "0.3333333333333333"},
                {1.0 / 3, 4, "0.3333"},
                {0.1, 3, "0.1"},
                {12.0, 0, "12"},
                {2.5, 0, "2"},
                {3.5, 0, "4"},
                {1e22, 2, "10000000000000000000000"},
                {-0.5, 1, "-0.5"}};
    for (const auto& row : rows)
        EXPECT_EQ(TextOf(GString(row.value, row.precision)), row.text) << row.precision;
    GString text;
    text.SetWithHighPrecision(1.0 / 3);
    EXPECT_EQ(TextOf(text), "0.333333333333333");
    EXPECT_EQ(TextOf(GString(std::numeric_limits<double>::quiet_NaN(), 3L)), "nan");
    EXPECT_EQ(TextOf(GString(-std::numeric_limits<double>::quiet_NaN(), 3L)), "-nan");
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
    const struct {
        const char16_t* text;
        std::int32_t int32;
        std::uint32_t uint32;
        long long int64;
        double real;
    } rows[] = {
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
    for (const auto& row : rows) {
        const GString text = StringOf(row.text);
        SCOPED_TRACE(BytesOf(text.GetBuffer(GWinAnsiEncoding::GetInstance())));
        EXPECT_EQ(text.GetInt32(), row.int32);
        EXPECT_EQ(text.GetUInt32(), row.uint32);
        EXPECT_EQ(text.GetInt64(), row.int64);
        EXPECT_EQ(text.GetReal(), row.real);
    }
}

}  // namespace
