#include "platform/win32/core/PWin32CodePage.h"

#include <algorithm>
#include <utility>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "platform/win32/base/PWin32Api.h"

namespace {

// No code page of the system needs more bytes for one character.
constexpr int cLongestCharacter = 8;
// A code page in four bytes that takes flags as UTF-8 does, unlike its neighbours.
constexpr UINT cGB18030 = 54936;

const wchar_t* AsWideUnits(const GBuffer& utf16) {
    return reinterpret_cast<const wchar_t*>(utf16.GetRawData());
}

const char* AsChars(const GBuffer& bytes) {
    return reinterpret_cast<const char*>(bytes.GetRawData());
}

}  // namespace

const PWin32CodePage::Functions PWin32CodePage::cSystem = {::GetACP, ::MultiByteToWideChar,
                                                           ::WideCharToMultiByte};

// Which flags are allowed depends on the page, so the default is resolved first: it may be UTF-8.
PWin32CodePage::PWin32CodePage(long number, const Functions& functions) noexcept
    : mFunctions(functions),
      mPage(number == CP_ACP ? functions.getDefaultPage() : static_cast<UINT>(number)) {}

bool PWin32CodePage::IsKnown() const noexcept {
    CPINFO info;
    return ::GetCPInfo(mPage, &info) != FALSE;
}

// The stateful code pages, UTF-7 and the symbol page allow no flags at all.
bool PWin32CodePage::AllowsFlags() const noexcept {
    return mPage != CP_UTF7 && mPage != CP_SYMBOL && (mPage < 50000 || mPage >= 60000);
}

bool PWin32CodePage::AllowsDefaultCharacter() const noexcept {
    return AllowsFlags() && mPage != CP_UTF8 && mPage != cGB18030;
}

int PWin32CodePage::ToWide(const char* bytes, int length, wchar_t* units, int room) const noexcept {
    const DWORD flags = AllowsFlags() || mPage == cGB18030 ? MB_ERR_INVALID_CHARS : 0;
    return mFunctions.toWide(mPage, flags, bytes, length, units, room);
}

PWin32CodePage::Narrow PWin32CodePage::ToNarrow(const wchar_t* units, int count, char* bytes,
                                                int room) const noexcept {
    if (!AllowsDefaultCharacter()) {
        const DWORD flags = mPage == CP_UTF8 || mPage == cGB18030 ? WC_ERR_INVALID_CHARS : 0;
        return {mFunctions.toNarrow(mPage, flags, units, count, bytes, room, nullptr, nullptr), false};
    }
    const char character = GEncoding::GetDefaultCharacter();
    BOOL replaced = FALSE;
    const int length =
        mFunctions.toNarrow(mPage, WC_NO_BEST_FIT_CHARS, units, count, bytes, room, &character, &replaced);
    return {length, replaced != FALSE};
}

// Character by character: what the code page does not know becomes the default character.
long PWin32CodePage::ReplaceInvalidBytes(const GBuffer& bytes, GBuffer& utf16) const {
    const char* source = AsChars(bytes);
    const auto length = static_cast<int>(bytes.GetLength());
    GBuffer result;
    long code = GEncoding::cConverted;
    for (int position = 0; position < length;) {
        wchar_t units[cLongestCharacter];
        int used = 1;
        int count = 0;
        const int longest = std::min(cLongestCharacter, length - position);
        while (used <= longest && (count = ToWide(source + position, used, units, cLongestCharacter)) == 0)
            ++used;
        if (count == 0) {
            result += GEncoding::GetDefaultUnit();
            code = GEncoding::cReplaced;
            ++position;
        } else {
            result.AppendByteArray(reinterpret_cast<const unsigned char*>(units), 2L * count);
            position += used;
        }
    }
    utf16 = std::move(result);
    return code;
}

// Character by character, for code pages that refuse a text with half a surrogate pair in it.
long PWin32CodePage::ReplaceInvalidUnits(const wchar_t* units, int count, GBuffer& bytes) const {
    GBuffer result;
    long code = GEncoding::cConverted;
    for (int position = 0; position < count;) {
        const bool isPair = position + 1 < count && IS_SURROGATE_PAIR(units[position], units[position + 1]);
        const int used = isPair ? 2 : 1;
        char character[4 * cLongestCharacter];
        const Narrow narrow = ToNarrow(units + position, used, character, static_cast<int>(sizeof character));
        if (narrow.length > 0)
            result.AppendByteArray(reinterpret_cast<const unsigned char*>(character), narrow.length);
        else
            result += GEncoding::GetDefaultCharacter();
        if (narrow.length == 0 || narrow.replaced) code = GEncoding::cReplaced;
        position += used;
    }
    bytes = std::move(result);
    return code;
}

long PWin32CodePage::ToUTF16(const GBuffer& bytes, GBuffer& utf16) const {
    if (bytes.IsEmpty() || !IsKnown()) {
        const bool isEmpty = bytes.IsEmpty();
        utf16.Clear();
        return isEmpty ? GEncoding::cConverted : GEncoding::cInvalid;
    }
    const auto length = static_cast<int>(bytes.GetLength());
    const int count = ToWide(AsChars(bytes), length, nullptr, 0);
    if (count == 0) return ReplaceInvalidBytes(bytes, utf16);
    GBuffer result = MakeEncodingOutput(2 * static_cast<std::size_t>(count));
    const int written =
        ToWide(AsChars(bytes), length, reinterpret_cast<wchar_t*>(result.GetWritePtr()), count);
    if (written == 0) return ReplaceInvalidBytes(bytes, utf16);
    result.SetLength(2L * written);
    utf16 = std::move(result);
    return GEncoding::cConverted;
}

long PWin32CodePage::FromUTF16(const GBuffer& utf16, GBuffer& bytes) const {
    const auto count = static_cast<int>(utf16.GetLength() / 2);
    if (count == 0 || !IsKnown()) {
        bytes.Clear();
        return count == 0 ? GEncoding::cConverted : GEncoding::cInvalid;
    }
    const int measured = ToNarrow(AsWideUnits(utf16), count, nullptr, 0).length;
    if (measured == 0) return ReplaceInvalidUnits(AsWideUnits(utf16), count, bytes);
    GBuffer result = MakeEncodingOutput(static_cast<std::size_t>(measured));
    const Narrow narrow =
        ToNarrow(AsWideUnits(utf16), count, reinterpret_cast<char*>(result.GetWritePtr()), measured);
    // The system may count a substitute that it then cannot write.
    if (narrow.length == 0) return ReplaceInvalidUnits(AsWideUnits(utf16), count, bytes);
    result.SetLength(narrow.length);
    bytes = std::move(result);
    return narrow.replaced ? GEncoding::cReplaced : GEncoding::cConverted;
}
