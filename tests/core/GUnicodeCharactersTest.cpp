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
        {"0", '0', '0', '0', cDigit},
        {"9", '9', '9', '9', cDigit},
        {"before A", '@', '@', '@', cOther},
        {"A", 'A', 'a', 'A', cLetter},
        {"Z", 'Z', 'z', 'Z', cLetter},
        {"behind Z", '[', '[', '[', cOther},
        {"a", 'a', 'a', 'A', cLetter},
        {"z", 'z', 'z', 'Z', cLetter},
        {"behind z", '{', '{', '{', cOther},
        {"the multiplication sign among letters", 0x00D7, 0x00D7, 0x00D7, cOther},
        {"sharp s has no single capital letter", 0x00DF, 0x00DF, 0x00DF, cLetter},
        {"y with two dots, whose capital is far away", 0x00FF, 0x00FF, 0x0178, cLetter},
        {"I with a dot", 0x0130, 'i', 0x0130, cLetter},
        {"title case of DZ with caron", 0x01C5, 0x01C6, 0x01C4, cLetter},
        {"Arabic digit", 0x0661, 0x0661, 0x0661, cDigit},
        {"alpha with iota below", 0x1F80, 0x1F80, 0x1F88, cLetter},
        {"Kelvin sign", 0x212A, 'k', 0x212A, cLetter},
        {"the first ideograph", 0x4E00, 0x4E00, 0x4E00, cLetter},
        {"a surrogate", 0xD801, 0xD801, 0xD801, cOther},
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
