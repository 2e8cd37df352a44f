#include "framework/core/bytes/GCharCode.h"

#include "tests/core/TextForTests.h"

TEST(GCharCode, HoldsBytesOrUnits) {
    EXPECT_TRUE(GCharCode().IsEmpty());
    EXPECT_TRUE(GCharCode(static_cast<unsigned char>('A')) == CodeOf("A"));
    EXPECT_TRUE(GCharCode(static_cast<unsigned short>(0x4241)) == CodeOf("AB"));
    GCharCode ligature = CodeOf(u"fi");
    EXPECT_EQ(ligature.GetLength(), 4);
    EXPECT_EQ(ligature.GetUnitCount(), 2);
    for (const auto& [index, unit, byte] :
         {std::tuple(0L, 0x66, 0x66), {1, 0x69, 0}, {2, 0, 0x69}, {4, 0, 0}, {-1, 0, 0}}) {
        EXPECT_EQ(ligature.GetUnit(index), unit) << index;
        EXPECT_EQ(ligature.GetByte(index), byte) << index;
    }
    ligature.Clear();
    EXPECT_TRUE(ligature.IsEmpty());
}

TEST(GCharCode, LeavesOutWhatDoesNotFit) {
    EXPECT_EQ(CodeOf("0123456789abcdefXYZ").GetLength(), 16);
    GCharCode code = CodeOf("0123456789abcde");
    code += static_cast<unsigned short>(0x4241);
    EXPECT_EQ(code.GetLength(), 15) << "no half unit";
    code += static_cast<unsigned char>('f');
    code += static_cast<unsigned char>('g');
    EXPECT_EQ(BytesOf(GBuffer() += code), "0123456789abcdef");
    EXPECT_TRUE(GCharCode(static_cast<const unsigned char*>(nullptr), 3).IsEmpty());
    EXPECT_TRUE(GCharCode(code.GetPtr(), -1).IsEmpty());
}

TEST(GCharCode, ComparesByBytes) {
    const GCharCode shorter = CodeOf("ab"), longer = CodeOf("abc"), greater = CodeOf("b");
    EXPECT_TRUE(shorter == CodeOf("ab") && shorter < longer && longer < greater);
    EXPECT_FALSE(shorter == longer || greater < shorter || shorter < shorter);
    EXPECT_EQ(longer.GetHash(), GBuffer("abc").GetHash());
    EXPECT_EQ(CodeOf("A").GetHash(), 0x51u);
}
