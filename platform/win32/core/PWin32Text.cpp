#include "framework/core/encodings/PText.h"

#include <algorithm>
#include <utility>

#include "framework/core/encodings/GEncoding.h"
#include "framework/core/memory/GAllocator.h"
#include "framework/core/text/GString.h"
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

bool IsKnown(UINT codePage) {
    CPINFO info;
    return ::GetCPInfo(codePage, &info) != FALSE;
}

// The stateful code pages, UTF-7 and the symbol page allow no flags at all.
bool AllowsFlags(UINT codePage) {
    return codePage != CP_UTF7 && codePage != CP_SYMBOL && (codePage < 50000 || codePage >= 60000);
}

bool AllowsDefaultCharacter(UINT codePage) {
    return AllowsFlags(codePage) && codePage != CP_UTF8 && codePage != cGB18030;
}

int ToWide(UINT codePage, const char* bytes, int length, wchar_t* units, int room) {
    const DWORD flags = AllowsFlags(codePage) || codePage == cGB18030 ? MB_ERR_INVALID_CHARS : 0;
    return ::MultiByteToWideChar(codePage, flags, bytes, length, units, room);
}

// Character by character: what the code page does not know becomes the default character.
long ReplaceInvalidBytes(UINT codePage, const GBuffer& bytes, GBuffer& utf16) {
    const char* source = AsChars(bytes);
    const auto length = static_cast<int>(bytes.GetLength());
    GBuffer result;
    long code = GEncoding::cConverted;
    for (int position = 0; position < length;) {
        wchar_t units[cLongestCharacter];
        int used = 1;
        int count = 0;
        const int longest = std::min(cLongestCharacter, length - position);
        while (used <= longest &&
               (count = ToWide(codePage, source + position, used, units, cLongestCharacter)) == 0)
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

struct NarrowResult {
    int length = 0;
    bool replaced = false;
};

NarrowResult ToNarrow(UINT codePage, const wchar_t* units, int count, char* bytes, int room) {
    NarrowResult result;
    if (!AllowsDefaultCharacter(codePage)) {
        const DWORD flags = codePage == CP_UTF8 || codePage == cGB18030 ? WC_ERR_INVALID_CHARS : 0;
        result.length = ::WideCharToMultiByte(codePage, flags, units, count, bytes, room, nullptr, nullptr);
        return result;
    }
    const char character = GEncoding::GetDefaultCharacter();
    BOOL replaced = FALSE;
    result.length = ::WideCharToMultiByte(codePage, WC_NO_BEST_FIT_CHARS, units, count, bytes, room,
                                          &character, &replaced);
    result.replaced = replaced != FALSE;
    return result;
}

// Character by character, for code pages that refuse a text with half a surrogate pair in it.
long ReplaceInvalidUnits(UINT codePage, const wchar_t* units, int count, GBuffer& bytes) {
    GBuffer result;
    long code = GEncoding::cConverted;
    for (int position = 0; position < count;) {
        const bool isPair = position + 1 < count && IS_SURROGATE_PAIR(units[position], units[position + 1]);
        const int used = isPair ? 2 : 1;
        char character[4 * cLongestCharacter];
        const NarrowResult narrow =
            ToNarrow(codePage, units + position, used, character, static_cast<int>(sizeof character));
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

}  // namespace

long PText::CodePageToUTF16(long codePage, const GBuffer& bytes, GBuffer& utf16) {
    const auto page = static_cast<UINT>(codePage);
    if (bytes.IsEmpty() || !IsKnown(page)) {
        const bool isEmpty = bytes.IsEmpty();
        utf16.Clear();
        return isEmpty ? GEncoding::cConverted : GEncoding::cInvalid;
    }
    const auto length = static_cast<int>(bytes.GetLength());
    const int count = ToWide(page, AsChars(bytes), length, nullptr, 0);
    if (count == 0) return ReplaceInvalidBytes(page, bytes, utf16);
    if (count > GBuffer::cMaxLength / 2) GAllocator::ThrowOutOfMemory();
    GBuffer result;
    result.Allocate(2L * count);
    result.SetLength(2L * count);
    ToWide(page, AsChars(bytes), length, reinterpret_cast<wchar_t*>(result.GetWritePtr()), count);
    utf16 = std::move(result);
    return GEncoding::cConverted;
}

long PText::UTF16ToCodePage(long codePage, const GBuffer& utf16, GBuffer& bytes) {
    const auto page = static_cast<UINT>(codePage);
    const auto count = static_cast<int>(utf16.GetLength() / 2);
    if (count == 0 || !IsKnown(page)) {
        bytes.Clear();
        return count == 0 ? GEncoding::cConverted : GEncoding::cInvalid;
    }
    const NarrowResult measured = ToNarrow(page, AsWideUnits(utf16), count, nullptr, 0);
    if (measured.length == 0) return ReplaceInvalidUnits(page, AsWideUnits(utf16), count, bytes);
    GBuffer result;
    result.Allocate(measured.length);
    result.SetLength(measured.length);
    const NarrowResult narrow = ToNarrow(page, AsWideUnits(utf16), count,
                                         reinterpret_cast<char*>(result.GetWritePtr()), measured.length);
    bytes = std::move(result);
    return narrow.replaced ? GEncoding::cReplaced : GEncoding::cConverted;
}

int PText::CompareForUser(const GString& a, const GString& b, bool ignoreCase) {
    const DWORD flags = ignoreCase ? NORM_IGNORECASE : 0;
    const auto aUnits = reinterpret_cast<const wchar_t*>(a.GetUTF16Ptr());
    const auto bUnits = reinterpret_cast<const wchar_t*>(b.GetUTF16Ptr());
    const int order = ::CompareStringW(LOCALE_USER_DEFAULT, flags, aUnits, static_cast<int>(a.GetLength()),
                                       bUnits, static_cast<int>(b.GetLength()));
    // The system answers 1, 2 or 3, and 0 when it fails; a comparison that fails finds no difference.
    return order == 0 ? 0 : order - CSTR_EQUAL;
}
