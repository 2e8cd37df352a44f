#include "framework/core/encodings/GUTF8Encoding.h"

#include "tests/core/encodings/EncodingForTests.h"

namespace {

// The rules for reading, one character at a time.
Conversion ReadSlowly(std::string_view bytes) {
    Conversion read{u"", bytes.find('\0') == bytes.npos ? 1 : 2};
    while (!bytes.empty()) {
        const auto lead = static_cast<unsigned char>(bytes[0]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 0;
        if (length == 0 || bytes.size() < length) return {read.text, 4};
        unsigned unit = lead & (length == 1 ? 0x7Fu : 0x3Fu >> (length - 1));
        for (const char next : bytes.substr(1, length - 1)) {
            if ((next & 0xC0) != 0x80) return {read.text, 4};
            unit = unit << 6 | (next & 0x3F);
        }
        read.text += static_cast<char16_t>(unit);
        bytes.remove_prefix(length);
    }
    return read;
}

// Reading and writing go by blocks: mixtures of all kinds must agree with the rules.
TEST(GUTF8Encoding, MixturesOfAllKindsFollowTheRules) {
    const std::string_view parts[] = {
        "a", "abcdefghijklmnopqrst", "\xC3\xA9", "\xD0\x9F\xD0\xB5\xD1\x87\xD0\xB0\xD1\x82\xD1\x8C",
        "\xE4\xB8\x80", "\xE6\x89\x93\xE5\x8D\xB0\xE6\x96\x87\xE4\xBB\xB6", "\xED\xA0\xBD", "\xEF\xBB\xBF",
        // The ends of each length's range.
        "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"};
    const std::string_view faults[] = {"\x80", "\xC3", "\xE4", "\xE4\xB8", "\xE4\xC3\xA9", "\xFF",
                                       "\xF0\x9F\x98\x80", "\xF4\x90\x80\x80",
                                       // Overlong forms and zeros can be read, but are not what is written.
                                       "\xC0\xAF", "\xE0\x80\xAF", "\xC0\x80", "\0"sv};
    std::mt19937 random(815);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        // Some texts favour one kind, so that its blocks become likely.
        const std::size_t favourite = random() % std::size(parts);
        for (std::size_t count = random() % 24; count > 0; --count)
            text += parts[random() % 3 == 0 ? random() % std::size(parts) : favourite];
        if (i % 2 == 0) text.insert(random() % (text.size() + 1), faults[random() % std::size(faults)]);
        const Conversion read = Read(UTF8(), text);
        ASSERT_EQ(read, ReadSlowly(text)) << testing::PrintToString(text);
        ASSERT_TRUE(i % 2 == 0 || Write(UTF8(), read.text).text == text);
    }
}

// Counting goes by lanes of 8 and 16 bits: a text must be long enough to overflow them.
TEST(GUTF8Encoding, LongTextsGoThereAndBack) {
    for (const char16_t unit : {u'x', u'\u00E9', u'\u4E00'}) {
        const std::u16string units(300007, unit);
        const Written written = Write(UTF8(), units);
        EXPECT_EQ(written.text.size(), units.size() * (unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3));
        EXPECT_TRUE(Read(UTF8(), written.text).text == units);
    }
}

}  // namespace
