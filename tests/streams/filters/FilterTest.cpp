#include <regex>

#include "tests/streams/filters/FilterTestSupport.h"

// What holds for every filter: literal bytes, every input in every read size, clones, Reset, failures.

namespace {

constexpr long cInvalid = 2452;
constexpr long cTruncated = 2453;
constexpr long cWrongTag = 2457;

// Codes of nine bits, in whole bytes.
std::string Codes(const std::vector<unsigned>& codes) {
    std::string bytes((codes.size() * 9 + 7) / 8, '\0');
    for (std::size_t bit = 0; bit < codes.size() * 9; ++bit) {
        if ((codes[bit / 9] >> (8 - bit % 9) & 1) != 0) bytes[bit / 8] |= static_cast<char>(0x80 >> bit % 8);
    }
    return bytes;
}

const struct {
    const char* filter;
    const char* what;
    std::string input;
    std::string output;
    long failure = 0;
} cRows[] = {
    {"hex", "nothing", "", ">"},
    {"hex", "upper case", "\x01\xAF\x9a"s, "01AF9A>"},
    {"hex lines", "a full line", std::string(40, 'f'), std::string(80, '6') + "\n>"},
    {"unhex", "both cases and white space", "0 1\n\taF\f9\r\0A > rest"s, "\x01\xAF\x9A"s},
    {"unhex", "an odd digit counts as the high one", "017>", "\x01\x70"s},
    {"unhex", "an odd zero and no end mark", "01 0", "\x01\0"s},
    {"unhex", "a wrong byte", "010203g4>", "\x01\x02\x03"s, cInvalid},
    {"unhex", "a wrong byte behind many right ones", "000102030405060708090a0b0c0d0e0f10@",
     "\0\1\2\3\4\5\6\7\x08\x09\x0a\x0b\x0c\x0d\x0e\x0f\x10"s, cInvalid},
    {"unhex", "a sign of a string in front", "<01>", "", cInvalid},
    {"85", "nothing", "", "~>"},
    {"85", "the highest group", "\xFF\xFF\xFF\xFF", "s8W-!~>"},
    {"85", "zeros", "\0\0\0\0\0\0\0\0\0"s, "zz!!~>"},
    {"85", "zeros among others", "Man \0\0\0\0Man \0\0\0\0Man \0\0\0\1"s, "9jqo^z9jqo^z9jqo^!!!!\"~>"},
    {"85", "one byte left", "M", "9`~>"},
    {"un85", "white space everywhere", " 9j\nqo\0^z \t\f\r~ \n >"s, "Man \0\0\0\0"s},
    {"un85", "a start mark behind white space", " \n<~9jqo^~>", "Man "},
    {"un85", "a first digit like that of the start mark", "<+oue~>", "This"},
    {"un85", "nothing but marks", "<~~>", ""},
    {"un85", "no end mark", "9jqo^9jqo", "Man Man"},
    {"un85", "half an end mark", "9jqo^~", "Man "},
    {"un85", "a single character", "9jqo^9~>", "Man ", cInvalid},
    {"un85", "a single character and no end mark", "9jqo^9", "Man ", cTruncated},
    {"un85", "another byte behind the tilde", "9jqo^~~>", "Man ", cInvalid},
    {"un85", "zeros inside a group", "9jqo^9zjqo~>", "Man ", cInvalid},
    {"un85", "no digit", "9jqo^9v", "Man ", cInvalid},
    {"un85", "a byte above all", "9jqo^\xFF\xFE", "Man ", cInvalid},
    {"un85", "the highest group", "9jqo^s8W-!~>", "Man \xFF\xFF\xFF\xFF"},
    {"un85", "one above it", "9jqo^s8W-\"~>", "Man ", cInvalid},
    {"un85", "one above it among others", "9jqo^s8W-\"9jqo^9jqo^~>", "Man ", cInvalid},
    {"un85", "a last group above it", "9jqo^s9~>", "Man ", cInvalid},
    {"runs", "nothing", "", "\x80"},
    {"runs", "two equal ones at the start", "\5\5\6", "\xFF\5\0\6\x80"s},
    {"runs", "two equal ones inside", "\4\5\5\6", "\3\4\5\5\6\x80"},
    {"runs", "three equal ones inside", "\1\2\2\2\3", "\0\1\xFE\2\0\3\x80"s},
    {"runs", "128 equal ones", std::string(128, 'x'), "\x81x\x80"},
    {"runs", "130 equal ones", std::string(130, 'x'), "\x81x\xFFx\x80"},
    {"runs", "129 different ones", Pattern(129), "\x7F" + Pattern(128) + "\0"s + Pattern(129)[128] + "\x80"},
    {"runs", "three equal ones over the end of a full run", Pattern(126) + "yyy",
     "\x7F" + Pattern(126) + "yy\0y\x80"s},
    {"runs", "three equal ones at the end of a full run", Pattern(125) + "yyy",
     "\x7C" + Pattern(125) + "\xFEy\x80"},
    {"unruns", "all kinds of runs", "\2abc\xFDx\0d\x80rest"s, "abcxxxxd"},
    {"unruns", "the longest ones", "\x81x\x7F" + Pattern(128) + "\x80", std::string(128, 'x') + Pattern(128)},
    {"unruns", "no end mark", "\0a\xFFx"s, "axx"},
    {"unruns", "a cut run of different bytes", "\0a\5bcd"s, "abcd", cTruncated},
    {"unruns", "a cut run of equal bytes", "\0a\xFF"s, "a", cTruncated},
    {"lzw", "nothing", "", "\x80\x40\x40"},
    {"lzw", "strings that come again", "-----A---B", "\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01"},
    {"unlzw", "strings that come again", "\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01rest", "-----A---B"},
    {"unlzw", "no clear code in front", Codes({45, 258, 257}), "---"},
    {"unlzw", "two clear codes", Codes({256, 256, 45, 256, 46, 257}), "-."},
    {"unlzw", "nothing", "", ""},
    {"unlzw", "no end code", Codes({256, 45, 46}), "-."},
    {"unlzw", "half a code", Codes({256, 45, 46, 47}).substr(0, 4), "-.", cTruncated},
    {"unlzw", "a code of a string that is not there", Codes({256, 45, 46, 260}), "-.", cInvalid},
    {"unlzw", "a string behind a clear code", Codes({256, 258}), "", cInvalid},
    {"none 3", "a short last row", "abcd", "\0abc\0d"s},
    {"sub 3 x 3 x 4", "pixels of twelve bits count as two bytes", "\1\2\3\4\5", "\1\1\2\2\2\2"},
    {"paeth 3", "two rows", "\4\5\6\1\11\5", "\4\4\1\1\4\xFD\x08\xFC"},
    {"un-up 3", "another tag", "\0abc\1\1\1\1"s, "abc\1\2\3"},
    {"un-any 3", "all tags", "\0\1\2\3\1\1\1\1\2\0\0\1\3\1\1\1\4\1\1\1"s, "\1\2\3\1\2\3\1\2\4\1\2\4\2\3\5"},
    {"un-any 3", "an unknown tag", "\2abc\5abc", "abc", cWrongTag},
    {"un-any 3", "a short last row", "\2abc\2\1\1", "abcbc", cTruncated},
    {"un-any 3", "a tag and no row", "\2abc\2", "abc", cTruncated},
    {"3 zeros", "nothing", "", "\0\0\0"s},
    {"3 zeros", "bytes", "ab", "ab\0\0\0"s},
    {"pad 3 to 5", "nothing", "", ""},
    {"pad 3 to 5", "whole rows", "abcdef", "abcxxdefxx"},
    {"pad 3 to 5", "an unfinished row", "abcd", "abcxxdxxxx"},
    {"pad 3 to 3", "an unfinished row", "abcd", "abcd\0\0"s},
    {"expand 1 to 8", "rows fill bytes", "\xBF\x40", "\xFF\0\xFF\0\xFF\0"s},
    {"expand 2 to 4", "rows fill bytes", "\x1B\xFF", "\x05\xA0\xFF\xF0"},
    {"expand 8 to 16", "an unfinished row", "\0\x80"s, "\0\0\x80\x80"s, cTruncated},
    {"compress 8 to 4", "to the nearest value", "\x08\x09\xF7\xFF\xF6\x7F", "\x01\xF0\xFE\x70"},
    {"compress 16 to 1", "rows fill bytes", "\x7F\xFF\x80\0"s, "\x40"},
};

TEST(Filter, GivesTheSameInEverySizeAndFromAClone) {
    for (const auto& row : cRows) {
        SCOPED_TRACE(std::string(row.filter) + ": " + row.what);
        for (const long piece : {1L, 3L, cAll}) {
            ExpectEverywhere([&] { return FilterOf(cFilters.at(row.filter), row.input, piece); },
                             {row.output, row.failure});
        }
    }
}

// Whatever is cut off, what comes out is what came in, as far as it goes, and then the end or its lack.
TEST(Filter, DeliversWhatIsWholeOfCutData) {
    const std::string input = "abc" + std::string(9, '\0') + "defghijjjjj" + Pattern(5);
    const std::pair<const char*, const char*> pairs[] = {
        {"hex", "unhex"}, {"hex lines", "unhex"},    {"85", "un85"}, {"85 lines", "un85"}, {"runs", "unruns"},
        {"lzw", "unlzw"}, {"lzw late", "unlzw late"}};
    for (const auto& [encoder, decoder] : pairs) {
        SCOPED_TRACE(encoder);
        const std::string encoded = OutcomeOf(cFilters.at(encoder), input).bytes;
        for (std::size_t length = 0; length < encoded.size(); ++length) {
            const Outcome outcome = OutcomeOf(cFilters.at(decoder), encoded.substr(0, length));
            EXPECT_TRUE(outcome.failure == 0 || outcome.failure == cTruncated) << outcome.failure;
            // The characters of a group of five decide its bytes together, as the two digits of a byte do.
            const std::size_t sure = outcome.bytes.empty() ? 0 : (outcome.bytes.size() - 1) / 4 * 4;
            EXPECT_EQ(outcome.bytes.substr(0, sure), input.substr(0, sure)) << length;
            EXPECT_EQ(OutcomeOf(*FilterOf(cFilters.at(decoder), encoded.substr(0, length), 1), 1), outcome);
        }
    }
}

// What the rows become is held against other programs in the proof.
TEST(PNGFilter, BringsBackAllPixels) {
    for (const long bits : {1L, 2L, 4L, 8L, 16L}) {
        for (const long colours : {1L, 2L, 3L, 4L, 5L, 9L}) {
            for (const long columns : {1L, 5L, 67L}) {
                SCOPED_TRACE(testing::Message() << bits << " " << colours << " " << columns);
                const auto rowLength = static_cast<std::size_t>((columns * colours * bits + 7) / 8);
                const Outcome input = {MixedBytes(rowLength * 9, static_cast<unsigned>(colours)), 0};
                for (const FilterMaker& encoder : PNGEncoders(columns, colours, bits)) {
                    const std::string encoded = OutcomeOf(encoder, input.bytes).bytes;
                    const FilterMaker decoder = Maker<GPNGPaethDecode>(columns, colours, bits);
                    ASSERT_EQ(OutcomeOf(decoder, encoded), input);
                    ASSERT_EQ(OutcomeOf(*FilterOf(decoder, encoded, 13), 7), input);
                }
            }
        }
    }
}

TEST(Filter, RefusesParametersOutOfRange) {
    const auto expectRefusal = [](const std::vector<FilterMaker>& makers) {
        for (const FilterMaker& make : makers) EXPECT_EQ(ThrownBy([&] { FilterOf(make, ""); }), 40017);
    };
    expectRefusal({Maker<GLZWEncode>(2L), Maker<GLZWDecode>(-1L), Maker<GPNGUpDecode>(0L),
                   Maker<GPNGUpDecode>(1L, 0L), Maker<GPNGUpDecode>(1L, 65536L),
                   Maker<GPNGUpEncode>(1L, 1L, 3L), Maker<GPNGUpEncode>(1L, 1L, 32L),
                   Maker<GPNGSubDecode>(0x7FFFFFFFL, 0x7FFFFFFFL, 16L)});
    expectRefusal({Maker<GAddZeroes>(-1LL), Maker<GLinePadder>(0L, 5L), Maker<GLinePadder>(5L, 4L),
                   Maker<GLinePadder>(5L, 6L, 256L), Maker<GBitExpander>(1L, 1L, 8L, 4L),
                   Maker<GBitExpander>(1L, 1L, 0L, 4L), Maker<GBitExpander>(0x7FFFFFFFL, 0x7FFFFFFFL, 1L, 1L),
                   Maker<GBitExpander>(std::numeric_limits<long>::max(), 32L, 1L, 1L),
                   Maker<GBitCompressor>(1L, 1L, 4L, 8L), Maker<GBitCompressor>(1L, 1L, 17L, 8L)});
}

template <class Decoder>
void ExpectRestGivenBack(const char* encoder) {
    for (const std::size_t length : {0u, 10u, 5000u}) {
        const GBuffer data = BufferOf(OutcomeOf(cFilters.at(encoder), Pattern(length)).bytes + "\nrest");
        GMemoryInStream source(data);
        Decoder filter(source);
        EXPECT_EQ(ReadAll(filter, 1000), Pattern(length)) << encoder;
        EXPECT_EQ(ReadAll(source, 100), "\nrest") << encoder;
    }
}

TEST(Filter, GivesBackWhatStandsBehindTheEndMark) {
    ExpectRestGivenBack<GHexDecode>("hex");
    ExpectRestGivenBack<GASCII85Decode>("85");
    ExpectRestGivenBack<GRunLengthDecode>("runs");
    ExpectRestGivenBack<GLZWDecode>("lzw");
}

TEST(Filter, PassesOnWhatItsSourceThrowsBehindWhatCameBefore) {
    auto* const source = new PieceStream("3031323334353637", 2);
    GHexDecode filter(source);
    source->mBeforeRead = [source, failed = false]() mutable {
        if (source->mPosition == 4 && !std::exchange(failed, true)) throw GAbortException();
    };
    GBuffer out;
    EXPECT_EQ(filter.Read(out, 100), 2);
    EXPECT_EQ(BytesOf(out), "01");
    EXPECT_THROW(filter.Read(out, 100), GAbortException);
    EXPECT_EQ(filter.Read(out, 100), 6);
    EXPECT_EQ(BytesOf(out), "234567");
}

TEST(Filter, DecodesWhatItsEncoderWroteAlsoBehindOthers) {
    const std::string inputs[] = {"", "a", std::string(100000, '\0'), Pattern(20000), MixedBytes(100000, 1)};
    for (const std::string& input : inputs) {
        for (const long size : {7L, 4096L, cAll}) {
            auto* const source = new PieceStream(input, 1000);
            const auto stream = ChainOf({"lzw", "lzw late", "runs", "85 lines", "85", "hex", "hex lines",
                                         "unhex", "unhex", "un85", "un85", "unruns", "unlzw late", "unlzw"},
                                        source);
            ASSERT_EQ(OutcomeOf(*stream, size), (Outcome{input, 0}))
                << input.size() << " in pieces of " << size;
        }
    }
    EXPECT_THROW(GHexDecode(static_cast<GInStream*>(nullptr)), GSimpleException);
}

TEST(Filter, BreaksLinesBehindEightyCharactersAndNeverInsideTheEndMark) {
    const std::regex lines("([^\n]{80}\n)*([^\n]{79}\n~>|[^\n]{1,80})");
    for (std::size_t length = 55; length < 140; ++length) {
        for (const char* name : {"hex lines", "85 lines"}) {
            const std::string text = OutcomeOf(cFilters.at(name), MixedBytes(length, 3)).bytes;
            EXPECT_TRUE(std::regex_match(text, lines)) << name << ":\n" << text;
        }
    }
}

}  // namespace
