#include "framework/core/encodings/GPlatformEncoding.h"

#include "framework/core/bytes/GCharCode.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GPlatformEncodingFactory.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/encodings/PText.h"
#include "framework/core/memory/GReplaceable.h"

const GBuffer GPlatformEncoding::sDescription = BorrowLiteral("WinPlatformEncoding_CodePage");

namespace {

constinit GReplaceable<GPlatformEncoding> sInstance;

}  // namespace

GPlatformEncoding::GPlatformEncoding(long codePage) noexcept
    : mCodePage(static_cast<std::int32_t>(codePage)) {}

GPlatformEncoding* GPlatformEncoding::GetInstance() {
    return sInstance.Get([] { return GPlatformEncodingFactory::GetInstance()->CreatePlatformEncoding(0); });
}

void GPlatformEncoding::SetInstance(GPlatformEncoding* instance) {
    sInstance.Set(instance);
}

void GPlatformEncoding::SetModifier(long codePage) noexcept {
    mCodePage.store(static_cast<std::int32_t>(codePage), std::memory_order_relaxed);
}

long GPlatformEncoding::ConvertTo(const GBuffer& bytes, const GUnicodeEncoding*, GBuffer& out) const {
    return PText::CodePageToUTF16(GetModifier(), bytes, out);
}

long GPlatformEncoding::ConvertFromUnicode(const GBuffer& utf16, GBuffer& out) const {
    return PText::UTF16ToCodePage(GetModifier(), utf16, out);
}

bool GPlatformEncoding::GetGlyphName(const GCharCode& code, GBuffer& name) const {
    GBuffer utf16;
    if (PText::CodePageToUTF16(GetModifier(), GBuffer(code.GetPtr(), code.GetLength()), utf16) != cConverted)
        return false;
    return GUnicodeEncoding::GetInstance()->GetGlyphName(GCharCode(utf16.GetRawData(), utf16.GetLength()),
                                                         name);
}

bool GPlatformEncoding::GetCharCode(const GBuffer& glyphName, GCharCode& code) const {
    GCharCode unicode;
    if (!GUnicodeEncoding::GetInstance()->GetCharCode(glyphName, unicode)) return false;
    GBuffer bytes;
    const GBuffer utf16(unicode.GetPtr(), unicode.GetLength());
    if (PText::UTF16ToCodePage(GetModifier(), utf16, bytes) != cConverted) return false;
    code = GCharCode(bytes.GetRawData(), bytes.GetLength());
    return true;
}

const GBuffer& GPlatformEncoding::GetASCIIDescription() const {
    return sDescription;
}
