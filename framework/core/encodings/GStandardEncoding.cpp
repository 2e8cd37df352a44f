#include "framework/core/encodings/GStandardEncoding.h"

#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GLatinCharset.h"
#include "framework/core/memory/GReplaceable.h"

const GBuffer GStandardEncoding::sDescription = BorrowLiteral("StandardEncoding");

namespace {

constinit GReplaceable<GStandardEncoding> sInstance;

}  // namespace

GStandardEncoding::GStandardEncoding() {
    GLatinCharset::AddMappings(*this, &GLatinCharsetRow::standard);
}

GStandardEncoding* GStandardEncoding::GetInstance() {
    return sInstance.Get([] { return new GStandardEncoding; });
}

void GStandardEncoding::SetInstance(GStandardEncoding* instance) {
    sInstance.Set(instance);
}

const GBuffer& GStandardEncoding::GetASCIIDescription() const {
    return sDescription;
}
