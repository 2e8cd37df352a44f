#include "framework/core/encodings/GPlatformEncodingFactory.h"

#include <atomic>
#include <memory>

#include "framework/core/encodings/GPlatformEncoding.h"
#include "framework/core/encodings/GShiftJISEncoding.h"

namespace {

constinit std::atomic<GPlatformEncodingFactory*> sInstance = nullptr;

}  // namespace

GPlatformEncodingFactory::~GPlatformEncodingFactory() = default;

GPlatformEncodingFactory* GPlatformEncodingFactory::GetInstance() {
    GPlatformEncodingFactory* present = sInstance.load(std::memory_order_acquire);
    if (present != nullptr) return present;
    auto created = std::make_unique<GPlatformEncodingFactory>();
    if (sInstance.compare_exchange_strong(present, created.get(), std::memory_order_acq_rel))
        return created.release();
    return present;
}

void GPlatformEncodingFactory::SetInstance(GPlatformEncodingFactory* instance) {
    const std::unique_ptr<GPlatformEncodingFactory> old(
        sInstance.exchange(instance, std::memory_order_acq_rel));
}

GPlatformEncoding* GPlatformEncodingFactory::CreatePlatformEncoding(long codePage) const {
    return new GPlatformEncoding(codePage);
}

GShiftJISEncoding* GPlatformEncodingFactory::CreateShiftJISEncoding() const {
    return new GShiftJISEncoding;
}
