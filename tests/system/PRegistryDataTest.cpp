#include "framework/system/PRegistryData.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "framework/core/encodings/GASCIIEncoding.h"

using namespace std::string_literals;

namespace {

GBuffer Stored(const std::string& bytes) {
    return GBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<long>(bytes.size()));
}

std::string Text(const GString& text) {
    return text.GetBuffer(GASCIIEncoding::GetInstance()).GetPtr();
}

TEST(PRegistryData, SplitsMultiStringsOfBothWidths) {
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"UTF-16", "a\0b\0\0\0c\0\0\0\0\0"s, "[ab][c]"},
        {"8-bit", "ab\0c\0\0"s, "[ab][c]"},
        {"8-bit of an odd count", "abc\0c\0\0"s, "[abc][c]"},
        {"UTF-16, an empty string inside", "a\0\0\0\0\0b\0\0\0\0\0"s, "[a][][b]"},
        {"8-bit, an empty string inside", "a\0\0b\0\0"s, "[a][][b]"},
        {"8-bit without the last zero", "ab\0c\0"s, "[ab][c]"},
        {"8-bit without any zero", "abc"s, "[abc]"},
        {"nothing", ""s, ""},
        {"one zero", "\0"s, ""},
        {"two zeros", "\0\0"s, ""},
        {"four zeros", "\0\0\0\0"s, ""},
        {"an odd count is 8-bit whatever its end", "a\0\0\0\0"s, "[a][][]"},
    };
    for (const auto& [what, bytes, expected] : rows) {
        const PRegistryData data(7, Stored(bytes));
        std::string found;
        for (const GString& text : data.GetStringTable()) found.append("[").append(Text(text)).append("]");
        EXPECT_EQ(found, expected) << what;
    }
}

TEST(PRegistryData, KeepsEachTypeInItsForm) {
    EXPECT_EQ(Text(PRegistryData(1, Stored("a\0b\0\0\0"s)).GetString()), "ab");
    EXPECT_EQ(Text(PRegistryData(2, Stored("%\0a\0%\0"s)).GetString()), "%a%");
    EXPECT_EQ(Text(PRegistryData(1, Stored("abc"s)).GetString()), "abc");
    EXPECT_EQ(PRegistryData(1, Stored("abc"s)).GetBuffer().GetLength(), 0);
    EXPECT_EQ(PRegistryData(4, Stored("\xFE\xFF\xFF\xFF"s)).GetInt32(), -2);
    EXPECT_EQ(PRegistryData(4, Stored("\1\0\0\x80"s)).GetInt32(), -2147483647);
    const PRegistryData damaged(4, Stored("\1\0\0"s));
    EXPECT_EQ(damaged.GetInt32(), 0);
    EXPECT_EQ(damaged.GetBuffer().GetLength(), 3);
    for (const std::uint32_t type : {3u, 0u, 11u, 0xFFFF0000u}) {
        EXPECT_EQ(PRegistryData(type, Stored("a\0b"s)).GetBuffer().GetLength(), 3);
        EXPECT_EQ(PRegistryData(type, Stored("a"s)).GetType(), type);
    }
}

}  // namespace
