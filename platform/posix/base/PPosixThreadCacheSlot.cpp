#include "platform/posix/base/PPosixThreadCacheSlot.h"

#include <atomic>

namespace {

constinit std::atomic<std::uint64_t> sSlots = 0;

}  // namespace

PPosixThreadCacheSlot::PPosixThreadCacheSlot(AtThreadEnd atThreadEnd) noexcept {
    if (pthread_key_create(&mKey, atThreadEnd) == 0) mID = ++sSlots;
}

bool PPosixThreadCacheSlot::Set(void* value) noexcept {
    if (mID == 0 || pthread_setspecific(mKey, value) != 0) return false;
    sLast = {mID, value};
    return true;
}

void PPosixThreadCacheSlot::End() noexcept {
    if (mID != 0) pthread_key_delete(mKey);
    mID = 0;
}

void* PPosixThreadCacheSlot::GetFromKey() const noexcept {
    if (mID == 0) return nullptr;
    sLast = {mID, pthread_getspecific(mKey)};
    return sLast.value;
}
