#include "framework/core/encodings/GEncoding.h"

#include <cstring>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GLatinEncodings.h"
#include "framework/core/encodings/GMacExpertEncoding.h"
#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"

char GEncoding::sDefaultCharacter = '@';

namespace {

// The target knows how to read any source: hand the work over to it.
long HandOver(const GBuffer& bytes, const GEncoding* source, const GEncoding* target, GBuffer& out) {
    if (target != nullptr) return target->ConvertFrom(bytes, source, out);
    out.Clear();
    return GEncoding::cConverted;
}

}  // namespace

GEncoding::~GEncoding() = default;

long GEncoding::ConvertTo(const GBuffer& bytes, const GPDFDocEncoding* target, GBuffer& out) const {
    return HandOver(bytes, this, target, out);
}

long GEncoding::ConvertTo(const GBuffer& bytes, const GCustomEncoding* target, GBuffer& out) const {
    return HandOver(bytes, this, target, out);
}

long GEncoding::ConvertTo(const GBuffer& bytes, const GWinAnsiEncoding* target, GBuffer& out) const {
    return HandOver(bytes, this, target, out);
}

long GEncoding::ConvertTo(const GBuffer& bytes, const GASCIIEncoding* target, GBuffer& out) const {
    return HandOver(bytes, this, target, out);
}

long GEncoding::ConvertTo(const GBuffer& bytes, const GMacRomanEncoding* target, GBuffer& out) const {
    return HandOver(bytes, this, target, out);
}

bool GEncoding::IsOfType(const GBuffer& name) const {
    return name == GetASCIIDescription();
}

void GEncoding::Normalize(GBuffer&) const {}

long GEncoding::GetLength(const unsigned char* text) const {
    return text == nullptr ? 0 : static_cast<long>(std::strlen(reinterpret_cast<const char*>(text)));
}

unsigned short GEncoding::GetDefaultUnit() {
    return static_cast<unsigned short>(static_cast<signed char>(sDefaultCharacter));
}

void GEncoding::FinalizeAll() {
    GASCIIEncoding::SetInstance(nullptr);
    GUTF8Encoding::SetInstance(nullptr);
    GSimpleEncoding::SetInstance(nullptr);
    GWinAnsiEncoding::SetInstance(nullptr);
    GMacRomanEncoding::SetInstance(nullptr);
    GMacExpertEncoding::SetInstance(nullptr);
    GStandardEncoding::SetInstance(nullptr);
    GPDFDocEncoding::SetInstance(nullptr);
    GPlatformEncoding::SetInstance(nullptr);
    GShiftJISEncoding::SetInstance(nullptr);
    GPlatformEncodingFactory::SetInstance(nullptr);
    GUnicodeEncoding::SetInstance(nullptr);
    GUnicodeEncoding::Finalize();
}
