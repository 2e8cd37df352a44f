#include "framework/system/GProcessInfo.h"

#include "framework/core/memory/GReplaceable.h"

namespace {

constinit GReplaceable<GProcessInfo> sProcessInfo;

}  // namespace

GProcessInfo::~GProcessInfo() = default;

GProcessInfo* GProcessInfo::GetInstance() {
    return sProcessInfo.Get([] { return CreateDefault(); });
}

void GProcessInfo::SetInstance(GProcessInfo* info) {
    sProcessInfo.Set(info);
}
