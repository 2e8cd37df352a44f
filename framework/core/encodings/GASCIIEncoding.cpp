#include "framework/core/encodings/GASCIIEncoding.h"

#include <algorithm>

#include "framework/core/bytes/GCharCode.h"
#include "framework/core/encodings/GCodeUnits.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/memory/GReplaceable.h"

constinit const GBuffer GASCIIEncoding::sDescription(cLiteral<"ASCIIEncoding">);

namespace {

constinit GReplaceable<GASCIIEncoding> sInstance;

long NarrowToASCII(const GBuffer& utf16, GBuffer& out) {
    const auto length = static_cast<std::size_t>(utf16.GetLength()) / 2;
    GBuffer result = MakeEncodingOutput(length);
    unsigned char* bytes = result.GetWritePtr();
    long code = GEncoding::cConverted;
    for (std::size_t i = 0; i < length; ++i) {
        i += GCodeUnits::NarrowASCII(utf16.GetRawData() + 2 * i, length - i, bytes + i);
        if (i == length) break;
        bytes[i] = static_cast<unsigned char>(GEncoding::GetDefaultCharacter());
        code = GEncoding::cReplaced;
    }
    out = std::move(result);
    return code;
}

}  // namespace

GASCIIEncoding* GASCIIEncoding::GetInstance() {
    return sInstance.Get([] { return new GASCIIEncoding; });
}

void GASCIIEncoding::SetInstance(GASCIIEncoding* instance) {
    sInstance.Set(instance);
}

long GASCIIEncoding::ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const {
    if (source == nullptr) {
        out.Clear();
        return cConverted;
    }
    GBuffer utf16;
    const long read = source->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), utf16);
    return std::max(read, NarrowToASCII(utf16, out));
}

long GASCIIEncoding::ConvertTo(const GBuffer& bytes, const GUnicodeEncoding*, GBuffer& out) const {
    const auto length = static_cast<std::size_t>(bytes.GetLength());
    GBuffer result = MakeEncodingOutput(2 * length);
    unsigned char* units = result.GetWritePtr();
    long code = cConverted;
    for (std::size_t i = 0; i < length; ++i) {
        i += GCodeUnits::WidenASCII(bytes.GetRawData() + i, length - i, units + 2 * i);
        if (i == length) break;
        GCodeUnits::Store(units, i, GetDefaultUnit());
        code = cReplaced;
    }
    out = std::move(result);
    return code;
}

bool GASCIIEncoding::GetGlyphName(const GCharCode& code, GBuffer& name) const {
    if (code.GetLength() != 1 || code.GetByte() > 0x7F) return false;
    return GUnicodeEncoding::GetInstance()->GetGlyphName(
        GCharCode(static_cast<unsigned short>(code.GetByte())), name);
}

bool GASCIIEncoding::GetCharCode(const GBuffer& glyphName, GCharCode& code) const {
    GCharCode unicode;
    if (!GUnicodeEncoding::GetInstance()->GetCharCode(glyphName, unicode)) return false;
    if (unicode.GetUnitCount() != 1 || unicode.GetUnit() > 0x7F) return false;
    code = GCharCode(static_cast<unsigned char>(unicode.GetUnit()));
    return true;
}

const GBuffer& GASCIIEncoding::GetASCIIDescription() const {
    return sDescription;
}
