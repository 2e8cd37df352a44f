#include "platform/posix/base/PPosixThreadLocalSlot.h"

#include <new>

PPosixThreadLocalSlot::PPosixThreadLocalSlot() {
    if (pthread_key_create(&mKey, nullptr) != 0) throw std::bad_alloc();
}

PPosixThreadLocalSlot::~PPosixThreadLocalSlot() {
    pthread_key_delete(mKey);
}

void* PPosixThreadLocalSlot::Get() const noexcept {
    return pthread_getspecific(mKey);
}

void PPosixThreadLocalSlot::Set(void* value) {
    if (pthread_setspecific(mKey, value) != 0) throw std::bad_alloc();
}
