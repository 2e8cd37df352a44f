#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GCharCode.h"
#include "framework/core/GMacExpertEncoding.h"
#include "framework/core/GMacRomanEncoding.h"
#include "framework/core/GPDFDocEncoding.h"
#include "framework/core/GShiftJISEncoding.h"
#include "framework/core/GStandardEncoding.h"
#include "framework/core/GUTF8Encoding.h"
#include "framework/core/GUnicodeEncoding.h"
#include "framework/core/GWinAnsiEncoding.h"
#include "tests/core/EncodingForTests.h"

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::vector<const GSimpleEncoding*> GetTableEncodings() {
    return {GWinAnsiEncoding::GetInstance(), GMacRomanEncoding::GetInstance(),
            GMacExpertEncoding::GetInstance(), GStandardEncoding::GetInstance(),
            GPDFDocEncoding::GetInstance()};
}

/// Sets the default character for a scope.
class DefaultCharacter {
public:
    explicit DefaultCharacter(char character) { GEncoding::SetDefaultCharacter(character); }
    ~DefaultCharacter() { GEncoding::SetDefaultCharacter('@'); }
};

TEST(GEncoding, EachKnowsItsNameAndNoOther) {
    const struct {
        const GEncoding* encoding;
        const char* name;
    } rows[] = {
        {GASCIIEncoding::GetInstance(), "ASCIIEncoding"},
        {GUnicodeEncoding::GetInstance(), "UnicodeEncoding"},
        {GUTF8Encoding::GetInstance(), "UTF-8Encoding"},
        {GSimpleEncoding::GetInstance(), "SimpleEncoding"},
        {GWinAnsiEncoding::GetInstance(), "WinAnsiEncoding"},
        {GMacRomanEncoding::GetInstance(), "MacRomanEncoding"},
        {GMacExpertEncoding::GetInstance(), "MacExpertEncoding"},
        {GStandardEncoding::GetInstance(), "StandardEncoding"},
        {GPDFDocEncoding::GetInstance(), "PDFDocEncoding"},
        {GPlatformEncoding::GetInstance(), "WinPlatformEncoding_CodePage"},
        {GShiftJISEncoding::GetInstance(), "ShiftJISEncoding"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(BytesOf(row.encoding->GetASCIIDescription()), row.name);
        EXPECT_TRUE(row.encoding->IsOfType(GBuffer(row.name)));
        std::string lower(row.name);
        lower[0] = static_cast<char>(std::tolower(lower[0]));
        EXPECT_FALSE(row.encoding->IsOfType(GBuffer(lower.c_str())));
        for (const auto& other : rows)
            EXPECT_EQ(row.encoding->IsOfType(GBuffer(other.name)), row.encoding == other.encoding)
                << other.name;
    }
}

TEST(GEncoding, SingleBytesHaveTheirPublishedCharacters) {
    const struct {
        const char* what;
        const GEncoding* encoding;
        unsigned char code;
        char16_t unit;
    } rows[] = {
        {"WinAnsi euro", GWinAnsiEncoding::GetInstance(), 0x80, u'\u20AC'},
        {"WinAnsi bullet", GWinAnsiEncoding::GetInstance(), 0x95, u'\u2022'},
        {"WinAnsi no-break space", GWinAnsiEncoding::GetInstance(), 0xA0, u'\u00A0'},
        {"WinAnsi soft hyphen", GWinAnsiEncoding::GetInstance(), 0xAD, u'\u00AD'},
        {"WinAnsi y with two dots", GWinAnsiEncoding::GetInstance(), 0xFF, u'\u00FF'},
        {"WinAnsi single quote", GWinAnsiEncoding::GetInstance(), 0x27, u'\''},
        {"MacRoman a with two dots", GMacRomanEncoding::GetInstance(), 0x8A, u'\u00E4'},
        {"MacRoman no-break space", GMacRomanEncoding::GetInstance(), 0xCA, u'\u00A0'},
        {"MacRoman currency", GMacRomanEncoding::GetInstance(), 0xDB, u'\u00A4'},
        {"MacRoman fi", GMacRomanEncoding::GetInstance(), 0xDE, u'\uFB01'},
        {"Standard right quote", GStandardEncoding::GetInstance(), 0x27, u'\u2019'},
        {"Standard AE", GStandardEncoding::GetInstance(), 0xE1, u'\u00C6'},
        {"PDFDoc breve", GPDFDocEncoding::GetInstance(), 0x18, u'\u02D8'},
        {"PDFDoc euro", GPDFDocEncoding::GetInstance(), 0xA0, u'\u20AC'},
        {"PDFDoc bullet", GPDFDocEncoding::GetInstance(), 0x80, u'\u2022'},
        {"expert AE small", GMacExpertEncoding::GetInstance(), 0xBE, u'\uF7E6'},
        {"expert one half", GMacExpertEncoding::GetInstance(), 0x48, u'\u00BD'},
        {"ASCII tilde", GASCIIEncoding::GetInstance(), 0x7E, u'~'},
        {"ASCII delete", GASCIIEncoding::GetInstance(), 0x7F, u'\x7F'},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const std::string byte(1, static_cast<char>(row.code));
        const Conversion read = Read(row.encoding, byte);
        EXPECT_EQ(read.units, std::u16string(1, row.unit));
        EXPECT_EQ(read.result, 1);
        const Written written = Write(row.encoding, std::u16string(1, row.unit));
        EXPECT_EQ(written.bytes, byte);
        EXPECT_EQ(written.result, 1);
    }
}

TEST(GEncoding, WhatHasNoCharacterBecomesTheDefaultCharacter) {
    const struct {
        const char* what;
        const GEncoding* encoding;
        std::string_view bytes;
        std::u16string units;
    } rows[] = {
        {"WinAnsi delete and free codes", GWinAnsiEncoding::GetInstance(), "\x7F\x81\x8D\x8F\x90\x9D",
         u"@@@@@@"},
        {"WinAnsi among others", GWinAnsiEncoding::GetInstance(), "a\x81z", u"a@z"},
        {"MacRoman without mathematics", GMacRomanEncoding::GetInstance(), "\xAD\xB0\xF0", u"@@@"},
        {"PDFDoc free codes", GPDFDocEncoding::GetInstance(), "\x7F\x9F\xAD", u"@@@"},
        {"Standard above the letters", GStandardEncoding::GetInstance(), "\xFF", u"@"},
        {"ASCII above 0x7F", GASCIIEncoding::GetInstance(), "a\x80\xFFz", u"a@@z"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const Conversion read = Read(row.encoding, row.bytes);
        EXPECT_EQ(read.units, row.units);
        EXPECT_EQ(read.result, 2);
    }
}

TEST(GEncoding, WhatHasNoCodeBecomesTheDefaultCharacter) {
    const struct {
        const char* what;
        const GEncoding* encoding;
        std::u16string_view units;
        std::string bytes;
    } rows[] = {
        {"a Chinese character in WinAnsi", GWinAnsiEncoding::GetInstance(), u"a\u4E00b", "a@b"},
        {"delete in WinAnsi", GWinAnsiEncoding::GetInstance(), u"\x7F", "@"},
        {"a surrogate pair in WinAnsi is two units", GWinAnsiEncoding::GetInstance(), u"\xD83D\xDE00", "@@"},
        {"a control whose code PDFDoc uses", GPDFDocEncoding::GetInstance(), u"\x18", "@"},
        {"a Latin letter in the expert set", GMacExpertEncoding::GetInstance(), u"A", "@"},
        {"a Latin-1 letter in ASCII", GASCIIEncoding::GetInstance(), u"caf\u00E9", "caf@"},
        {"the unit whose low byte is a letter", GASCIIEncoding::GetInstance(), u"\u0141", "@"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const Written written = Write(row.encoding, row.units);
        EXPECT_EQ(written.bytes, row.bytes);
        EXPECT_EQ(written.result, 2);
    }
}

TEST(GEncoding, ControlCodesSurviveInEverySingleByteEncoding) {
    std::string controls;
    for (char control = 0; control < 0x18; ++control) controls += control;
    for (const GSimpleEncoding* encoding : GetTableEncodings()) {
        SCOPED_TRACE(BytesOf(encoding->GetASCIIDescription()));
        const Conversion read = Read(encoding, controls);
        EXPECT_EQ(read.result, 1);
        EXPECT_EQ(read.units, std::u16string(controls.begin(), controls.end()));
        EXPECT_EQ(Write(encoding, read.units).bytes, controls);
    }
    EXPECT_EQ(Read(GWinAnsiEncoding::GetInstance(), "\x1F").units, u"\x1F");
}

TEST(GEncoding, EveryMappedByteComesBack) {
    const long mapped[] = {32 + 218, 32 + 208, 32 + 165, 32 + 149, 24 + 229};
    const auto encodings = GetTableEncodings();
    for (std::size_t i = 0; i < encodings.size(); ++i) {
        SCOPED_TRACE(BytesOf(encodings[i]->GetASCIIDescription()));
        long count = 0;
        for (int code = 0; code < 256; ++code) {
            if (!encodings[i]->HasMapping(static_cast<unsigned char>(code))) continue;
            ++count;
            const std::string byte(1, static_cast<char>(code));
            EXPECT_EQ(Write(encodings[i], Read(encodings[i], byte).units).bytes, byte) << code;
        }
        EXPECT_EQ(count, mapped[i]);
    }
}

// The fast paths work on blocks of 16 and 64 elements: a special element must be met at each place in one.
TEST(GEncoding, ASpecialElementIsFoundAtEveryPlaceOfALongText) {
    const struct {
        const char* what;
        const GEncoding* encoding;
        std::string_view bytes;
        std::u16string_view units;
        long result;
    } rows[] = {
        {"WinAnsi delete", GWinAnsiEncoding::GetInstance(), "\x7F", u"@", 2},
        {"WinAnsi euro", GWinAnsiEncoding::GetInstance(), "\x80", u"\u20AC", 1},
        {"ASCII beyond", GASCIIEncoding::GetInstance(), "\x80", u"@", 2},
        {"UTF-8 two bytes", GUTF8Encoding::GetInstance(), "\xC3\xA9", u"\u00E9", 1},
        {"UTF-8 three bytes", GUTF8Encoding::GetInstance(), "\xE4\xB8\x80", u"\u4E00", 1},
        {"UTF-8 zero", GUTF8Encoding::GetInstance(), "\0"sv, u"\0"sv, 2},
    };
    for (const auto& row : rows) {
        for (std::size_t before = 0; before < 84; ++before) {
            for (const std::size_t after : {0u, 1u, 17u, 66u}) {
                SCOPED_TRACE(testing::Message()
                             << row.what << ", " << before << " before, " << after << " after");
                const std::string text =
                    std::string(before, 'x') + std::string(row.bytes) + std::string(after, 'y');
                const Conversion read = Read(row.encoding, text);
                EXPECT_EQ(read.units, std::u16string(before, 'x') + std::u16string(row.units) +
                                          std::u16string(after, 'y'));
                EXPECT_EQ(read.result, row.result);
                if (row.units == u"@") continue;
                EXPECT_EQ(Write(row.encoding, read.units).bytes, text);
            }
        }
    }
}

TEST(GEncoding, TheDefaultCharacterIsSignExtendedIntoUnits) {
    const DefaultCharacter questionMark('?');
    EXPECT_EQ(Write(GWinAnsiEncoding::GetInstance(), u"\u4E00").bytes, "?");
    EXPECT_EQ(Read(GWinAnsiEncoding::GetInstance(), "\x81").units, u"?");
    const DefaultCharacter high(static_cast<char>(0xBF));
    EXPECT_EQ(Read(GWinAnsiEncoding::GetInstance(), "\x81").units, u"\uFFBF");
    EXPECT_EQ(Write(GWinAnsiEncoding::GetInstance(), u"\u4E00").bytes, "\xBF");
}

TEST(GEncoding, ANullSourceOrTargetGivesNothing) {
    GBuffer out("old");
    EXPECT_EQ(GWinAnsiEncoding::GetInstance()->ConvertFrom(GBuffer("abc"), nullptr, out), 1);
    EXPECT_TRUE(out.IsEmpty());
    for (const GEncoding* target : std::initializer_list<const GEncoding*>{
             GASCIIEncoding::GetInstance(), GUTF8Encoding::GetInstance(), GUnicodeEncoding::GetInstance()}) {
        out = GBuffer("old");
        EXPECT_EQ(target->ConvertFrom(GBuffer("abc"), nullptr, out), 1);
        EXPECT_TRUE(out.IsEmpty());
    }
    out = GBuffer("old");
    const GWinAnsiEncoding* none = nullptr;
    EXPECT_EQ(GASCIIEncoding::GetInstance()->ConvertTo(GBuffer("abc"), none, out), 1);
    EXPECT_TRUE(out.IsEmpty());
}

TEST(GEncoding, ASourceHandsOverToItsTarget) {
    const GBuffer bytes = BufferOf("\x80\xC4"sv);  // euro, A with two dots
    const GEncoding* source = GWinAnsiEncoding::GetInstance();
    GBuffer out;
    EXPECT_EQ(source->ConvertTo(bytes, GPDFDocEncoding::GetInstance(), out), 1);
    EXPECT_EQ(BytesOf(out), "\xA0\xC4");
    EXPECT_EQ(source->ConvertTo(bytes, GMacRomanEncoding::GetInstance(), out), 2);
    EXPECT_EQ(BytesOf(out), "@\x80");
    EXPECT_EQ(source->ConvertTo(bytes, GASCIIEncoding::GetInstance(), out), 2);
    EXPECT_EQ(BytesOf(out), "@@");
    EXPECT_EQ(source->ConvertTo(bytes, GWinAnsiEncoding::GetInstance(), out), 1);
    EXPECT_EQ(BytesOf(out), "\x80\xC4");
    const GCustomEncoding* custom = GMacRomanEncoding::GetInstance();
    EXPECT_EQ(source->ConvertTo(bytes, custom, out), 2);
    EXPECT_EQ(BytesOf(out), "@\x80");
}

TEST(GEncoding, TheOutputMayBeTheInput) {
    GBuffer text = BufferOf("na\xEFve"sv);
    EXPECT_EQ(GUTF8Encoding::GetInstance()->ConvertFrom(text, GWinAnsiEncoding::GetInstance(), text), 1);
    EXPECT_EQ(BytesOf(text), "na\xC3\xAFve");
    EXPECT_EQ(GUTF8Encoding::GetInstance()->ConvertTo(text, GUnicodeEncoding::GetInstance(), text), 1);
    EXPECT_EQ(UnitsOf(text), u"na\u00EFve");
    EXPECT_EQ(GASCIIEncoding::GetInstance()->ConvertFrom(text, GUnicodeEncoding::GetInstance(), text), 2);
    EXPECT_EQ(BytesOf(text), "na@ve");
}

TEST(GEncoding, TheWorseResultOfTheTwoStepsIsReported) {
    GBuffer out;
    const GEncoding* utf8 = GUTF8Encoding::GetInstance();
    EXPECT_EQ(GWinAnsiEncoding::GetInstance()->ConvertFrom(GBuffer("ab\xFF"), utf8, out), 4);
    EXPECT_EQ(BytesOf(out), "ab");
    EXPECT_EQ(GASCIIEncoding::GetInstance()->ConvertFrom(GBuffer("ab\xC3\xA9\xFF"), utf8, out), 4);
    EXPECT_EQ(BytesOf(out), "ab@");
    EXPECT_EQ(
        GASCIIEncoding::GetInstance()->ConvertFrom(GBuffer("\x81"), GWinAnsiEncoding::GetInstance(), out), 2);
    EXPECT_EQ(BytesOf(out), "@");
}

TEST(GEncoding, LengthOfAZeroTerminatedText) {
    const auto* text = reinterpret_cast<const unsigned char*>("ab\0cd\0\0\0");
    EXPECT_EQ(GWinAnsiEncoding::GetInstance()->GetLength(text), 2);
    EXPECT_EQ(GUTF8Encoding::GetInstance()->GetLength(text), 2);
    EXPECT_EQ(GUnicodeEncoding::GetInstance()->GetLength(text), 6);
    EXPECT_EQ(GUnicodeEncoding::GetInstance()->GetLength(text + 1), 4) << "not aligned";
    EXPECT_EQ(GASCIIEncoding::GetInstance()->GetLength(nullptr), 0);
    EXPECT_EQ(GUnicodeEncoding::GetInstance()->GetLength(nullptr), 0);
}

TEST(GEncoding, GlyphNamesAndCodes) {
    const struct {
        const char* what;
        const GEncoding* encoding;
        const char* glyph;
        GCharCode code;
    } rows[] = {
        {"WinAnsi", GWinAnsiEncoding::GetInstance(), "Euro", GCharCode(static_cast<unsigned char>(0x80))},
        {"PDFDoc", GPDFDocEncoding::GetInstance(), "Euro", GCharCode(static_cast<unsigned char>(0xA0))},
        {"first code of two", GWinAnsiEncoding::GetInstance(), "space",
         GCharCode(static_cast<unsigned char>(0x20))},
        {"expert", GMacExpertEncoding::GetInstance(), "onehalf", GCharCode(static_cast<unsigned char>(0x48))},
        {"ASCII", GASCIIEncoding::GetInstance(), "braceleft", GCharCode(static_cast<unsigned char>('{'))},
        {"UTF-8", GUTF8Encoding::GetInstance(), "Euro",
         GCharCode(reinterpret_cast<const unsigned char*>("\xE2\x82\xAC"), 3)},
        {"Unicode", GUnicodeEncoding::GetInstance(), "Euro", GCharCode(static_cast<unsigned short>(0x20AC))},
        {"Shift-JIS", GShiftJISEncoding::GetInstance(), "ideographicspace",
         GCharCode(reinterpret_cast<const unsigned char*>("\x81\x40"), 2)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GCharCode code;
        ASSERT_TRUE(row.encoding->GetCharCode(GBuffer(row.glyph), code));
        EXPECT_TRUE(code == row.code);
        GBuffer name;
        ASSERT_TRUE(row.encoding->GetGlyphName(row.code, name));
        EXPECT_EQ(BytesOf(name), row.glyph);
        EXPECT_FALSE(row.encoding->GetCharCode(GBuffer("nosuchglyph"), code));
        EXPECT_TRUE(code == row.code) << "a failing call leaves its output";
    }
    GBuffer name("old");
    EXPECT_FALSE(
        GWinAnsiEncoding::GetInstance()->GetGlyphName(GCharCode(static_cast<unsigned char>(0x0A)), name));
    EXPECT_FALSE(GWinAnsiEncoding::GetInstance()->GetGlyphName(GCharCode(), name));
    EXPECT_FALSE(
        GASCIIEncoding::GetInstance()->GetGlyphName(GCharCode(static_cast<unsigned char>(0x80)), name));
    EXPECT_EQ(BytesOf(name), "old");
}

TEST(GEncoding, SingletonsCanBeReplacedAndOldOnesLiveOnInStrings) {
    class Counted : public GWinAnsiEncoding {
    public:
        explicit Counted(int& alive) : mAlive(alive) { ++mAlive; }
        ~Counted() override { --mAlive; }

    private:
        int& mAlive;
    };
    int alive = 0;
    GWinAnsiEncoding::SetInstance(new Counted(alive));
    EXPECT_EQ(alive, 1);
    {
        GString text("\x80", GWinAnsiEncoding::GetInstance());
        GWinAnsiEncoding::SetInstance(nullptr);
        EXPECT_EQ(alive, 1) << "the string holds it";
        EXPECT_NE(GWinAnsiEncoding::GetInstance(), text.GetEncoding());
        EXPECT_EQ(UnitsOf(text), u"\u20AC");
    }
    EXPECT_EQ(alive, 0);
    GWinAnsiEncoding::SetInstance(new Counted(alive));
    GWinAnsiEncoding::SetInstance(nullptr);
    EXPECT_EQ(alive, 0) << "without a string, replacing deletes";
}

TEST(GEncoding, AfterTheEndStringsAndNewInstancesStillWork) {
    GString kept("\x80", GWinAnsiEncoding::GetInstance());
    GEncoding::FinalizeAll();
    EXPECT_EQ(BytesOf(kept.GetEncodingName()), "WinAnsiEncoding");
    EXPECT_EQ(UnitsOf(kept), u"\u20AC");
    EXPECT_EQ(Read(GMacRomanEncoding::GetInstance(), "\x8A").units, u"\u00E4");
}

TEST(GEncoding, FirstUseFromManyThreadsGivesOneInstance) {
    GEncoding::FinalizeAll();
    std::array<const GEncoding*, 8> seen{};
    {
        std::vector<std::thread> threads;
        for (auto& instance : seen)
            threads.emplace_back([&instance] { instance = GWinAnsiEncoding::GetInstance(); });
        for (auto& thread : threads) thread.join();
    }
    for (const GEncoding* instance : seen) EXPECT_EQ(instance, GWinAnsiEncoding::GetInstance());
    EXPECT_EQ(GWinAnsiEncoding::GetInstance()->GetRefCount(), 1);
}

}  // namespace
