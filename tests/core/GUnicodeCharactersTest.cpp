#include "framework/core/GUnicodeCharacters.h"

#include <gtest/gtest.h>

namespace {

TEST(GUnicodeCharacters, CaseAndClassOfSingleUnits) {
    enum Kind { cOther, cLetter, cDigit };
    const struct {
        const char* what;
        unsigned short unit;
        unsigned short lower;
        unsigned short upper;
        Kind kind;
    } rows[] = {
        {"zero", 0, 0, 0, cOther},
        {"before 0", '/', '/', '/', cOther},
        {"0", '0', '0', '0', cDigit},
        {"9", '9', '9', '9', cDigit},
        {"behind 9", ':', ':', ':', cOther},
        {"before A", '@', '@', '@', cOther},
        {"A", 'A', 'a', 'A', cLetter},
        {"Z", 'Z', 'z', 'Z', cLetter},
        {"behind Z", '[', '[', '[', cOther},
        {"before a", '`', '`', '`', cOther},
        {"a", 'a', 'a', 'A', cLetter},
        {"z", 'z', 'z', 'Z', cLetter},
        {"behind z", '{', '{', '{', cOther},
        {"superscript two", 0x00B2, 0x00B2, 0x00B2, cOther},
        {"U with two dots", 0x00DC, 0x00FC, 0x00DC, cLetter},
        {"the multiplication sign among letters", 0x00D7, 0x00D7, 0x00D7, cOther},
        {"sharp s has no single capital letter", 0x00DF, 0x00DF, 0x00DF, cLetter},
        {"y with two dots, whose capital is far away", 0x00FF, 0x00FF, 0x0178, cLetter},
        {"I with a dot", 0x0130, 'i', 0x0130, cLetter},
        {"i without a dot", 0x0131, 0x0131, 'I', cLetter},
        {"title case of DZ with caron", 0x01C5, 0x01C6, 0x01C4, cLetter},
        {"combining acute", 0x0301, 0x0301, 0x0301, cOther},
        {"final sigma", 0x03C2, 0x03C2, 0x03A3, cLetter},
        {"Cyrillic", 0x0416, 0x0436, 0x0416, cLetter},
        {"Arabic digit", 0x0661, 0x0661, 0x0661, cDigit},
        {"alpha with iota below", 0x1F80, 0x1F80, 0x1F88, cLetter},
        {"Kelvin sign", 0x212A, 'k', 0x212A, cLetter},
        {"the first ideograph", 0x4E00, 0x4E00, 0x4E00, cLetter},
        {"a surrogate", 0xD801, 0xD801, 0xD801, cOther},
        {"private use", 0xE000, 0xE000, 0xE000, cOther},
        {"full-width A", 0xFF21, 0xFF41, 0xFF21, cLetter},
        {"the last unit", 0xFFFF, 0xFFFF, 0xFFFF, cOther},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(GUnicodeCharacters::ToLower(row.unit), row.lower);
        EXPECT_EQ(GUnicodeCharacters::ToUpper(row.unit), row.upper);
        EXPECT_EQ(GUnicodeCharacters::IsLetter(row.unit), row.kind == cLetter);
        EXPECT_EQ(GUnicodeCharacters::IsDigit(row.unit), row.kind == cDigit);
    }
}

}  // namespace
