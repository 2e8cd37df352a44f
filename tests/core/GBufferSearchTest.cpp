#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "framework/core/GBuffer.h"
#include "tests/core/TextForTests.h"

namespace {

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
const unsigned short* Units(std::u16string_view text) {
    return reinterpret_cast<const unsigned short*>(text.data());
}

// What the standard library says, in the buffer's own terms.
template <class View>
long PositionIn(std::size_t (View::*find)(View, std::size_t) const noexcept, View text, View what,
                long start) {
    const std::size_t found = (text.*find)(what, static_cast<std::size_t>(start));
    return found == View::npos ? -1 : static_cast<long>(found);
}

// Texts of few different elements, so that there is much to be found, around every block boundary.
template <class String>
std::vector<String> RandomTexts(std::size_t maxLength, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<String> texts;
    for (std::size_t length = 0; length <= maxLength; ++length) {
        String text;
        for (std::size_t i = 0; i < length; ++i) {
            text += static_cast<typename String::value_type>(random() % 16 == 0 ? 'a' + random() % 3 : 'z');
        }
        texts.push_back(text);
    }
    return texts;
}

}  // namespace

TEST(GBufferSearch, ASingleByte) {
    const GBuffer buffer("abcabc");
    const struct {
        char byte;
        long start;
        long found;
    } rows[] = {{'a', 0, 0},  {'a', 1, 3},   {'c', 0, 2},  {'c', 5, 5},
                {'c', 6, -1}, {'c', 99, -1}, {'x', 0, -1}, {'a', -5, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(buffer.FindFirstOccurrence(row.byte, row.start), row.found) << row.byte << row.start;
    EXPECT_EQ(GBuffer().FindFirstOccurrence('a', 0), -1);
}

TEST(GBufferSearch, TheLastByte) {
    const GBuffer buffer("abcabc");
    const struct {
        char byte;
        long upTo;
        long found;
    } rows[] = {{'a', 5, 3},  {'a', 3, 3},   {'a', 2, 0}, {'c', 1, -1},
                {'c', 99, 5}, {'a', -1, -1}, {'x', 5, -1}};
    for (const auto& row : rows)
        EXPECT_EQ(buffer.FindLastOccurrence(row.byte, row.upTo), row.found) << row.byte << row.upTo;
    EXPECT_EQ(GBuffer().FindLastOccurrence('a', 5), -1);
}

TEST(GBufferSearch, UnitsAreComparedWholeAndCountedInUnits) {
    // Bytes that look like the unit stand across two units.
    const GBuffer buffer = BufferOf(u"\x4100\x0042\x0041\x4241\x0041");
    EXPECT_EQ(buffer.FindFirstOccurrence(static_cast<unsigned short>(0x0041), 0), 2);
    EXPECT_EQ(buffer.FindFirstOccurrence(static_cast<unsigned short>(0x0041), 3), 4);
    EXPECT_EQ(buffer.FindFirstOccurrence(static_cast<unsigned short>(0x0041), 5), -1);
    EXPECT_EQ(buffer.FindLastOccurrence(static_cast<unsigned short>(0x0041), 3), 2);
    EXPECT_EQ(buffer.FindLastOccurrence(static_cast<unsigned short>(0x4100), 9), 0);
    EXPECT_EQ(buffer.FindFirstOccurrence(static_cast<unsigned short>(0x4200), 0), -1);
    const GBuffer odd("AB\x41");
    EXPECT_EQ(odd.FindFirstOccurrence(static_cast<unsigned short>(0x0041), 0), -1) << "half a unit is none";
}

TEST(GBufferSearch, Sets) {
    const GBuffer buffer("abcabc");
    EXPECT_EQ(buffer.FindFirstOccurrence(Bytes("cb"), 2, 0), 1);
    EXPECT_EQ(buffer.FindFirstOccurrence(Bytes("cb"), 2, 2), 2);
    EXPECT_EQ(buffer.FindFirstOccurrence(Bytes("xy"), 2, 0), -1);
    EXPECT_EQ(buffer.FindFirstOccurrence(Bytes("a"), 0, 0), -1) << "an empty set";
    EXPECT_EQ(buffer.FindFirstOccurrence(Bytes("a"), -1, 0), -1);
    EXPECT_EQ(buffer.FindFirstOccurrence(static_cast<const unsigned char*>(nullptr), 1, 0), -1);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Bytes("ab"), 2, 0), 2);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Bytes("ab"), 2, 3), 5);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Bytes("abc"), 3, 0), -1);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Bytes("abc"), 0, 2), 2) << "nothing is in an empty set";
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Bytes("abc"), 0, 6), -1);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Bytes("ab"), 2, -9), 2);
}

TEST(GBufferSearch, SetsOfUnitsAreNotFooledByLowBytes) {
    const GBuffer buffer = BufferOf(u"\x0161\x0262\x0063");
    const std::u16string_view small = u"\x0061\x0062\x0063";
    const std::u16string_view large = u"\x0061\x0062\x0064\x0065\x0066\x0067\x0068\x0069\x0063";
    EXPECT_EQ(buffer.FindFirstOccurrence(Units(small), 3, 0), 2);
    EXPECT_EQ(buffer.FindFirstOccurrence(Units(large), 9, 0), 2);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Units(small), 3, 0), 0);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(Units(large), 9, 2), -1);
}

TEST(GBufferSearch, AgreesWithTheStandardLibraryOnBytes) {
    const std::string_view sets[] = {"a", "ab", "abc", "abcdefgh", "abcdefghi", "cABCDEFGHIJKLMNOPQRSTUVWXY"};
    for (const std::string& text : RandomTexts<std::string>(70, 1)) {
        const GBuffer buffer = BufferOf(text);
        const auto length = static_cast<long>(text.size());
        for (long start = 0; start <= length; ++start) {
            for (const std::string_view set : sets) {
                const long count = static_cast<long>(set.size());
                ASSERT_EQ(buffer.FindFirstOccurrence(Bytes(set), count, start),
                          PositionIn(&std::string_view::find_first_of, std::string_view(text), set, start));
                ASSERT_EQ(
                    buffer.FindFirstNonOccurrence(Bytes(set), count, start),
                    PositionIn(&std::string_view::find_first_not_of, std::string_view(text), set, start));
            }
            ASSERT_EQ(
                buffer.FindFirstOccurrence('a', start),
                PositionIn(&std::string_view::find, std::string_view(text), std::string_view("a"), start));
            ASSERT_EQ(
                buffer.FindLastOccurrence('a', start),
                PositionIn(&std::string_view::rfind, std::string_view(text), std::string_view("a"), start));
        }
    }
}

TEST(GBufferSearch, AgreesWithTheStandardLibraryOnUnits) {
    using View = std::u16string_view;
    const View sets[] = {u"a", u"ab", u"abcdefgh", u"abcdefghi", u"cABCDEFGHIJKLMNOPQ"};
    for (const std::u16string& text : RandomTexts<std::u16string>(40, 2)) {
        const GBuffer buffer = BufferOf(text);
        const auto length = static_cast<long>(text.size());
        const auto a = static_cast<unsigned short>('a');
        for (long start = 0; start <= length; ++start) {
            for (const View set : sets) {
                const long count = static_cast<long>(set.size());
                ASSERT_EQ(buffer.FindFirstOccurrence(Units(set), count, start),
                          PositionIn(&View::find_first_of, View(text), set, start));
                ASSERT_EQ(buffer.FindFirstNonOccurrence(Units(set), count, start),
                          PositionIn(&View::find_first_not_of, View(text), set, start));
            }
            ASSERT_EQ(buffer.FindFirstOccurrence(a, start),
                      PositionIn(&View::find, View(text), View(u"a"), start));
            ASSERT_EQ(buffer.FindLastOccurrence(a, start),
                      PositionIn(&View::rfind, View(text), View(u"a"), start));
        }
    }
}

TEST(GBufferSearch, SubBuffers) {
    const struct {
        const char* what;
        const char* text;
        const char* pattern;
        long start;
        long found;
    } rows[] = {
        {"inside", "abcabd", "abd", 0, 3},
        {"at the start", "abcabd", "abc", 0, 0},
        {"from behind its start", "abcabc", "abc", 1, 3},
        {"just the whole text", "abc", "abc", 0, 0},
        {"longer than the text", "abc", "abcd", 0, -1},
        {"absent", "abcabd", "abx", 0, -1},
        {"an empty pattern, wherever from", "abc", "", 2, 0},
        {"an empty pattern in an empty text", "", "", 0, 0},
        {"in an empty text", "", "a", 0, -1},
        {"a start beyond the text", "abc", "c", 5, -1},
        {"a start before the text", "abc", "b", -5, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(GBuffer(row.text).FindSubBuffer(row.pattern, row.start, false), row.found);
    }
}

TEST(GBufferSearch, WideSubBuffersStandOnUnits) {
    const GBuffer text = BufferOf(u"\x4142\x4344\x4142\x4546");
    EXPECT_EQ(text.FindSubBuffer(BufferOf(u"\x4142"), 0, true), 0);
    EXPECT_EQ(text.FindSubBuffer(BufferOf(u"\x4142"), 1, true), 2);
    EXPECT_EQ(text.FindSubBuffer(BufferOf(u"\x4142\x4546"), 0, true), 2);
    EXPECT_EQ(text.FindSubBuffer(BufferOf("\x41\x44"), 0, false), 1) << "the same bytes, but across units";
    EXPECT_EQ(text.FindSubBuffer(BufferOf("\x41\x44"), 0, true), -1);
    EXPECT_EQ(text.FindSubBuffer(GBuffer("x"), 0, true), 0) << "half a unit is an empty pattern";
}

TEST(GBufferSearch, SubBuffersAgreeWithTheStandardLibrary) {
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        std::string text, pattern;
        for (unsigned i = random() % 80; i > 0; --i) text += static_cast<char>('a' + random() % 2);
        for (unsigned i = 1 + random() % 6; i > 0; --i) pattern += static_cast<char>('a' + random() % 2);
        const std::u16string wideText(text.begin(), text.end()), widePattern(pattern.begin(), pattern.end());
        const auto start = static_cast<long>(random() % 10);
        const auto expected = static_cast<long>(text.find(pattern, static_cast<std::size_t>(start)));
        ASSERT_EQ(BufferOf(text).FindSubBuffer(BufferOf(pattern), start, false), expected)
            << text << ' ' << pattern;
        ASSERT_EQ(BufferOf(wideText).FindSubBuffer(BufferOf(widePattern), start, true), expected)
            << text << ' ' << pattern;
    }
}
