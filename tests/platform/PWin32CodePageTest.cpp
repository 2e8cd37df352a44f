#include "platform/win32/core/PWin32CodePage.h"

#include "tests/core/encodings/EncodingForTests.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

// The system's functions, but the default page is UTF-8, and a text of several characters is measured
// and then refused.
const PWin32CodePage::Functions cUnwilling = {
    [] { return unsigned{CP_UTF8}; },
    [](unsigned page, unsigned long flags, const char* bytes, int length, wchar_t* units, int room) {
        if (room != 0 && length > 3) return 0;
        return ::MultiByteToWideChar(page, flags, bytes, length, units, room);
    },
    [](unsigned page, unsigned long flags, const wchar_t* units, int count, char* bytes, int room,
       const char* character, int* replaced) {
        if (room != 0 && count > 2) return 0;
        return ::WideCharToMultiByte(page, flags, units, count, bytes, room, character, replaced);
    }};

Written WriteTo(long page, std::u16string_view units) {
    GBuffer bytes;
    const long code = PWin32CodePage(page, cUnwilling).FromUTF16(BufferOf(units), bytes);
    return {BytesOf(bytes), code};
}

}  // namespace

TEST(PWin32CodePage, ResolvesTheDefaultPageBeforeItChoosesFlags) {
    EXPECT_EQ(WriteTo(0, u"\u0416"), (Written{"\xD0\x96", 1}));
    EXPECT_EQ(WriteTo(0, u"\xD83D"), (Written{"@", 2}));
    GBuffer units;
    EXPECT_EQ(PWin32CodePage(0, cUnwilling).ToUTF16(GBuffer("\xD0\x96"), units), 1);
    EXPECT_EQ(units, BufferOf(u"\u0416"));
}

TEST(PWin32CodePage, GoesByCharactersWhereTheSystemRefusesWhatItHasMeasured) {
    for (const long page : {932L, 1252L, 65001L}) {
        EXPECT_EQ(WriteTo(page, u"abcd"), (Written{"abcd", 1})) << page;
        EXPECT_EQ(WriteTo(page, u"ab\xD83Dz").result, 2) << page;
        GBuffer units;
        EXPECT_EQ(PWin32CodePage(page, cUnwilling).ToUTF16(GBuffer("abcd"), units), 1) << page;
        EXPECT_EQ(units, BufferOf(u"abcd"));
    }
}
