#include "framework/system/GSessionInfo.h"

#include "framework/core/memory/GReplaceable.h"

namespace {

constinit GReplaceable<GSessionInfo> sInstance;

}  // namespace

GSessionInfo::~GSessionInfo() = default;

GSessionInfo* GSessionInfo::GetInstance() {
    return sInstance.Get([] { return CreateDefault(); });
}

void GSessionInfo::SetInstance(GSessionInfo* info) {
    sInstance.Set(info);
}
