#include "framework/core/GCharCode.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/core/GBuffer.h"
#include "tests/core/TextForTests.h"

namespace {

const unsigned char* Bytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

std::string BytesOf(const GCharCode& code) {
    return ::BytesOf(GBuffer() += code);
}

}  // namespace

TEST(GCharCode, HoldsBytesOrUnits) {
    EXPECT_TRUE(GCharCode().IsEmpty());
    EXPECT_EQ(BytesOf(GCharCode(static_cast<unsigned char>('A'))), "A");
    EXPECT_EQ(BytesOf(GCharCode(static_cast<unsigned short>(0x4241))), "AB");
    EXPECT_EQ(BytesOf(GCharCode(Bytes("ABC"), 3)), "ABC");
    const unsigned short units[] = {0x0066, 0x0069};
    const GCharCode ligature(units, 2);
    EXPECT_EQ(ligature.GetLength(), 4);
    EXPECT_EQ(ligature.GetUnitCount(), 2);
    EXPECT_EQ(ligature.GetUnit(), 0x66);
    EXPECT_EQ(ligature.GetUnit(1), 0x69);
    EXPECT_EQ(ligature.GetUnit(2), 0);
    EXPECT_EQ(ligature.GetUnit(-1), 0);
    EXPECT_EQ(ligature.GetByte(2), 0x69);
    EXPECT_EQ(ligature.GetByte(4), 0);
    EXPECT_EQ(ligature.GetByte(-1), 0);
    GCharCode code(static_cast<unsigned char>('A'));
    code.Clear();
    EXPECT_TRUE(code.IsEmpty());
}

TEST(GCharCode, LeavesOutWhatDoesNotFit) {
    EXPECT_EQ(BytesOf(GCharCode(Bytes("0123456789abcdefXYZ"), 19)), "0123456789abcdef");
    GCharCode code(Bytes("0123456789abcde"), 15);
    code += static_cast<unsigned short>(0x4241);
    EXPECT_EQ(code.GetLength(), 15) << "no half unit";
    code += static_cast<unsigned char>('f');
    code += static_cast<unsigned char>('g');
    EXPECT_EQ(BytesOf(code), "0123456789abcdef");
    EXPECT_TRUE(GCharCode(static_cast<const unsigned char*>(nullptr), 3).IsEmpty());
    EXPECT_TRUE(GCharCode(Bytes("a"), -1).IsEmpty());
}

TEST(GCharCode, ComparesByBytes) {
    const GCharCode shorter(Bytes("ab"), 2), longer(Bytes("abc"), 3), greater(Bytes("b"), 1);
    EXPECT_TRUE(shorter == GCharCode(Bytes("ab"), 2));
    EXPECT_FALSE(shorter == longer);
    EXPECT_TRUE(shorter < longer);
    EXPECT_TRUE(longer < greater);
    EXPECT_FALSE(greater < shorter);
    EXPECT_FALSE(shorter < shorter);
    EXPECT_EQ(longer.GetHash(), GBuffer("abc").GetHash());
    EXPECT_EQ(GCharCode(static_cast<unsigned char>(0x41)).GetHash(), 0x51u);
}
