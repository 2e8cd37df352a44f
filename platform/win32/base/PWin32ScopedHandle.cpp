#include "platform/win32/base/PWin32ScopedHandle.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

// Owners unwind while an exception is being made from the last error; keep it intact.
void CloseQuietly(void* handle) noexcept {
    const DWORD lastError = ::GetLastError();
    ::CloseHandle(handle);
    ::SetLastError(lastError);
}

}  // namespace

void PWin32KernelHandle::Close(void* handle) noexcept {
    CloseQuietly(handle);
}

void PWin32FileHandle::Close(void* handle) noexcept {
    CloseQuietly(handle);
}
