#include "platform/win32/ipc/PWin32IPMutexImp.h"

#include <algorithm>

#include "framework/system/GOSVersion.h"
#include "framework/system/PSystem.h"
#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/ipc/PWin32KernelObject.h"

namespace {

constexpr double cLongestWait = 0x7FFFFFFF;  // milliseconds

void* OpenOrCreate(const GBuffer& name) {
    void* handle = ::OpenMutexA(MUTEX_ALL_ACCESS, FALSE, name.GetPtr());
    if (handle != nullptr) return handle;
    PWin32KernelObject::OpenToEverybody security;
    handle =
        ::CreateMutexA(static_cast<SECURITY_ATTRIBUTES*>(security.GetAttributes()), FALSE, name.GetPtr());
    if (handle == nullptr) PWin32KernelObject::ThrowLastError();
    return handle;
}

}  // namespace

PWin32IPMutexImp::PWin32IPMutexImp(const GBuffer& identifier)
    : mHandle(OpenOrCreate(GetMemoryPath() + identifier)) {}

PWin32IPMutexImp::~PWin32IPMutexImp() = default;

void PWin32IPMutexImp::Lock() {
    if (::WaitForSingleObject(mHandle.Get(), INFINITE) == WAIT_FAILED) PWin32KernelObject::ThrowLastError();
}

bool PWin32IPMutexImp::TryToLock(double seconds) {
    const double milliseconds = std::clamp(seconds * 1000.0, 0.0, cLongestWait);
    const DWORD result = ::WaitForSingleObject(mHandle.Get(), static_cast<DWORD>(milliseconds));
    return result != WAIT_TIMEOUT && result != WAIT_FAILED;
}

void PWin32IPMutexImp::Unlock() {
    if (!::ReleaseMutex(mHandle.Get())) PWin32KernelObject::ThrowLastError();
}

void PWin32IPMutexImp::Close() {
    if (!::CloseHandle(mHandle.Release())) PWin32KernelObject::ThrowLastError();
}

GBuffer PWin32IPMutexImp::GetMemoryPath() {
    return GBuffer(GOSVersion::HasGlobalMutexes(PSystem::GetOSCode()) ? "Global\\" : "");
}

long PWin32IPMutexImp::GetMaxIDSize() {
    return PWin32KernelObject::cMaxNameSize - GetMemoryPath().GetLength();
}
