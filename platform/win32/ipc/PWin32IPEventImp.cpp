#include "platform/win32/ipc/PWin32IPEventImp.h"

#include <algorithm>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32LastErrorKeeper.h"
#include "platform/win32/ipc/PWin32IPMutexImp.h"
#include "platform/win32/ipc/PWin32KernelObject.h"

namespace {

void* Create(const GBuffer& name) {
    PWin32KernelObject::OpenToEverybody security;
    return ::CreateEventA(static_cast<SECURITY_ATTRIBUTES*>(security.GetAttributes()), FALSE, FALSE,
                          name.GetPtr());
}

}  // namespace

PWin32IPEventImp::PWin32IPEventImp(const GBuffer& identifier, Use use) {
    const PWin32LastErrorKeeper keeper;
    const GBuffer name = PWin32IPMutexImp::GetMemoryPath() + identifier;
    const DWORD access = use == Use::cOpen ? EVENT_MODIFY_STATE : EVENT_ALL_ACCESS;
    mHandle.Reset(::OpenEventA(access, FALSE, name.GetPtr()));
    if (!mHandle && use == Use::cOpenOrCreate) mHandle.Reset(Create(name));
}

void PWin32IPEventImp::Set() noexcept {
    const PWin32LastErrorKeeper keeper;
    if (mHandle) ::SetEvent(mHandle.Get());
}

bool PWin32IPEventImp::WaitForEither(PWin32IPEventImp* one, PWin32IPEventImp* other,
                                     long milliseconds) noexcept {
    const PWin32LastErrorKeeper keeper;
    HANDLE handles[2];
    DWORD count = 0;
    for (const PWin32IPEventImp* event : {one, other})
        if (event != nullptr && event->mHandle) handles[count++] = event->mHandle.Get();
    const auto limit = static_cast<DWORD>(std::max(milliseconds, 0L));
    if (count > 0) {
        const DWORD result = ::WaitForMultipleObjects(count, handles, FALSE, limit);
        if (result != WAIT_FAILED) return result < WAIT_OBJECT_0 + count;
    }
    ::Sleep(limit);
    return false;
}
