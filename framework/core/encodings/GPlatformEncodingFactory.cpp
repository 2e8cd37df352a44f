#include "framework/core/encodings/GPlatformEncodingFactory.h"

#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GShiftJISEncoding.h"
#include "framework/core/memory/GReplaceable.h"

namespace {

constinit GReplaceable<GPlatformEncodingFactory> sInstance;

}  // namespace

GPlatformEncodingFactory::~GPlatformEncodingFactory() = default;

GPlatformEncodingFactory* GPlatformEncodingFactory::GetInstance() {
    return sInstance.Get([] { return new GPlatformEncodingFactory; });
}

void GPlatformEncodingFactory::SetInstance(GPlatformEncodingFactory* instance) {
    sInstance.Set(instance);
}

GPlatformEncoding* GPlatformEncodingFactory::CreatePlatformEncoding(long codePage) const {
    return new GPlatformEncoding(codePage);
}

GShiftJISEncoding* GPlatformEncodingFactory::CreateShiftJISEncoding() const {
    return new GShiftJISEncoding;
}
