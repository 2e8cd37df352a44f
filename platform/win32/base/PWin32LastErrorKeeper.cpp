#include "platform/win32/base/PWin32LastErrorKeeper.h"

#include "platform/win32/base/PWin32Api.h"

PWin32LastErrorKeeper::PWin32LastErrorKeeper() noexcept : mLastError(::GetLastError()) {}

PWin32LastErrorKeeper::~PWin32LastErrorKeeper() {
    ::SetLastError(mLastError);
}
