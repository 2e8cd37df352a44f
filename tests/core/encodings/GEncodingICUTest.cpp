// Compares encodings, composition and case mapping with the International Components for Unicode, an
// independent implementation, over every byte and every UTF-16 unit. The differences that are meant
// stand in tables beside their reasons. Runs in the native build only.
#include <unicode/normalizer2.h>
#include <unicode/ucnv.h>

#include <set>

#include "framework/core/encodings/GUnicodeCharacters.h"
#include "tests/core/encodings/EncodingForTests.h"

namespace {

constexpr char16_t cNone = 0xFFFD;  // how both sides say here that there is no character

class PeerConverter {
public:
    explicit PeerConverter(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        UConverter* const opened = ucnv_open(name, &status);
        mConverter.adoptInstead(opened);
        ucnv_setFallback(opened, false);
        ucnv_setFromUCallBack(opened, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
        ucnv_setToUCallBack(opened, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
        if (U_FAILURE(status)) throw std::runtime_error(name);
    }

    char16_t Read(std::string_view bytes) const {
        UErrorCode status = U_ZERO_ERROR;
        const auto length = static_cast<int32_t>(bytes.size());
        const icu::UnicodeString units(bytes.data(), length, mConverter.getAlias(), status);
        return U_SUCCESS(status) && units.length() == 1 ? units[0] : cNone;
    }

    std::string Write(char16_t unit) const {
        UErrorCode status = U_ZERO_ERROR;
        char bytes[8];
        const int32_t count = ucnv_fromUChars(mConverter.getAlias(), bytes, sizeof bytes, &unit, 1, &status);
        return U_FAILURE(status) ? std::string() : std::string(bytes, static_cast<std::size_t>(count));
    }

private:
    icu::LocalUConverterPointer mConverter;
};

char16_t ReadOne(const GEncoding* encoding, std::string_view bytes) {
    const Conversion read = Read(encoding, bytes);
    return read.result == GEncoding::cConverted && read.text.size() == 1 ? read.text[0] : cNone;
}

std::string WriteOne(const GEncoding* encoding, char16_t unit) {
    const Written written = Write(encoding, std::u16string_view(&unit, 1));
    return written.result == GEncoding::cConverted ? written.text : std::string();
}

TEST(GEncodingICU, EveryByteIsReadAndEveryUnitWrittenAlike) {
    // With the codes that have another character here, or none.
    const std::tuple<const GEncoding*, const char*, std::string> peers[] = {
        {ASCII(), "US-ASCII", ""},
        // The peers give codes without a character the control characters of the same number.
        {WinAnsi(), "windows-1252", "\x7F\x81\x8D\x8F\x90\x9D"},
        {Standard(), "Adobe-Standard-Encoding",
         "\x7F\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8D\x8E\x8F"
         "\x90\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9D\x9E\x9F"},
        // The system's own set has mathematical signs and the maker's sign, which the published column leaves
        // out, and the euro in the place of the currency sign.
        {MacRoman(), "macintosh", "\x7F\xAD\xB0\xB2\xB3\xB6\xB7\xB8\xB9\xBA\xBD\xC3\xC5\xC6\xD7\xDB\xF0"}};
    for (const auto& [encoding, name, differentCodes] : peers) {
        SCOPED_TRACE(name);
        const PeerConverter peer(name);
        const auto differs = [&differences = differentCodes](const std::string& code) {
            return code.empty() || differences.find(code) != std::string::npos;
        };
        for (int code = 0; code < 256; ++code) {
            const std::string byte(1, static_cast<char>(code));
            const char16_t ours = ReadOne(encoding, byte);
            EXPECT_EQ(ours != peer.Read(byte), differs(byte)) << code;
            if (differs(byte)) {
                EXPECT_EQ(ours, code == 0xDB ? u'\u00A4' : cNone) << code;
            }
        }
        for (int unit = 0; unit < 0x10000; ++unit) {
            const std::string ours = WriteOne(encoding, static_cast<char16_t>(unit));
            const std::string theirs = peer.Write(static_cast<char16_t>(unit));
            EXPECT_TRUE(ours == theirs || (differs(ours) && differs(theirs))) << std::hex << unit;
        }
    }
}

// The encoding is the system's, whose converter is an implementation of its own. The peer has three
// control codes in each other's places and a private character; the system also writes signs that look
// alike as those of the code page.
TEST(GEncodingICU, ShiftJISIsReadAndWrittenAlike) {
    const PeerConverter peer("windows-31j");
    const std::string controls("\x1A\x1C\x7F");
    for (int lead = 0; lead < 256; ++lead) {
        std::string bytes(1, static_cast<char>(lead));
        if (controls.find(bytes) != bytes.npos) continue;
        const bool isWhole = peer.Read(bytes) != cNone;
        ASSERT_EQ(ReadOne(ShiftJIS(), bytes), peer.Read(bytes)) << lead;
        for (int trail = 0; !isWhole && trail < 256; ++trail) {
            const std::string both = bytes + static_cast<char>(trail);
            ASSERT_EQ(ReadOne(ShiftJIS(), both), peer.Read(both)) << lead << ", " << trail;
        }
    }
    const auto written = u"\x1A\x1C\x7F\u00A2\u00A3\u00A5\u00AC\u2014\u2016\u203E\u2212\u301C\uF86F"sv;
    for (int unit = 0; unit < 0x10000; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        const bool isAlike = WriteOne(ShiftJIS(), character) == peer.Write(character);
        ASSERT_EQ(isAlike, written.find(character) == written.npos) << std::hex << unit;
    }
}

TEST(GEncodingICU, EveryUnitGoesThroughUTF8Alike) {
    const PeerConverter converter("UTF-8");
    for (int unit = 0; unit < 0x10000; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        const std::string bytes = WriteOne(UTF8(), character);
        // The peer knows surrogates in pairs only; here each is written on its own.
        if (U16_IS_SURROGATE(unit)) {
            EXPECT_EQ(bytes.size(), 3u);
        } else {
            ASSERT_EQ(bytes, converter.Write(character)) << std::hex << unit;
        }
        ASSERT_EQ(Read(UTF8(), bytes), (Conversion{std::u16string(1, character), unit == 0 ? 2 : 1}));
    }
}

TEST(GEncodingICU, EveryPairOfBaseAndMarkComposesAlike) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2& peer = *icu::Normalizer2::getNFCInstance(status);
    std::set<char16_t> seconds;  // in the decomposition of another
    for (UChar32 unit = 0; unit < 0x10000; ++unit) {
        icu::UnicodeString parts;
        if (peer.getRawDecomposition(unit, parts) && parts.length() == 2) seconds.insert(parts[1]);
    }
    long composed = 0;
    for (const char16_t second : seconds) {
        std::u16string pairs, expected;  // of all bases, each with a line end behind it
        for (char16_t base = 1; base < 0xFFFF; ++base) {
            if (U16_IS_SURROGATE(base)) continue;
            pairs += {base, second, u'\n'};
            const UChar32 both = peer.composePair(base, second);
            if (both < 0) {
                expected += {base, second, u'\n'};
            } else {
                expected += {static_cast<char16_t>(both), u'\n'};
                ++composed;
            }
        }
        GBuffer ours = BufferOf(pairs);
        ASSERT_TRUE(Unicode()->EnsureComposedUnicode(ours) == BufferOf(expected)) << std::hex << int{second};
    }
    EXPECT_EQ(composed, 928 + 11172) << "the pairs of the table and the Hangul syllables";
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
        const auto known = [&](UChar32 to) { return to < 0x10000 && IsKnownHere(to) ? to : unit; };
        ASSERT_EQ(GUnicodeCharacters::ToLower(character), known(u_tolower(unit))) << std::hex << unit;
        ASSERT_EQ(GUnicodeCharacters::ToUpper(character), known(u_toupper(unit))) << std::hex << unit;
        ASSERT_EQ(GUnicodeCharacters::IsLetter(character), u_isalpha(unit) != 0) << std::hex << unit;
        ASSERT_EQ(GUnicodeCharacters::IsDigit(character), u_isdigit(unit) != 0) << std::hex << unit;
    }
}

TEST(GEncodingICU, EveryCompatibilityCharacterIsTheSame) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2& peer = *icu::Normalizer2::getNFKDInstance(status);
    for (UChar32 unit = 0; unit < 0x10000; ++unit) {
        if (!IsKnownHere(unit)) continue;
        GCharCode plain;
        if (!Unicode()->GetCompatChar(GCharCode(static_cast<unsigned short>(unit)), plain)) continue;
        icu::UnicodeString parts;
        ASSERT_TRUE(peer.getRawDecomposition(unit, parts) && parts.length() == 1) << std::hex << unit;
        ASSERT_EQ(plain.GetUnit(), parts[0]) << std::hex << unit;
    }
}

}  // namespace
