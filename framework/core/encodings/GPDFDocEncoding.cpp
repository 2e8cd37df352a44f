#include "framework/core/encodings/GPDFDocEncoding.h"

#include "framework/core/encodings/GEncodingBuffers.h"
#include "framework/core/encodings/GLatinCharset.h"
#include "framework/core/memory/GReplaceable.h"

const GBuffer GPDFDocEncoding::sDescription = BorrowLiteral("PDFDocEncoding");

namespace {

constinit GReplaceable<GPDFDocEncoding> sInstance;

}  // namespace

GPDFDocEncoding::GPDFDocEncoding() {
    GLatinCharset::AddMappings(*this, &GLatinCharsetRow::pdfDoc);
}

GPDFDocEncoding* GPDFDocEncoding::GetInstance() {
    return sInstance.Get([] { return new GPDFDocEncoding; });
}

void GPDFDocEncoding::SetInstance(GPDFDocEncoding* instance) {
    sInstance.Set(instance);
}

const GBuffer& GPDFDocEncoding::GetASCIIDescription() const {
    return sDescription;
}
