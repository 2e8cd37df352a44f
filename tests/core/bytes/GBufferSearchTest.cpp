#include "framework/core/bytes/GBuffer.h"
#include "tests/core/TextForTests.h"

namespace {

// What the standard library says, in the buffer's own terms.
long Position(std::size_t found) {
    return found == std::string::npos ? -1 : static_cast<long>(found);
}

// For bytes and for units: everything that can be looked for one element or one set at a time, in
// texts of few different elements, so that there is much to be found, around every block boundary.
template <class Unit, class Char>
void CompareWithTheStandardLibrary(long maxLength, const std::basic_string<Char>& alphabet,
                                   const std::vector<std::basic_string<Char>>& sets) {
    std::mt19937 random(1);
    std::basic_string<Char> text;
    for (long length = 0; length <= maxLength; ++length) {
        for (Char& c : text) c = random() % 16 == 0 ? alphabet[random() % alphabet.size()] : alphabet.back();
        GBuffer buffer = BufferOf(std::basic_string_view<Char>(text));
        if (sizeof(Char) == 2) buffer += 'a';  // half a unit is none
        for (long start = -2; start <= length + 2; ++start) {
            const auto from = static_cast<std::size_t>(std::max(start, 0L));
            for (const auto& set : sets) {
                const auto* const units = reinterpret_cast<const Unit*>(set.data());
                const auto count = static_cast<long>(set.size());
                ASSERT_EQ(buffer.FindFirstOccurrence(units, count, start),
                          Position(text.find_first_of(set, from)));
                ASSERT_EQ(buffer.FindFirstNonOccurrence(units, count, start),
                          Position(text.find_first_not_of(set, from)));
            }
            ASSERT_EQ(buffer.FindFirstOccurrence(Unit{'a'}, start), Position(text.find(Char{'a'}, from)));
            ASSERT_EQ(buffer.FindLastOccurrence(Unit{'a'}, start),
                      start < 0 ? -1 : Position(text.rfind(Char{'a'}, from)));
        }
        text += Char{'z'};
    }
}

}  // namespace

TEST(GBufferSearch, AgreesWithTheStandardLibrary) {
    CompareWithTheStandardLibrary<unsigned char, char>(
        70, "abcz", {"", "a", "ab", "abc", "abcdefgh", "abcdefghi", "cABCDEFGHIJKLMNOPQRSTUVWXY"});
    // The units have bytes of each other, also across two of them.
    CompareWithTheStandardLibrary<unsigned short, char16_t>(
        40, u"ab\x6100\x6161\x6162\x0161z",
        {u"", u"a", u"ab", u"\x6100z", u"abcdefgh", u"abcdefghi", u"cABCDEFGHIJKLMNOPQ"});
    const GBuffer buffer("abc");
    const auto* const none = static_cast<const unsigned char*>(nullptr);
    EXPECT_EQ(buffer.FindFirstOccurrence(none, 1, 0), -1);
    EXPECT_EQ(buffer.FindFirstNonOccurrence(none, 3, 0), 0);
    EXPECT_EQ(buffer.FindFirstOccurrence(reinterpret_cast<const unsigned char*>("a"), -1, 0), -1);
}

TEST(GBufferSearch, SubBuffersAgreeWithTheStandardLibrary) {
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        // Texts of two elements, in which the pattern's first is frequent or rare.
        const unsigned rarity = 2 + round % 2 * 60;
        std::string text, pattern;
        for (unsigned i = random() % (round % 8 == 0 ? 4 : 400); i > 0; --i)
            text += random() % rarity == 0 ? 'a' : 'b';
        const auto start = static_cast<long>(random() % (round % 5 == 0 ? 400 : 14)) - 4;
        if (text.size() > 30 && round % 3 != 0) pattern = text.substr(random() % text.size(), random() % 30);
        if (pattern.empty()) pattern = round % 4 == 0 ? "ab" : round % 4 == 1 ? "" : "aab";
        // As units whose bytes stand in each other's, so that they are also found across two of them.
        std::u16string wideText, widePattern;
        for (const char c : text) wideText += c == 'a' ? u'\x6162' : u'\x6261';
        for (const char c : pattern) widePattern += c == 'a' ? u'\x6162' : u'\x6261';
        // An empty pattern is found at the start, wherever the search begins.
        const long expected =
            pattern.empty() ? 0 : Position(text.find(pattern, static_cast<std::size_t>(std::max(start, 0L))));
        ASSERT_EQ(BufferOf(text).FindSubBuffer(BufferOf(pattern), start, false), expected)
            << text << ' ' << pattern;
        ASSERT_EQ(BufferOf(wideText).FindSubBuffer(BufferOf(widePattern), start, true), expected)
            << text << ' ' << pattern;
    }
    const GBuffer units = BufferOf(u"\x4142\x4344");
    EXPECT_EQ(units.FindSubBuffer(BufferOf("\x41\x44"), 0, false), 1) << "bytes, also across units";
    EXPECT_EQ(units.FindSubBuffer(GBuffer("x"), 0, true), 0) << "half a unit is an empty pattern";
    EXPECT_EQ(GBuffer().FindSubBuffer("abcde", 0x7FFFFFFF, false), -1) << "far beyond the text";
}
