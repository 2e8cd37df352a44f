#include "platform/posix/base/PPosixThreadCacheSlot.h"

PPosixThreadCacheSlot::PPosixThreadCacheSlot(AtThreadEnd atThreadEnd) noexcept
    : mIsThere(pthread_key_create(&mKey, atThreadEnd) == 0) {}

void PPosixThreadCacheSlot::End() noexcept {
    if (mIsThere) pthread_key_delete(mKey);
    mIsThere = false;
}
