#include "framework/system/GSessionInfo.h"

#include <memory>
#include <mutex>

#include "PPlatformTypes.h"

namespace {

struct Holder {
    PCriticalSection lock;
    std::unique_ptr<GSessionInfo> info;
};

Holder& GetHolder() {
    static Holder sSessionInfo;
    return sSessionInfo;
}

}  // namespace

GSessionInfo::~GSessionInfo() = default;

GSessionInfo* GSessionInfo::GetInstance() {
    Holder& holder = GetHolder();
    const std::lock_guard<PCriticalSection> guard(holder.lock);
    if (!holder.info) holder.info.reset(CreateDefault());
    return holder.info.get();
}

void GSessionInfo::SetInstance(GSessionInfo* info) {
    Holder& holder = GetHolder();
    const std::lock_guard<PCriticalSection> guard(holder.lock);
    holder.info.reset(info);
}
