#include "framework/core/trace/GCallbackAssert.h"

#include "framework/core/memory/GReplaceable.h"

namespace {

GReplaceable<GCallbackAssert> sCallback;
bool sWasSet = false;

}  // namespace

GCallbackAssert::~GCallbackAssert() = default;

GCallbackAssert* GCallbackAssert::GetInstance() noexcept {
    return sCallback.Get([]() -> GCallbackAssert* { return nullptr; });
}

void GCallbackAssert::SetInstance(GCallbackAssert* callback) {
    sCallback.Set(callback);
    sWasSet = true;
}

void GCallbackAssert::SetDefaultInstance(GCallbackAssert* callback) {
    if (!sWasSet) {
        SetInstance(callback);
    } else if (callback != GetInstance()) {
        delete callback;
    }
}
