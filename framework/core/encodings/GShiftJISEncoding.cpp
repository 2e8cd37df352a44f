#include "framework/core/encodings/GShiftJISEncoding.h"

#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GPlatformEncodingFactory.h"
#include "framework/core/memory/GReplaceable.h"

const GBuffer GShiftJISEncoding::sDescription = BorrowLiteral("ShiftJISEncoding");

namespace {

constinit GReplaceable<GShiftJISEncoding> sInstance;

constexpr long cShiftJISCodePage = 932;

}  // namespace

GShiftJISEncoding::GShiftJISEncoding() noexcept : GPlatformEncoding(cShiftJISCodePage) {}

GShiftJISEncoding* GShiftJISEncoding::GetInstance() {
    return sInstance.Get([] { return GPlatformEncodingFactory::GetInstance()->CreateShiftJISEncoding(); });
}

void GShiftJISEncoding::SetInstance(GShiftJISEncoding* instance) {
    sInstance.Set(instance);
}

const GBuffer& GShiftJISEncoding::GetASCIIDescription() const {
    return sDescription;
}
