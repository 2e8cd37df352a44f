#include "framework/core/errors/GException.h"
#include "tests/core/encodings/EncodingForTests.h"

TEST(GEncoding, EachKnowsItsNameAndNoOther) {
    const std::pair<const GEncoding*, const char*> encodings[] = {
        {ASCII(), "ASCIIEncoding"},
        {Unicode(), "UnicodeEncoding"},
        {UTF8(), "UTF-8Encoding"},
        {GSimpleEncoding::GetInstance(), "SimpleEncoding"},
        {WinAnsi(), "WinAnsiEncoding"},
        {MacRoman(), "MacRomanEncoding"},
        {MacExpert(), "MacExpertEncoding"},
        {Standard(), "StandardEncoding"},
        {PDFDoc(), "PDFDocEncoding"},
        {GPlatformEncoding::GetInstance(), "WinPlatformEncoding_CodePage"},
        {ShiftJIS(), "ShiftJISEncoding"}};
    for (const auto& [encoding, name] : encodings) {
        EXPECT_EQ(BytesOf(encoding->GetASCIIDescription()), name);
        for (const auto& [other, otherName] : encodings)
            EXPECT_EQ(encoding->IsOfType(GBuffer(otherName)), encoding == other) << name << otherName;
    }
    EXPECT_FALSE(WinAnsi()->IsOfType(GBuffer("winansiencoding")));
}

// The tables that no peer has; the others are compared with a peer's, byte by byte.
TEST(GEncoding, SingleBytesAndTheirCharacters) {
    const std::tuple<const GEncoding*, std::string, std::u16string> rows[] = {
        {MacExpert(), "\x20\x48\xBE", u" \u00BD\uF7E6"},
        // The published table numbers what is not as in Latin-1: accents, signs and letters.
        {PDFDoc(), "\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F", u"\u02D8\u02C7\u02C6\u02D9\u02DD\u02DB\u02DA\u02DC"},
        {PDFDoc(), "\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8D\x8E\x8F\x90\x91\x92",
         u"\u2022\u2020\u2021\u2026\u2014\u2013\u0192\u2044\u2039\u203A"
         u"\u2212\u2030\u201E\u201C\u201D\u2018\u2019\u201A\u2122"},
        {PDFDoc(), "\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9D\x9E\xA0",
         u"\uFB01\uFB02\u0141\u0152\u0160\u0178\u017D\u0131\u0142\u0153\u0161\u017E\u20AC"}};
    for (const auto& [encoding, bytes, units] : rows)
        EXPECT_EQ(Read(encoding, bytes), (Conversion{units, 1}));
    for (int code = 0x20; code < 0x100; ++code) {
        if (code >= 0x7F && (code <= 0xA0 || code == 0xAD)) continue;
        EXPECT_EQ(Write(PDFDoc(), std::u16string(1, static_cast<char16_t>(code))).text,
                  std::string(1, static_cast<char>(code)));
    }
}

TEST(GEncoding, WhatHasNoCharacterOrNoCodeBecomesTheDefaultCharacter) {
    EXPECT_EQ(Read(PDFDoc(), "a\x7F\x9F\xADz"), (Conversion{u"a@@@z", 2}));
    EXPECT_EQ(Read(ASCII(), "a\x80\xFFz"), (Conversion{u"a@@z", 2}));
    // Units whose low byte is a letter, in blocks, above 0x8000, and a surrogate pair, which is two.
    const std::tuple<const GEncoding*, std::u16string, std::string> rows[] = {
        {WinAnsi(), u"a\u4E00b\x7F\xD83D\xDE00", "a@b@@@"},
        {PDFDoc(), u"\x18", "@"},
        {MacExpert(), u"A", "@"},
        {ASCII(), u"caf\u00E9\u0141", "caf@@"},
        {WinAnsi(), u"abcdefghijklmno\u01E4", "abcdefghijklmno@"},
        {WinAnsi(), u"\u80E4bcdefghijklmnop", "@bcdefghijklmnop"}};
    for (const auto& [encoding, units, bytes] : rows) EXPECT_EQ(Write(encoding, units), (Written{bytes, 2}));
    // The character is a byte, whose sign counts in a unit.
    GEncoding::SetDefaultCharacter(static_cast<char>(0xBF));
    EXPECT_EQ(Read(WinAnsi(), "\x81").text, u"\uFFBF");
    EXPECT_EQ(Read(ASCII(), "\x81").text, u"\uFFBF");
    EXPECT_EQ(Write(WinAnsi(), u"\u4E00").text, "\xBF");
    GEncoding::SetDefaultCharacter('@');
}

TEST(GEncoding, EveryMappedByteComesBackAndControlCodesStandForThemselves) {
    // What each has, the control codes included.
    const GSimpleEncoding *expert = MacExpert(), *document = PDFDoc();
    for (const auto& [encoding, codes] : {std::pair(expert, 32 + 165), {document, 24 + 229}}) {
        int count = 0;
        for (int code = 0; code < 256; ++code) {
            if (!encoding->HasMapping(static_cast<unsigned char>(code))) continue;
            ++count;
            const std::string byte(1, static_cast<char>(code));
            const Conversion read = Read(encoding, byte);
            EXPECT_EQ(Write(encoding, read.text), (Written{byte, 1})) << code;
            EXPECT_TRUE(code >= 0x18 || read.text[0] == code) << code;
        }
        EXPECT_EQ(count, codes);
    }
}

// The fast paths work on blocks of 16 and 64 elements: a special element must be met at each place.
TEST(GEncoding, ASpecialElementIsFoundAtEveryPlaceOfALongText) {
    const std::tuple<const GEncoding*, std::string, std::u16string, long> rows[] = {
        {WinAnsi(), "\x7F", u"@", 2},
        {WinAnsi(), "\x80", u"\u20AC", 1},
        {WinAnsi(), "\x9F\xA0", u"\u0178\u00A0", 1},
        {ASCII(), "\x80", u"@", 2},
        {UTF8(), "\xC3\xA9", u"\u00E9", 1}};
    for (const auto& [encoding, bytes, units, result] : rows) {
        for (std::size_t before = 0; before < 84; ++before) {
            for (const std::size_t after : {0u, 1u, 17u, 66u}) {
                SCOPED_TRACE(testing::Message() << before << bytes << after);
                const std::string text = std::string(before, 'x') + bytes + std::string(after, 'y');
                const Conversion read = Read(encoding, text);
                EXPECT_EQ(read.text, std::u16string(before, 'x') + units + std::u16string(after, 'y'));
                EXPECT_EQ(read.result, result);
                EXPECT_TRUE(units == u"@" || Write(encoding, read.text).text == text);
            }
        }
    }
}

TEST(GEncoding, TheWorseResultOfTheTwoStepsIsReported) {
    const std::tuple<const GEncoding*, const GEncoding*, std::string, Written> rows[] = {
        {WinAnsi(), UTF8(), "ab\xFF", {"ab", 4}},
        {ASCII(), UTF8(), "ab\xC3\xA9\xFF", {"ab@", 4}},
        {WinAnsi(), Unicode(), "a\0b"s, {"a", 4}},
        {ASCII(), WinAnsi(), "\x81", {"@", 2}},
        {PDFDoc(), WinAnsi(), "\x80\xC4", {"\xA0\xC4", 1}},  // euro, A with two dots
        {MacRoman(), WinAnsi(), "\x80\xC4", {"@\x80", 2}},
        {ASCII(), WinAnsi(), "\x80\xC4", {"@@", 2}},
        {WinAnsi(), WinAnsi(), "\x80\xC4", {"\x80\xC4", 1}},
        {UTF8(), WinAnsi(), "a\x81", {"a@", 2}},
        // Nothing becomes UTF-8 of invalid input, nor of an odd byte of UTF-16.
        {UTF8(), UTF8(), "a\xFF", {"", 4}},
        {UTF8(), Unicode(), "a\0b"s, {"", 4}},
        {ASCII(), nullptr, "abc", {"", 1}},
        {UTF8(), nullptr, "abc", {"", 1}},
        {Unicode(), nullptr, "abc", {"", 1}},
        {WinAnsi(), nullptr, "abc", {"", 1}}};
    for (const auto& [target, source, bytes, written] : rows) {
        EXPECT_EQ(Write(target, BufferOf(bytes), source), written) << bytes;
        GBuffer text = BufferOf(bytes);  // the output may be the input
        target->ConvertFrom(text, source, text);
        EXPECT_EQ(BytesOf(text), written.text);
    }
    // A source may hand over to any of its targets, or to none.
    GBuffer out("old");
    const GCustomEncoding* const custom = MacRoman();
    EXPECT_EQ(WinAnsi()->ConvertTo(BufferOf("\x80\xC4"sv), custom, out), 2);
    EXPECT_EQ(BytesOf(out), "@\x80");
    EXPECT_EQ(ASCII()->ConvertTo(out, static_cast<const GWinAnsiEncoding*>(nullptr), out), 1);
    EXPECT_TRUE(out.IsEmpty());
}

// The input is not read: it need not be there.
TEST(GEncoding, ATextThatWouldBecomeTooLongIsRefused) {
    GBuffer text;
    text.SetFromStatic(reinterpret_cast<const unsigned char*>("x"), GBuffer::cMaxLength / 2 + 1);
    for (const GEncoding* encoding : std::initializer_list<const GEncoding*>{ASCII(), WinAnsi()}) {
        GBuffer out("old");
        EXPECT_THROW(encoding->ConvertTo(text, Unicode(), out), GException);
        EXPECT_EQ(BytesOf(out), "old");
    }
}

TEST(GEncoding, LengthOfAZeroTerminatedText) {
    const auto* text = reinterpret_cast<const unsigned char*>("ab\0cd\0\0\0");
    EXPECT_EQ(WinAnsi()->GetLength(text) + UTF8()->GetLength(text), 2 + 2);
    EXPECT_EQ(Unicode()->GetLength(text), 6);
    EXPECT_EQ(Unicode()->GetLength(text + 1), 4) << "not aligned";
    EXPECT_EQ(ASCII()->GetLength(nullptr) + Unicode()->GetLength(nullptr), 0);
}

TEST(GEncoding, GlyphNamesAndCodes) {
    const std::tuple<const GEncoding*, const char*, std::string_view> rows[] = {
        {WinAnsi(), "Euro", "\x80"},     {PDFDoc(), "Euro", "\xA0"},
        {WinAnsi(), "space", "\x20"},    {MacExpert(), "onehalf", "\x48"},
        {ASCII(), "braceleft", "{"},     {UTF8(), "Euro", "\xE2\x82\xAC"},
        {Unicode(), "Euro", "\xAC\x20"}, {ShiftJIS(), "ideographicspace", "\x81\x40"}};
    for (const auto& [encoding, glyph, bytes] : rows) {
        SCOPED_TRACE(BytesOf(encoding->GetASCIIDescription()) + glyph);
        const GCharCode expected = CodeOf(bytes);
        GCharCode code;
        GBuffer name;
        EXPECT_TRUE(encoding->GetCharCode(GBuffer(glyph), code));
        EXPECT_FALSE(encoding->GetCharCode(GBuffer("nosuchglyph"), code));
        EXPECT_TRUE(code == expected) << "a failing call leaves its output";
        EXPECT_TRUE(encoding->GetGlyphName(expected, name));
        EXPECT_FALSE(encoding->GetGlyphName(CodeOf("\xFF\xFF\xFF"), name));
        EXPECT_FALSE(encoding->GetGlyphName(CodeOf(""), name));
        EXPECT_EQ(BytesOf(name), glyph) << "a failing call leaves its output";
    }
    GBuffer name;
    EXPECT_FALSE(WinAnsi()->GetGlyphName(CodeOf("\x0A"), name)) << "a control code has no glyph";
    EXPECT_FALSE(ASCII()->GetGlyphName(CodeOf("\x80"), name));
    GCharCode code;
    EXPECT_FALSE(ASCII()->GetCharCode("Euro", code) || ShiftJIS()->GetCharCode("Euro", code));
    EXPECT_FALSE(WinAnsi()->GetCharCode(GBuffer(), code));
}

TEST(GEncoding, SingletonsCanBeReplacedAndOldOnesLiveOnInStrings) {
    struct Counted : GWinAnsiEncoding {
        explicit Counted(std::shared_ptr<int> token) : mToken(std::move(token)) {}
        std::shared_ptr<int> mToken;  // held by all that live, and by the test
    };
    const auto token = std::make_shared<int>();
    GWinAnsiEncoding::SetInstance(new Counted(token));
    {
        GString text("\x80", WinAnsi());
        GEncoding::FinalizeAll();
        EXPECT_EQ(token.use_count(), 2) << "the string holds it";
        EXPECT_NE(WinAnsi(), text.GetEncoding());
        EXPECT_EQ(Plain(text), u"\u20AC");
    }
    EXPECT_EQ(token.use_count(), 1);
    GWinAnsiEncoding::SetInstance(new Counted(token));
    GWinAnsiEncoding::SetInstance(nullptr);
    EXPECT_EQ(token.use_count(), 1) << "without a string, replacing deletes";
}

TEST(GEncoding, FirstUseFromManyThreadsGivesOneInstance) {
    GEncoding::FinalizeAll();
    std::array<const GEncoding*, 8> seen{};
    {
        std::vector<std::jthread> threads;
        for (auto& instance : seen) threads.emplace_back([&instance] { instance = WinAnsi(); });
    }
    for (const GEncoding* instance : seen) EXPECT_EQ(instance, WinAnsi());
    EXPECT_EQ(WinAnsi()->GetRefCount(), 1);
}
