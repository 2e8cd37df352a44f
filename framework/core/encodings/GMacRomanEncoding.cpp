#include "framework/core/encodings/GMacRomanEncoding.h"

#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GLatinCharset.h"
#include "framework/core/memory/GReplaceable.h"

const GBuffer GMacRomanEncoding::sDescription = BorrowLiteral("MacRomanEncoding");

namespace {

constinit GReplaceable<GMacRomanEncoding> sInstance;

}  // namespace

GMacRomanEncoding::GMacRomanEncoding() {
    GLatinCharset::AddMappings(*this, &GLatinCharsetRow::macRoman);
}

GMacRomanEncoding* GMacRomanEncoding::GetInstance() {
    return sInstance.Get([] { return new GMacRomanEncoding; });
}

void GMacRomanEncoding::SetInstance(GMacRomanEncoding* instance) {
    sInstance.Set(instance);
}

const GBuffer& GMacRomanEncoding::GetASCIIDescription() const {
    return sDescription;
}
