#include "framework/core/GUnicodeCharacters.h"

#include <gtest/gtest.h>

namespace {

TEST(GUnicodeCharacters, MapsTheCaseOfSingleUnits) {
    const struct {
        const char* what;
        unsigned short unit;
        unsigned short lower;
        unsigned short upper;
    } rows[] = {
        {"zero", 0, 0, 0},
        {"before A", '@', '@', '@'},
        {"A", 'A', 'a', 'A'},
        {"Z", 'Z', 'z', 'Z'},
        {"behind Z", '[', '[', '['},
        {"a", 'a', 'a', 'A'},
        {"behind z", '{', '{', '{'},
        {"a digit", '7', '7', '7'},
        {"U with two dots", 0x00DC, 0x00FC, 0x00DC},
        {"the multiplication sign among letters", 0x00D7, 0x00D7, 0x00D7},
        {"sharp s has no single capital letter", 0x00DF, 0x00DF, 0x00DF},
        {"y with two dots, whose capital is far away", 0x00FF, 0x00FF, 0x0178},
        {"I with a dot", 0x0130, 'i', 0x0130},
        {"i without a dot", 0x0131, 0x0131, 'I'},
        {"title case of DZ with caron", 0x01C5, 0x01C6, 0x01C4},
        {"final sigma", 0x03C2, 0x03C2, 0x03A3},
        {"Cyrillic", 0x0416, 0x0436, 0x0416},
        {"alpha with iota below", 0x1F80, 0x1F80, 0x1F88},
        {"Kelvin sign", 0x212A, 'k', 0x212A},
        {"full-width A", 0xFF21, 0xFF41, 0xFF21},
        {"a Chinese character", 0x4E00, 0x4E00, 0x4E00},
        {"a surrogate", 0xD801, 0xD801, 0xD801},
        {"the last unit", 0xFFFF, 0xFFFF, 0xFFFF},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(GUnicodeCharacters::ToLower(row.unit), row.lower);
        EXPECT_EQ(GUnicodeCharacters::ToUpper(row.unit), row.upper);
    }
}

TEST(GUnicodeCharacters, TellsLettersAndDigits) {
    const struct {
        const char* what;
        unsigned short unit;
        bool isLetter;
        bool isDigit;
    } rows[] = {
        {"zero", 0, false, false},
        {"before the digits", '/', false, false},
        {"0", '0', false, true},
        {"9", '9', false, true},
        {"behind the digits", ':', false, false},
        {"before A", '@', false, false},
        {"A", 'A', true, false},
        {"z", 'z', true, false},
        {"behind z", '{', false, false},
        {"low line", '_', false, false},
        {"e with acute", 0x00E9, true, false},
        {"division sign", 0x00F7, false, false},
        {"Arabic digit", 0x0661, false, true},
        {"superscript two", 0x00B2, false, false},
        {"combining acute", 0x0301, false, false},
        {"the first ideograph", 0x4E00, true, false},
        {"full-width digit", 0xFF10, false, true},
        {"a surrogate", 0xD800, false, false},
        {"private use", 0xE000, false, false},
        {"the last unit", 0xFFFF, false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(GUnicodeCharacters::IsLetter(row.unit), row.isLetter);
        EXPECT_EQ(GUnicodeCharacters::IsDigit(row.unit), row.isDigit);
    }
}

}  // namespace
