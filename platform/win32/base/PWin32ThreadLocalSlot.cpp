#include "platform/win32/base/PWin32ThreadLocalSlot.h"

#include <new>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32LastErrorKeeper.h"

PWin32ThreadLocalSlot::PWin32ThreadLocalSlot() : mIndex(::TlsAlloc()) {
    if (mIndex == TLS_OUT_OF_INDEXES) throw std::bad_alloc();
}

PWin32ThreadLocalSlot::~PWin32ThreadLocalSlot() {
    ::TlsFree(mIndex);
}

void* PWin32ThreadLocalSlot::Get() const noexcept {
    // TlsGetValue clears the last error when it succeeds, to tell a stored null from a failure.
    const PWin32LastErrorKeeper keeper;
    return ::TlsGetValue(mIndex);
}

void PWin32ThreadLocalSlot::Set(void* value) {
    if (::TlsSetValue(mIndex, value) == FALSE) throw std::bad_alloc();
}
