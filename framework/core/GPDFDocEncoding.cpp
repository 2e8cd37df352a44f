#include "framework/core/GPDFDocEncoding.h"

#include "framework/core/GEncodingBuffers.h"
#include "framework/core/GEncodingSingleton.h"
#include "framework/core/GLatinCharset.h"

const GBuffer GPDFDocEncoding::sDescription = BorrowLiteral("PDFDocEncoding");

namespace {

constinit GEncodingSingleton<GPDFDocEncoding> sInstance;

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
