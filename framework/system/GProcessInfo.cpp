#include "framework/system/GProcessInfo.h"

#include <memory>
#include <mutex>

#include "PPlatformTypes.h"

namespace {

struct Holder {
    PCriticalSection lock;
    std::unique_ptr<GProcessInfo> info;
};

Holder& GetHolder() {
    static Holder sProcessInfo;
    return sProcessInfo;
}

}  // namespace

GProcessInfo::~GProcessInfo() = default;

GProcessInfo* GProcessInfo::GetInstance() {
    Holder& holder = GetHolder();
    const std::lock_guard<PCriticalSection> guard(holder.lock);
    if (!holder.info) holder.info.reset(CreateDefault());
    return holder.info.get();
}

void GProcessInfo::SetInstance(GProcessInfo* info) {
    Holder& holder = GetHolder();
    const std::lock_guard<PCriticalSection> guard(holder.lock);
    holder.info.reset(info);
}
