#include "framework/core/encodings/GMacExpertEncoding.h"

#include "framework/core/encodings/GCharacterTables.h"
#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/memory/GReplaceable.h"

constinit const GBuffer GMacExpertEncoding::sDescription(cLiteral<"MacExpertEncoding">);

namespace {

constinit GReplaceable<GMacExpertEncoding> sInstance;

}  // namespace

GMacExpertEncoding::GMacExpertEncoding() {
    for (const GMacExpertRow& row : GCharacterTables::GetMacExpert())
        AddMapping(row.code, BorrowLiteral(row.glyph));
}

GMacExpertEncoding* GMacExpertEncoding::GetInstance() {
    return sInstance.Get([] { return new GMacExpertEncoding; });
}

void GMacExpertEncoding::SetInstance(GMacExpertEncoding* instance) {
    sInstance.Set(instance);
}

const GBuffer& GMacExpertEncoding::GetASCIIDescription() const {
    return sDescription;
}
