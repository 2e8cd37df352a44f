#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "framework/core/bytes/GBuffer.h"
#include "tests/core/TextForTests.h"

namespace {

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
const unsigned short* Units(std::u16string_view text) {
    return reinterpret_cast<const unsigned short*>(text.data());
}

// What the standard library says, in the buffer's own terms.
long Position(std::size_t found) {
    return found == std::string::npos ? -1 : static_cast<long>(found);
}

// For bytes and for units: everything that can be looked for one element or one set at a time, in
// texts of few different elements, so that there is much to be found, around every block boundary.
template <class Unit, class Char>
void CompareWithTheStandardLibrary(long maxLength, const std::vector<std::basic_string<Char>>& sets) {
    std::mt19937 random(1);
    std::basic_string<Char> text;
    for (long length = 0; length <= maxLength; ++length) {
        for (Char& c : text) c = static_cast<Char>(random() % 16 == 0 ? 'a' + random() % 3 : 'z');
        const GBuffer buffer = BufferOf(std::basic_string_view<Char>(text));
        for (long start = 0; start <= length; ++start) {
            const auto from = static_cast<std::size_t>(start);
            for (const auto& set : sets) {
                const auto* const units = reinterpret_cast<const Unit*>(set.data());
                const auto count = static_cast<long>(set.size());
                ASSERT_EQ(buffer.FindFirstOccurrence(units, count, start),
                          Position(text.find_first_of(set, from)));
                ASSERT_EQ(buffer.FindFirstNonOccurrence(units, count, start),
                          Position(text.find_first_not_of(set, from)));
            }
            ASSERT_EQ(buffer.FindFirstOccurrence(Unit{'a'}, start), Position(text.find(Char{'a'}, from)));
            ASSERT_EQ(buffer.FindLastOccurrence(Unit{'a'}, start), Position(text.rfind(Char{'a'}, from)));
        }
        text += Char{'z'};
    }
}

}  // namespace

TEST(GBufferSearch, AgreesWithTheStandardLibrary) {
    CompareWithTheStandardLibrary<unsigned char, char>(
        70, {"a", "ab", "abc", "abcdefgh", "abcdefghi", "cABCDEFGHIJKLMNOPQRSTUVWXY"});
    CompareWithTheStandardLibrary<unsigned short, char16_t>(
        40, {u"a", u"ab", u"abcdefgh", u"abcdefghi", u"cABCDEFGHIJKLMNOPQ"});
}

TEST(GBufferSearch, BadPositionsAndSets) {
    const GBuffer buffer("abcabc");
    const auto* const none = static_cast<const unsigned char*>(nullptr);
    const std::tuple<const char*, long, long> rows[] = {
        {"from before the start", buffer.FindFirstOccurrence('a', -5), 0},
        {"from the end", buffer.FindFirstOccurrence('c', 6), -1},
        {"from beyond the end", buffer.FindFirstOccurrence('c', 99), -1},
        {"in nothing", GBuffer().FindFirstOccurrence('a', 0), -1},
        {"the last from beyond the end", buffer.FindLastOccurrence('c', 99), 5},
        {"the last from before the start", buffer.FindLastOccurrence('a', -1), -1},
        {"the last in nothing", GBuffer().FindLastOccurrence('a', 5), -1},
        {"of an empty set", buffer.FindFirstOccurrence(Bytes("a"), 0, 0), -1},
        {"of a set of negative length", buffer.FindFirstOccurrence(Bytes("a"), -1, 0), -1},
        {"of no set", buffer.FindFirstOccurrence(none, 1, 0), -1},
        {"of a set from before the start", buffer.FindFirstOccurrence(Bytes("bc"), 2, -9), 1},
        {"not of an empty set", buffer.FindFirstNonOccurrence(Bytes("abc"), 0, 2), 2},
        {"not of an empty set, from the end", buffer.FindFirstNonOccurrence(Bytes("abc"), 0, 6), -1},
        {"not of no set", buffer.FindFirstNonOccurrence(none, 3, 0), 0},
        {"not of a set from before the start", buffer.FindFirstNonOccurrence(Bytes("ab"), 2, -9), 2}};
    for (const auto& [what, found, expected] : rows) EXPECT_EQ(found, expected) << what;
}

TEST(GBufferSearch, UnitsAreComparedWholeAndCountedInUnits) {
    // Bytes that look like the unit stand across two units.
    const GBuffer buffer = BufferOf(u"\x4100\x0042\x0041\x4241\x0041");
    const auto a = static_cast<unsigned short>(0x0041);
    EXPECT_EQ(buffer.FindFirstOccurrence(a, 0), 2);
    EXPECT_EQ(buffer.FindFirstOccurrence(a, 3), 4);
    EXPECT_EQ(buffer.FindFirstOccurrence(a, 5), -1);
    EXPECT_EQ(buffer.FindLastOccurrence(a, 3), 2);
    EXPECT_EQ(buffer.FindLastOccurrence(static_cast<unsigned short>(0x4100), 9), 0);
    EXPECT_EQ(buffer.FindFirstOccurrence(static_cast<unsigned short>(0x4200), 0), -1);
    EXPECT_EQ(GBuffer("AB\x41").FindFirstOccurrence(a, 0), -1) << "half a unit is none";
    const GBuffer lowBytes = BufferOf(u"\x0161\x0262\x0063");
    const std::u16string_view small = u"\x0061\x0062\x0063";
    const std::u16string_view large = u"\x0061\x0062\x0064\x0065\x0066\x0067\x0068\x0069\x0063";
    EXPECT_EQ(lowBytes.FindFirstOccurrence(Units(small), 3, 0), 2);
    EXPECT_EQ(lowBytes.FindFirstOccurrence(Units(large), 9, 0), 2);
    EXPECT_EQ(lowBytes.FindFirstNonOccurrence(Units(small), 3, 0), 0);
    EXPECT_EQ(lowBytes.FindFirstNonOccurrence(Units(large), 9, 2), -1);
}

TEST(GBufferSearch, SubBuffers) {
    const std::tuple<const char*, const char*, const char*, long, long> rows[] = {
        {"from behind its start", "abcabc", "abc", 1, 3},
        {"just the whole text", "abc", "abc", 0, 0},
        {"longer than the text", "abc", "abcd", 0, -1},
        {"an empty pattern, wherever from", "abc", "", 2, 0},
        {"an empty pattern in an empty text", "", "", 0, 0},
        {"in an empty text", "", "a", 0, -1},
        {"a start beyond the text", "abc", "c", 5, -1},
        {"a start far beyond the text", "", "abcde", 0x7FFFFFFF, -1},
        {"a start before the text", "abc", "b", -5, 1}};
    for (const auto& [what, text, pattern, start, found] : rows)
        EXPECT_EQ(GBuffer(text).FindSubBuffer(pattern, start, false), found) << what;
    const GBuffer units = BufferOf(u"\x4142\x4344\x4142\x4546");
    EXPECT_EQ(units.FindSubBuffer(BufferOf(u"\x4142"), 1, true), 2);
    EXPECT_EQ(units.FindSubBuffer(BufferOf("\x41\x44"), 0, false), 1) << "the same bytes, but across units";
    EXPECT_EQ(units.FindSubBuffer(BufferOf("\x41\x44"), 0, true), -1);
    EXPECT_EQ(units.FindSubBuffer(GBuffer("x"), 0, true), 0) << "half a unit is an empty pattern";
}

TEST(GBufferSearch, SubBuffersAgreeWithTheStandardLibrary) {
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        // Texts of two elements, in which the pattern's first is frequent or rare.
        const unsigned rarity = 2 + round % 2 * 60;
        std::string text, pattern;
        for (unsigned i = random() % 400; i > 0; --i) text += random() % rarity == 0 ? 'a' : 'b';
        const auto start = static_cast<long>(random() % 10);
        if (text.size() > 30 && round % 3 != 0) pattern = text.substr(random() % text.size(), random() % 30);
        if (pattern.empty()) pattern = round % 4 == 0 ? "ab" : "aab";
        const std::u16string wideText(text.begin(), text.end()), widePattern(pattern.begin(), pattern.end());
        const long expected = Position(text.find(pattern, static_cast<std::size_t>(start)));
        ASSERT_EQ(BufferOf(text).FindSubBuffer(BufferOf(pattern), start, false), expected)
            << text << ' ' << pattern;
        ASSERT_EQ(BufferOf(wideText).FindSubBuffer(BufferOf(widePattern), start, true), expected)
            << text << ' ' << pattern;
    }
}
