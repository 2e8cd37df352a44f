#include "framework/system/PRegistryData.h"

#include "tests/files/TestFolder.h"

namespace {

TEST(PRegistryData, SplitsMultiStringsOfBothWidths) {
    ForEachRow<2>(
        {"a\0b\0\0\0c\0\0\0\0\0 -> [ab][c]"sv, "a\0\0\0\0\0b\0\0\0\0\0 -> [a][][b]"sv, "\0\0\0\0 -> "sv,
         // 8-bit, also for want of zeros, or by an odd count whatever its end.
         "ab\0c\0\0 -> [ab][c]"sv, "a\0\0b\0\0 -> [a][][b]"sv, "ab\0c\0 -> [ab][c]"sv, "abc -> [abc]"sv,
         "abc\0c\0\0 -> [abc][c]"sv, "a\0\0\0\0 -> [a][][]"sv, " -> "sv, "\0 -> "sv, "\0\0 -> "sv},
        [](auto bytes, auto expected) {
            PRegistryData data(3, BufferOf("what it was"));
            data.SetStringTable(BufferOf(bytes));
            EXPECT_EQ(std::to_string(data.GetType()) + BytesOf(data.GetBuffer()), "7");
            std::string found;
            for (const GString& text : data.GetStringTable())
                found.append("[").append(TextOf(text)).append("]");
            EXPECT_EQ(found, expected);
        });
}

TEST(PRegistryData, KeepsEachTypeInItsForm) {
    EXPECT_EQ(TextOf(PRegistryData(1, BufferOf("a\0b\0\0\0"s)).GetString()), "ab");
    EXPECT_EQ(TextOf(PRegistryData(2, BufferOf("%\0a\0%\0"s)).GetString()), "%a%");
    EXPECT_EQ(TextOf(PRegistryData(1, BufferOf("abc"s)).GetString()), "abc");
    EXPECT_EQ(PRegistryData(1, BufferOf("abc"s)).GetBuffer().GetLength(), 0);
    EXPECT_EQ(PRegistryData(7, BufferOf("ab\0c\0"s)).GetStringTable().GetCount(), 2);
    EXPECT_EQ(PRegistryData(4, BufferOf("\xFE\xFF\xFF\xFF"s)).GetInt32(), -2);
    EXPECT_EQ(PRegistryData(4, BufferOf("\1\0\0\x80"s)).GetInt32(), -2147483647);
    const PRegistryData damaged(4, BufferOf("\1\0\0"s));
    EXPECT_EQ(damaged.GetInt32(), 0);
    EXPECT_EQ(damaged.GetBuffer().GetLength(), 3);
    for (const std::uint32_t type : {3u, 0u, 11u, 0xFFFF0000u}) {
        EXPECT_EQ(PRegistryData(type, BufferOf("a\0b"s)).GetBuffer().GetLength(), 3);
        EXPECT_EQ(PRegistryData(type, BufferOf("a"s)).GetType(), type);
    }
}

}  // namespace
