#include "framework/core/encodings/PText.h"
#include "framework/core/text/GString.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/core/PWin32CodePage.h"

long PText::CodePageToUTF16(long codePage, const GBuffer& bytes, GBuffer& utf16) {
    return PWin32CodePage(codePage).ToUTF16(bytes, utf16);
}

long PText::UTF16ToCodePage(long codePage, const GBuffer& utf16, GBuffer& bytes) {
    return PWin32CodePage(codePage).FromUTF16(utf16, bytes);
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
