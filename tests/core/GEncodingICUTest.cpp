// Compares encodings, composition and case mapping with the International Components for Unicode, an
// independent implementation, over every byte and every UTF-16 unit. The differences that are meant
// stand in tables beside their reasons. Runs in the native build only.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <map>
#include <memory>
#include <set>

#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GCharCode.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GUnicodeCharacters.h"
#include "framework/core/GUnicodeComposition.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/TextForTests.h"

namespace {

constexpr char16_t cNone = 0xFFFD;  // how both sides say here that there is no character

class PeerConverter {
public:
    explicit PeerConverter(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        mConverter.reset(ucnv_open(name, &status));
        if (U_FAILURE(status)) throw std::runtime_error(name);
        ucnv_setFallback(mConverter.get(), false);
        ucnv_setFromUCallBack(mConverter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                              &status);
    }

    char16_t Read(unsigned char byte) const {
        UErrorCode status = U_ZERO_ERROR;
        char16_t units[4];
        const char text = static_cast<char>(byte);
        const int32_t count = ucnv_toUChars(mConverter.get(), units, 4, &text, 1, &status);
        return count == 1 ? units[0] : cNone;
    }

    std::string Write(char16_t unit) const {
        UErrorCode status = U_ZERO_ERROR;
        char bytes[8];
        const int32_t count = ucnv_fromUChars(mConverter.get(), bytes, sizeof bytes, &unit, 1, &status);
        return U_FAILURE(status) ? std::string() : std::string(bytes, static_cast<std::size_t>(count));
    }

private:
    struct Close {
        void operator()(UConverter* converter) const { ucnv_close(converter); }
    };
    std::unique_ptr<UConverter, Close> mConverter;
};

char16_t Read(const GEncoding* encoding, unsigned char byte) {
    GBuffer out;
    const long result = encoding->ConvertTo(GBuffer(&byte, 1), GUnicodeEncoding::GetInstance(), out);
    return result == GEncoding::cConverted ? static_cast<char16_t>(out.GetWordAt(0)) : cNone;
}

std::string Write(const GEncoding* encoding, char16_t unit) {
    GBuffer out;
    const GBuffer utf16 = BufferOf(std::u16string_view(&unit, 1));
    const long result = encoding->ConvertFrom(utf16, GUnicodeEncoding::GetInstance(), out);
    return result == GEncoding::cConverted ? BytesOf(out) : std::string();
}

struct Peer {
    const GEncoding* encoding;
    const char* name;
    // Codes in which the two differ, with our character.
    std::map<unsigned char, char16_t> differences;
};

std::vector<Peer> GetSingleBytePeers() {
    return {
        {GASCIIEncoding::GetInstance(), "US-ASCII", {}},
        // The peer gives the codes without a character the control characters of the same number.
        {GWinAnsiEncoding::GetInstance(),
         "windows-1252",
         {{0x7F, cNone}, {0x81, cNone}, {0x8D, cNone}, {0x8F, cNone}, {0x90, cNone}, {0x9D, cNone}}},
        // The system's own set has mathematical signs and the maker's sign, which the published column
        // leaves out, and the euro in the place of the currency sign.
        {GMacRomanEncoding::GetInstance(),
         "macintosh",
         {{0x7F, cNone},
          {0xAD, cNone},
          {0xB0, cNone},
          {0xB2, cNone},
          {0xB3, cNone},
          {0xB6, cNone},
          {0xB7, cNone},
          {0xB8, cNone},
          {0xB9, cNone},
          {0xBA, cNone},
          {0xBD, cNone},
          {0xC3, cNone},
          {0xC5, cNone},
          {0xC6, cNone},
          {0xD7, cNone},
          {0xDB, u'\u00A4'},
          {0xF0, cNone}}},
    };
}

TEST(GEncodingICU, EveryByteReadsAlike) {
    for (const Peer& peer : GetSingleBytePeers()) {
        SCOPED_TRACE(peer.name);
        const PeerConverter converter(peer.name);
        for (int byte = 0; byte < 256; ++byte) {
            const auto code = static_cast<unsigned char>(byte);
            const auto difference = peer.differences.find(code);
            const char16_t ours = Read(peer.encoding, code);
            if (difference == peer.differences.end()) {
                EXPECT_EQ(ours, converter.Read(code)) << byte;
            } else {
                EXPECT_EQ(ours, difference->second) << byte;
                EXPECT_NE(ours, converter.Read(code)) << byte << " does not differ any more";
            }
        }
    }
}

TEST(GEncodingICU, EveryUnitIsWrittenAlike) {
    for (const Peer& peer : GetSingleBytePeers()) {
        SCOPED_TRACE(peer.name);
        const PeerConverter converter(peer.name);
        std::set<std::string> differentCodes;
        for (const auto& [code, unit] : peer.differences)
            differentCodes.insert(std::string(1, static_cast<char>(code)));
        for (int unit = 0; unit < 0x10000; ++unit) {
            const std::string ours = Write(peer.encoding, static_cast<char16_t>(unit));
            const std::string theirs = converter.Write(static_cast<char16_t>(unit));
            if (ours == theirs) continue;
            EXPECT_TRUE((ours.empty() || differentCodes.count(ours)) &&
                        (theirs.empty() || differentCodes.count(theirs)))
                << std::hex << unit;
        }
    }
}

TEST(GEncodingICU, EveryUnitGoesThroughUTF8Alike) {
    const PeerConverter converter("UTF-8");
    for (int unit = 0; unit < 0x10000; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        const std::string bytes = Write(GUTF8Encoding::GetInstance(), character);
        // The peer knows surrogates in pairs only; here each is written on its own.
        if (U16_IS_SURROGATE(unit)) {
            EXPECT_EQ(bytes.size(), 3u);
        } else {
            ASSERT_EQ(bytes, converter.Write(character)) << std::hex << unit;
        }
        GBuffer units;
        const long result =
            GUTF8Encoding::GetInstance()->ConvertTo(BufferOf(bytes), GUnicodeEncoding::GetInstance(), units);
        ASSERT_EQ(result, unit == 0 ? 2 : 1);
        ASSERT_EQ(UnitsOf(units), std::u16string(1, character));
    }
}

const UNormalizer2* GetNormalizer() {
    UErrorCode status = U_ZERO_ERROR;
    return unorm2_getNFCInstance(&status);
}

// All characters that stand second in the decomposition of another.
std::set<char16_t> GetSecondUnits() {
    std::set<char16_t> seconds;
    for (UChar32 unit = 0; unit < 0x10000; ++unit) {
        UErrorCode status = U_ZERO_ERROR;
        char16_t parts[8];
        const int32_t count = unorm2_getRawDecomposition(GetNormalizer(), unit, parts, 8, &status);
        if (count == 2) seconds.insert(parts[1]);
    }
    return seconds;
}

TEST(GEncodingICU, EveryPairOfBaseAndMarkComposesAlike) {
    const std::set<char16_t> seconds = GetSecondUnits();
    EXPECT_GT(seconds.size(), 100u);
    long composed = 0;
    for (const char16_t second : seconds) {
        for (int base = 0; base < 0x10000; ++base) {
            const UChar32 theirs = unorm2_composePair(GetNormalizer(), base, second);
            const std::uint16_t ours = GUnicodeComposition::Compose(static_cast<std::uint16_t>(base), second);
            ASSERT_EQ(ours, theirs < 0 ? 0 : theirs) << std::hex << base << " " << int{second};
            composed += ours != 0 ? 1 : 0;
        }
    }
    EXPECT_EQ(composed, 928 + 11172) << "the pairs of the table and the Hangul syllables";
}

std::u16string Normalize(const std::u16string& units) {
    UErrorCode status = U_ZERO_ERROR;
    char16_t out[16];
    const int32_t count =
        unorm2_normalize(GetNormalizer(), units.data(), static_cast<int32_t>(units.size()), out, 16, &status);
    return std::u16string(out, static_cast<std::size_t>(count));
}

TEST(GEncodingICU, TextsOfABaseAndAMarkBecomeTheSame) {
    const std::set<char16_t> seconds = GetSecondUnits();
    for (int base = 1; base < 0x10000; ++base) {
        const std::u16string start(1, static_cast<char16_t>(base));
        // Composing does not replace single characters, as full normalization does.
        if (Normalize(start) != start) continue;
        for (const char16_t second : seconds) {
            if (unorm2_composePair(GetNormalizer(), base, second) < 0) continue;
            GBuffer text = BufferOf(start + second);
            GUnicodeEncoding::GetInstance()->EnsureComposedUnicode(text);
            ASSERT_EQ(UnitsOf(text), Normalize(start + second)) << std::hex << base << " " << int{second};
        }
    }
}

TEST(GEncodingICU, EveryDecomposedCharacterComesBack) {
    for (UChar32 unit = 0; unit < 0x10000; ++unit) {
        UErrorCode status = U_ZERO_ERROR;
        char16_t parts[32];
        const int32_t count = unorm2_getDecomposition(GetNormalizer(), unit, parts, 32, &status);
        const std::u16string original(1, static_cast<char16_t>(unit));
        // Characters that normal form C excludes do not come back there, either.
        if (count < 2 || Normalize(original) != original) continue;
        GBuffer text = BufferOf(std::u16string_view(parts, static_cast<std::size_t>(count)));
        GUnicodeEncoding::GetInstance()->EnsureComposedUnicode(text);
        ASSERT_EQ(UnitsOf(text), original) << std::hex << unit;
    }
}

// The tables are those of Unicode 14; the peer may know characters of a later version.
bool IsKnownHere(UChar32 unit) {
    UVersionInfo age;
    u_charAge(unit, age);
    return age[0] != 0 && age[0] <= 14;
}

TEST(GEncodingICU, EveryUnitHasTheSameCaseAndClass) {
    for (UChar32 unit = 0; unit < 0x10000; ++unit) {
        if (!IsKnownHere(unit)) continue;
        const auto character = static_cast<unsigned short>(unit);
        const UChar32 lower = u_tolower(unit);
        const UChar32 upper = u_toupper(unit);
        const bool lowerIsKnown = lower < 0x10000 && IsKnownHere(lower);
        const bool upperIsKnown = upper < 0x10000 && IsKnownHere(upper);
        ASSERT_EQ(GUnicodeCharacters::ToLower(character), lowerIsKnown ? lower : unit) << std::hex << unit;
        ASSERT_EQ(GUnicodeCharacters::ToUpper(character), upperIsKnown ? upper : unit) << std::hex << unit;
        ASSERT_EQ(GUnicodeCharacters::IsLetter(character), u_isalpha(unit) != 0) << std::hex << unit;
        ASSERT_EQ(GUnicodeCharacters::IsDigit(character), u_isdigit(unit) != 0) << std::hex << unit;
    }
}

TEST(GEncodingICU, EveryCompatibilityCharacterIsTheSame) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* compatibility = unorm2_getNFKDInstance(&status);
    for (UChar32 unit = 0; unit < 0x10000; ++unit) {
        if (!IsKnownHere(unit)) continue;
        GCharCode plain;
        if (!GUnicodeEncoding::GetInstance()->GetCompatChar(GCharCode(static_cast<unsigned short>(unit)),
                                                            plain))
            continue;
        char16_t parts[32];
        const int32_t count = unorm2_getRawDecomposition(compatibility, unit, parts, 32, &status);
        ASSERT_EQ(count, 1) << std::hex << unit;
        ASSERT_EQ(plain.GetUnit(), parts[0]) << std::hex << unit;
    }
}

}  // namespace
