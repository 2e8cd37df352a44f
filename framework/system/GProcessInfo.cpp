#include "framework/system/GProcessInfo.h"

#include "framework/core/memory/GReplaceable.h"

namespace {

constinit GReplaceable<GProcessInfo> sInstance;

}  // namespace

GProcessInfo::~GProcessInfo() = default;

GProcessInfo* GProcessInfo::GetInstance() {
    return sInstance.Get([] { return CreateDefault(); });
}

void GProcessInfo::SetInstance(GProcessInfo* info) {
    sInstance.Set(info);
}
