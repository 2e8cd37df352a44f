#include "framework/core/encodings/GWinAnsiEncoding.h"

#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GLatinCharset.h"
#include "framework/core/memory/GReplaceable.h"

const GBuffer GWinAnsiEncoding::sDescription = BorrowLiteral("WinAnsiEncoding");

namespace {

constinit GReplaceable<GWinAnsiEncoding> sInstance;

constexpr unsigned short cBullet = 0x2022;

}  // namespace

GWinAnsiEncoding::GWinAnsiEncoding() {
    AddMapping(149, BorrowLiteral("bullet"), cBullet);
    GLatinCharset::AddMappings(*this, &GLatinCharsetRow::winAnsi);
}

GWinAnsiEncoding* GWinAnsiEncoding::GetInstance() {
    return sInstance.Get([] { return new GWinAnsiEncoding; });
}

void GWinAnsiEncoding::SetInstance(GWinAnsiEncoding* instance) {
    sInstance.Set(instance);
}

const GBuffer& GWinAnsiEncoding::GetASCIIDescription() const {
    return sDescription;
}
