#include "framework/core/encodings/GPlatformEncoding.h"

#include "framework/core/bytes/GCharCode.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/encodings/PText.h"
#include "framework/core/memory/GReplaceable.h"

constinit const GBuffer GPlatformEncoding::sDescription(cLiteral<"WinPlatformEncoding_CodePage">);
constinit const GBuffer GShiftJISEncoding::sDescription(cLiteral<"ShiftJISEncoding">);

namespace {

constinit GReplaceable<GPlatformEncoding> sPlatform;
constinit GReplaceable<GShiftJISEncoding> sShiftJIS;
constinit GReplaceable<GPlatformEncodingFactory> sFactory;

constexpr long cShiftJISCodePage = 932;

}  // namespace

GPlatformEncoding::GPlatformEncoding(long codePage) noexcept
    : mCodePage(static_cast<std::int32_t>(codePage)) {}

GPlatformEncoding* GPlatformEncoding::GetInstance() {
    return sPlatform.Get([] { return GPlatformEncodingFactory::GetInstance()->CreatePlatformEncoding(0); });
}

void GPlatformEncoding::SetInstance(GPlatformEncoding* instance) {
    sPlatform.Set(instance);
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

GShiftJISEncoding::GShiftJISEncoding() noexcept : GPlatformEncoding(cShiftJISCodePage) {}

GShiftJISEncoding* GShiftJISEncoding::GetInstance() {
    return sShiftJIS.Get([] { return GPlatformEncodingFactory::GetInstance()->CreateShiftJISEncoding(); });
}

void GShiftJISEncoding::SetInstance(GShiftJISEncoding* instance) {
    sShiftJIS.Set(instance);
}

const GBuffer& GShiftJISEncoding::GetASCIIDescription() const {
    return sDescription;
}

GPlatformEncodingFactory::~GPlatformEncodingFactory() = default;

GPlatformEncodingFactory* GPlatformEncodingFactory::GetInstance() {
    return sFactory.Get([] { return new GPlatformEncodingFactory; });
}

void GPlatformEncodingFactory::SetInstance(GPlatformEncodingFactory* instance) {
    sFactory.Set(instance);
}

GPlatformEncoding* GPlatformEncodingFactory::CreatePlatformEncoding(long codePage) const {
    return new GPlatformEncoding(codePage);
}

GShiftJISEncoding* GPlatformEncodingFactory::CreateShiftJISEncoding() const {
    return new GShiftJISEncoding;
}

GPlatformEncodingModifier::GPlatformEncodingModifier(long codePage)
    : mEncoding(GPlatformEncoding::GetInstance()), mOldCodePage(mEncoding->GetModifier()) {
    mEncoding->SetModifier(codePage);
}

GPlatformEncodingModifier::~GPlatformEncodingModifier() {
    mEncoding->SetModifier(mOldCodePage);
}
