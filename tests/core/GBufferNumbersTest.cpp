#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "framework/core/GBuffer.h"
#include "tests/core/TextForTests.h"

namespace {

constexpr double cInfinity = std::numeric_limits<double>::infinity();
constexpr double cLargest = std::numeric_limits<double>::max();
constexpr double cNaN = std::numeric_limits<double>::quiet_NaN();

std::string Formatted(double value, const char* format) {
    return BytesOf(GBuffer(value, GBuffer(format)));
}

std::string WithPrecision(double value, long digits) {
    GBuffer buffer;
    buffer.SetWithPrecision(value, digits);
    return BytesOf(buffer);
}

// What the standard formatter says in the C locale, with the zeros taken off.
std::string ByPrintf(const char* format, double value) {
    char text[2000];
    std::snprintf(text, sizeof text, format, value);
    std::string result = text;
    if (result.find('.') == std::string::npos) return result;
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
    return result;
}

double RandomReal(std::mt19937_64& random) {
    for (;;) {
        const double value = std::bit_cast<double>(random());
        if (std::isfinite(value)) return value;
    }
}

}  // namespace

TEST(GBufferNumbers, IntegersAsText) {
    EXPECT_EQ(BytesOf(GBuffer(0)), "0");
    EXPECT_EQ(BytesOf(GBuffer(-2147483647L - 1)), "-2147483648");
    EXPECT_EQ(BytesOf(GBuffer(4294967295UL)), "4294967295");
    EXPECT_EQ(BytesOf(GBuffer(9223372036854775807LL)), "9223372036854775807");
    EXPECT_EQ(BytesOf(GBuffer(9223372036854775807ULL)), "9223372036854775807");
    EXPECT_EQ(BytesOf(GBuffer(9223372036854775808ULL)), "-9223372036854775808") << "printed as signed";
    EXPECT_EQ(BytesOf(GBuffer(18446744073709551615ULL)), "-1");
}

TEST(GBufferNumbers, IntegersWithALeastNumberOfDigits) {
    const struct {
        long value;
        long minDigits;
        const char* text;
    } rows[] = {{7, 3, "007"}, {-7, 3, "-007"}, {1234, 3, "1234"}, {0, 1, "0"},
                {0, 0, ""},    {0, -1, "0"},    {5, 0, "5"},       {-2147483647L - 1, 12, "-002147483648"}};
    for (const auto& row : rows) {
        GBuffer buffer("before");
        buffer.Set(row.value, row.minDigits);
        EXPECT_EQ(BytesOf(buffer), row.text) << row.value << ", " << row.minDigits;
    }
    GBuffer huge;
    huge.Set(1, 2000000000);
    EXPECT_EQ(huge.GetLength(), 1022) << "cut to what the formatter's buffer holds";
}

TEST(GBufferNumbers, RealsInFixedNotation) {
    const struct {
        double value;
        long digits;
        const char* text;
    } rows[] = {
        {2.50, 6, "2.5"},
        {3.0, 6, "3"},
        {0.1, 3, "0.1"},
        {12.0, 0, "12"},
        {100.0, 0, "100"},
        {100.0, 2, "100"},
        {0.0, 6, "0"},
        {-0.0, 6, "-0"},
        {-0.000001, 6, "-0.000001"},
        {-0.0000001, 6, "-0"},
        {0.5, 0, "0"},
        {1.5, 0, "2"},
        {2.5, 0, "2"},
        {0.1, 16, "0.1"},
        {0.1, 17, "0.1"},
        {1.0 / 3, 20, "0.3333333333333333"},
        {1.0 / 3, -1, "0.3333333333333333"},
        {1e22, 2, "10000000000000000000000"},
        {cNaN, 3, "nan"},
        {-cNaN, 3, "-nan"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(WithPrecision(row.value, row.digits), row.text) << row.value << ", " << row.digits;
    GBuffer high;
    high.SetWithHighPrecision(1.0 / 3);
    EXPECT_EQ(BytesOf(high), "0.333333333333333");
    EXPECT_EQ(BytesOf(GBuffer(2.50)), "2.5");
    EXPECT_EQ(BytesOf(GBuffer(1.0 / 3)), "0.333333");
}

TEST(GBufferNumbers, InfinitiesCountAsTheLargestValue) {
    const std::string largest = WithPrecision(cLargest, 6);
    EXPECT_EQ(largest.size(), 309u);
    EXPECT_EQ(largest.substr(0, 17), "17976931348623157");
    EXPECT_EQ(WithPrecision(cInfinity, 6), largest);
    EXPECT_EQ(WithPrecision(-cInfinity, 16), "-" + largest);
    EXPECT_EQ(Formatted(-cInfinity, "%f"), "-" + largest);
}

TEST(GBufferNumbers, RealsByAFormat) {
    const struct {
        const char* what;
        double value;
        const char* format;
        const char* text;
    } rows[] = {
        {"plain", 2.5, "%f", "2.5"},
        {"no conversion but percent signs", 2.5, "%%", "2.5"},
        {"text around it", 2.5, "[%f]", "[2.500000]"},
        {"percent signs around it", 2.5, "%%%f%%", "%2.500000%"},
        {"width", 2.5, "%9.2f|", "     2.50|"},
        {"left-aligned", 2.5, "%-9.2f|", "2.50     |"},
        {"zero-padded behind the sign", -2.5, "%09.2f|", "-00002.50|"},
        {"plus", 2.5, "%+.1f", "+2.5"},
        {"blank", 2.5, "% .1f", " 2.5"},
        {"plus beats blank", 2.5, "%+ .1f", "+2.5"},
        {"left-aligned beats zeros", 2.5, "%-08.2f|", "2.50    |"},
        {"a precision without digits is 0", 2.5, "%.f|", "2|"},
        {"a long double's mark is refused", 2.5, "%Lf|", "2.5"},
        {"a long's mark says nothing", 2.5, "%lf|", "2.500000|"},
        {"exponent", 12345.678, "%.2e|", "1.23e+04|"},
        {"capital exponent", 12345.678, "%.2E|", "1.23E+04|"},
        {"the shorter of both", 12345.678, "%g", "12345.7"},
        {"the shorter of both, exponent", 1e20, "%g", "1e+20"},
        {"alternate keeps the zeros", 1.5, "%#g|", "1.50000|"},
        {"alternate keeps the zeros of nothing", 0.0, "%#.3g|", "0.00|"},
        {"alternate keeps the zeros before an exponent", 1e20, "%#.3g|", "1.00e+20|"},
        {"alternate keeps the point", 3.0, "%#.0f|", "3.|"},
        {"hexadecimal", 1.5, "%a|", "0x1.8p+0|"},
        {"hexadecimal with digits", 1.5, "%.3A|", "0X1.800P+0|"},
        {"zeros go behind the prefix", 1.5, "%010a|", "0x001.8p+0|"},
        {"the zeros of an exponent go, too", 1.5e10, "%e", "1.500000e+1"},
        {"not a number is not padded with zeros", cNaN, "%06f|", "   nan|"},
        {"not a number in capitals", -cNaN, "%F|", "-NAN|"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(Formatted(row.value, row.format), row.text);
    }
}

TEST(GBufferNumbers, AFormatThatWouldReadGarbageCountsAsTheDefault) {
    for (const char* format : {"", "text", "%", "%d", "%s", "%n", "%5", "%.", "%f%f", "%f %s", "%f%", "%*f",
                               "%.*f", "%hf", "%llf", "%1$f", "%", "%%f"}) {
        EXPECT_EQ(Formatted(2.25, format), "2.25") << format;
    }
    EXPECT_EQ(BytesOf(GBuffer(2.25, BufferOf(std::string_view("%\0f", 3)))), "2.25");
}

TEST(GBufferNumbers, AnEndlessFormatIsCut) {
    EXPECT_EQ(Formatted(1.0, "%2000000000f"), std::string(1015, ' ') + "1");
    EXPECT_EQ(Formatted(0.1, "%.99999999999f|"), "0.1000000000000000055511151231257827021181583404541015625")
        << "the zeros at the cut end go, and what followed them is cut off";
    EXPECT_EQ(Formatted(1.0, (std::string(5000, 'x') + "%f").c_str()), std::string(1023, 'x'));
}

TEST(GBufferNumbers, AgreeWithPrintf) {
    std::mt19937_64 random(4);
    for (int round = 0; round < 20000; ++round) {
        const double wide = RandomReal(random);
        const double near = static_cast<double>(static_cast<long long>(random() % 2000000) - 1000000) / 1000;
        const auto digits = static_cast<int>(random() % 17);
        for (const double value : {wide, near}) {
            const std::string fixed = "%." + std::to_string(digits) + "f";
            ASSERT_EQ(WithPrecision(value, digits), ByPrintf(fixed.c_str(), value));
            for (const char letter : {'f', 'e', 'g', 'G'}) {
                const std::string format =
                    "<%+" + std::to_string(digits * 3) + "." + std::to_string(digits) + letter + ">";
                ASSERT_EQ(Formatted(value, format.c_str()), ByPrintf(format.c_str(), value)) << format;
            }
        }
    }
}

TEST(GBufferNumbers, Integers64FromText) {
    const struct {
        std::string_view text;
        long long value;
    } rows[] = {
        {" \b-12x", -12},
        {"\f12", 0},
        {"\t\n\v\r 12", 12},
        {"+7", 7},
        {"", 0},
        {"-", 0},
        {"--5", 0},
        {"+-5", 0},
        {"- 5", 0},
        {"abc", 0},
        {"0x10", 0},
        {"007", 7},
        {"9223372036854775807", 9223372036854775807LL},
        {"-9223372036854775808", -9223372036854775807LL - 1},
        {"18446744073709551617", 1},
        {std::string_view("1\0002", 3), 1},
    };
    for (const auto& row : rows) EXPECT_EQ(BufferOf(row.text).GetInt64(), row.value) << row.text;
    GBuffer part;
    part.SetFromStatic(reinterpret_cast<const unsigned char*>("1234"), 2);
    EXPECT_EQ(part.GetInt64(), 12) << "digits behind the end do not count";
}

TEST(GBufferNumbers, Integers32FromText) {
    const struct {
        const char* text;
        long value;
        unsigned long cut;
    } rows[] = {
        {"2147483647", 2147483647, 2147483647UL},
        {"2147483648", 2147483647, 2147483648UL},
        {"-2147483648", -2147483647 - 1, 2147483648UL},
        {"-2147483649", -2147483647 - 1, 2147483647UL},
        {"99999999999999999999999999", 2147483647, 3825205247UL},
        {"4294967297", 2147483647, 1UL},
        {"-1", -1, 4294967295UL},
        {"\f12", 12, 0UL},
        {"\b12", 0, 12UL},
        {"", 0, 0UL},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GBuffer(row.text).GetInt32(), row.value) << row.text;
        EXPECT_EQ(GBuffer(row.text).GetUInt32(), row.cut) << row.text;
    }
}

TEST(GBufferNumbers, RealsFromText) {
    const struct {
        std::string_view text;
        double value;
    } rows[] = {
        {"2.5", 2.5},
        {"-2.5xyz", -2.5},
        {"+2.5", 2.5},
        {" \b\t12", 12},
        {".5", 0.5},
        {"5.", 5},
        {"-.5e1", -5},
        {"1e3", 1000},
        {"1E+3", 1000},
        {"1e-3", 0.001},
        {"1e", 1},
        {"1e+", 1},
        {"1ex", 1},
        {"1.5.5", 1.5},
        {"1,5", 1},
        {".", 0},
        {"-", 0},
        {".e5", 0},
        {"e5", 0},
        {"", 0},
        {"inf", 0},
        {"nan", 0},
        {"0x10", 0},
        {"+-5", 0},
        {"1e400", cInfinity},
        {"-1e400", -cInfinity},
        {"1e99999999999999999999", cInfinity},
        {"1e+99999999999999999999", cInfinity},
        {"1e-99999999999999999999", 0},
        {"0e99999999999999999999", 0},
        {"1e-400", 0},
        {"0.0000000001e318", 1e308},
        {"0.0000000001e320", cInfinity},
        {"1000000000e-330", 1e-321},
        {"1.7976931348623157e308", cLargest},
        {"4.9406564584124654e-324", 4.9406564584124654e-324},
        {"0.1", 0.1},
    };
    for (const auto& row : rows) EXPECT_EQ(BufferOf(row.text).GetReal(), row.value) << row.text;
    EXPECT_TRUE(std::signbit(GBuffer("-0").GetReal()));
    EXPECT_TRUE(std::signbit(GBuffer("-1e-400").GetReal()));
}

TEST(GBufferNumbers, LongRunsOfDigitsFromText) {
    const std::string zeros(100000, '0');
    EXPECT_EQ(BufferOf("1" + zeros).GetReal(), cInfinity);
    EXPECT_EQ(BufferOf("0." + zeros + "1").GetReal(), 0.0);
    EXPECT_EQ(BufferOf("0." + zeros + "1e100001").GetReal(), 1.0);
    EXPECT_EQ(BufferOf("1" + zeros + "e-100000").GetReal(), 1.0);
}

TEST(GBufferNumbers, TextAndBackGivesTheSameReal) {
    std::mt19937_64 random(5);
    for (int round = 0; round < 20000; ++round) {
        const double value = RandomReal(random);
        ASSERT_EQ(GBuffer(value, GBuffer("%.17g ")).GetReal(), value);
    }
}

TEST(GBufferNumbers, TheLocaleHasNoPart) {
    // Where the system has a locale with a decimal comma; elsewhere this repeats the above.
    for (const char* name : {"de_DE.UTF-8", "German_Germany.1252", "de-DE"}) {
        if (std::setlocale(LC_ALL, name) == nullptr) continue;
        EXPECT_EQ(Formatted(2.5, "%.3f|"), "2.500|") << name;
        EXPECT_EQ(WithPrecision(2.5, 3), "2.5") << name;
        EXPECT_EQ(GBuffer("2.5").GetReal(), 2.5) << name;
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(Formatted(2.5, "%.3f|"), "2.500|");
}
