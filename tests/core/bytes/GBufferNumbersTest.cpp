#include <bit>
#include <clocale>
#include <cmath>
#include <cstdio>

#include "framework/core/bytes/GBuffer.h"
#include "tests/core/TextForTests.h"

namespace {

constexpr double cInfinity = std::numeric_limits<double>::infinity();
constexpr double cLargest = std::numeric_limits<double>::max();

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

}  // namespace

TEST(GBufferNumbers, IntegersAsText) {
    const std::pair<GBuffer, const char*> rows[] = {
        {GBuffer(0), "0"},
        {GBuffer(-2147483647L - 1), "-2147483648"},
        {GBuffer(4294967295U), "4294967295"},
        {GBuffer(4294967295UL), "4294967295"},
        {GBuffer(9223372036854775807LL), "9223372036854775807"},
        {GBuffer(9223372036854775807ULL), "9223372036854775807"},
        {GBuffer(9223372036854775808ULL), "-9223372036854775808"},  // printed as signed
        {GBuffer(18446744073709551615ULL), "-1"}};
    for (const auto& [buffer, text] : rows) EXPECT_EQ(BytesOf(buffer), text);
}

TEST(GBufferNumbers, IntegersWithALeastNumberOfDigits) {
    const auto with = [](long value, long minDigits) {
        GBuffer buffer("before");
        buffer.Set(value, minDigits);
        return BytesOf(buffer);
    };
    ForEachRow<3>({"7 -> 3 -> 007", "-7 -> 3 -> -007", "1234 -> 3 -> 1234", "0 -> 1 -> 0", "0 -> 0 -> ",
                   "0 -> -1 -> 0", "5 -> 0 -> 5", "-2147483648 -> 12 -> -002147483648"},
                  [&](auto value, auto minDigits, auto text) {
                      EXPECT_EQ(with(std::atol(value.data()), std::atol(minDigits.data())), text);
                  });
    EXPECT_EQ(with(1, 2000000000), std::string(1021, '0') + "1");
}

TEST(GBufferNumbers, RealsInFixedNotation) {
    ForEachRow<3>(
        {"2.50 -> 6 -> 2.5", "0.1 -> 3 -> 0.1", "12 -> 0 -> 12", "100 -> 2 -> 100", "-0 -> 6 -> -0",
         "-0.0000001 -> 6 -> -0", "0.1 -> 17 -> 0.1", "0.33333333333333331 -> 20 -> 0.3333333333333333",
         "0.33333333333333331 -> -1 -> 0.3333333333333333", "1e22 -> 2 -> 10000000000000000000000",
         "nan -> 3 -> nan", "-nan -> 3 -> -nan"},
        [](auto value, auto digits, auto text) {
            EXPECT_EQ(WithPrecision(std::strtod(value.data(), nullptr), std::atol(digits.data())), text);
        });
    GBuffer high;
    high.SetWithHighPrecision(1.0 / 3);
    EXPECT_EQ(BytesOf(high), "0.333333333333333");
    EXPECT_EQ(BytesOf(GBuffer(1.0 / 3)), "0.333333");
    const std::string largestByPrintf = ByPrintf("%f", cLargest);
    EXPECT_EQ(WithPrecision(cInfinity, 6), largestByPrintf) << "infinities count as the largest value";
    EXPECT_EQ(WithPrecision(-cInfinity, 16), "-" + largestByPrintf);
    EXPECT_EQ(Formatted(-cInfinity, "%f"), "-" + largestByPrintf);
}

TEST(GBufferNumbers, RealsByAFormat) {
    // No conversion, padding by zeros behind the sign or a prefix, marks, forms, and no number.
    ForEachRow<3>(
        {"2.5 -> %f -> 2.5", "2.5 -> %% -> 2.5", "-2.5 -> %09.2f| -> -00002.50|", "2.5 -> %Lf| -> 2.5",
         "2.5 -> %lf| -> 2.500000|", "3 -> %#.0f| -> 3.|", "1.5 -> %a| -> 0x1.8p+0|",
         "1.5 -> %.3A| -> 0X1.800P+0|", "1.5 -> %010a| -> 0x001.8p+0|", "1.5e10 -> %e -> 1.500000e+1",
         "nan -> %06f| ->    nan|", "-nan -> %F| -> -NAN|", "2.5 -> [%%%f%%] -> [%2.500000%]"},
        [](auto value, auto format, auto text) {
            EXPECT_EQ(Formatted(std::strtod(value.data(), nullptr), std::string(format).c_str()), text);
        });
}

TEST(GBufferNumbers, AFormatThatWouldReadGarbageCountsAsTheDefaultAndAnEndlessOneIsCut) {
    for (const char* format : {"", "text", "%", "%d", "%s", "%n", "%5", "%.", "%f%f", "%f %s", "%f%", "%*f",
                               "%.*f", "%hf", "%llf", "%1$f", "%", "%%f"}) {
        EXPECT_EQ(Formatted(2.25, format), "2.25") << format;
    }
    EXPECT_EQ(BytesOf(GBuffer(2.25, BufferOf(std::string_view("%\0f", 3)))), "2.25");
    EXPECT_EQ(Formatted(1.0, "%2000000000f"), std::string(1015, ' ') + "1");
    EXPECT_EQ(Formatted(0.1, "%.99999999999f|"), "0.1000000000000000055511151231257827021181583404541015625")
        << "the zeros at the cut end go, and what followed them is cut off";
    EXPECT_EQ(Formatted(1.0, (std::string(5000, 'x') + "%f").c_str()), std::string(1023, 'x'));
}

TEST(GBufferNumbers, AgreeWithPrintfAndComeBack) {
    const char* const flags[] = {"", "", "+", " ", "+ ", "-", "0", "-0", "#"};
    std::mt19937_64 random(4);
    for (int round = 0; round < 20000; ++round) {
        double wide = cInfinity;
        while (!std::isfinite(wide)) wide = std::bit_cast<double>(random());
        const double near = static_cast<double>(static_cast<long long>(random() % 2000000) - 1000000) / 1000;
        const std::string digits = std::to_string(random() % 17), width = std::to_string(1 + random() % 30);
        for (const double value : {wide, near, 0.0, 3.0}) {
            const std::string fixed = "%." + digits + "f";
            ASSERT_EQ(WithPrecision(value, std::stol(digits)), ByPrintf(fixed.c_str(), value));
            const std::string format = std::string("<%") + flags[random() % 9] + (random() % 2 ? width : "") +
                                       (random() % 4 ? "." + digits : "") + "feEgG"[random() % 5] +
                                       (random() % 2 ? ">" : "");
            ASSERT_EQ(Formatted(value, format.c_str()), ByPrintf(format.c_str(), value)) << format;
        }
        ASSERT_EQ(GBuffer(wide, GBuffer("%.17g ")).GetReal(), wide);
    }
}

TEST(GBufferNumbers, IntegersFromText) {
    // What GetInt64() reads; GetUInt32() is that cut. And what GetInt32() reads, which knows a limit.
    ForEachRow<3>({" \b-12x -> -12 -> 0"sv, "\f12 -> 0 -> 12"sv, "\t\n\v\r 12 -> 12 -> 12"sv,
                   "+7 -> 7 -> 7"sv, "007 -> 7 -> 7"sv, "2147483647 -> 2147483647 -> 2147483647"sv,
                   "2147483648 -> 2147483648 -> 2147483647"sv, "-2147483648 -> -2147483648 -> -2147483648"sv,
                   "-2147483649 -> -2147483649 -> -2147483648"sv, "4294967297 -> 4294967297 -> 2147483647"sv,
                   "9223372036854775807 -> 9223372036854775807 -> 2147483647"sv,
                   "-9223372036854775808 -> -9223372036854775808 -> -2147483648"sv,
                   "18446744073709551617 -> 1 -> 2147483647"sv, "1\0002 -> 1 -> 1"sv},
                  [&](auto text, auto all, auto limited) {
                      const long long expected = std::strtoll(all.data(), nullptr, 10);
                      const GBuffer buffer = BufferOf(text);
                      EXPECT_EQ(buffer.GetInt64(), expected);
                      EXPECT_EQ(buffer.GetUInt32(), static_cast<unsigned long>(expected & 0xFFFFFFFF));
                      EXPECT_EQ(buffer.GetInt32(), std::strtol(limited.data(), nullptr, 10));
                  });
    for (const char* text : {"", "-", "--5", "+-5", "- 5", "abc", "0x10"}) {
        EXPECT_TRUE(GBuffer(text).GetInt64() == 0 && GBuffer(text).GetInt32() == 0) << text;
    }
    GBuffer part;
    part.SetFromStatic(reinterpret_cast<const unsigned char*>("1234"), 2);
    EXPECT_EQ(part.GetInt64(), 12) << "digits behind the end do not count";
    EXPECT_EQ(part.GetInt32(), 12);
}

TEST(GBufferNumbers, RealsFromText) {
    ForEachRow<1>({"2.5", "-2.5xyz", "+2.5", "\t12", ".5", "5.", "-.5e1", "1e3", "1E+3", "1e-3", "1e", "1e+",
                   "1ex", "1.5.5", "1,5",
                   // No number, a signed zero, and what is too small or too large.
                   "", ".", "-", ".e5", "e5", "+-5", "-0", "-1e-400", "-1e400", "1e-99999999999999999999",
                   "0e99999999999999999999", "1e+99999999999999999999", "0.0000000001e320",
                   "0.0000000001e318", "1000000000e-330"},
                  [](auto text) {
                      const double value = BufferOf(text).GetReal(), peer = std::strtod(text.data(), nullptr);
                      EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(peer));
                  });
    // What the standard library takes for a number, and what it does not skip.
    for (const char* text : {"0x10", "inf", "nan"}) EXPECT_EQ(GBuffer(text).GetReal(), 0.0) << text;
    EXPECT_EQ(GBuffer(" \b\t12").GetReal(), 12);
    // More digits than it reads well on every system.
    const std::string zeros(100000, '0'), wide = "1" + zeros, tiny = "0." + zeros + "1";
    EXPECT_EQ(BufferOf(wide).GetReal(), cInfinity);
    EXPECT_EQ(BufferOf(tiny).GetReal(), 0.0);
    EXPECT_EQ(BufferOf(wide + "e-100000").GetReal(), 1.0);
    EXPECT_EQ(BufferOf(tiny + "e100001").GetReal(), 1.0);
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
}
