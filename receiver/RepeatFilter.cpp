#include "receiver/RepeatFilter.h"

#include "platform/win32/base/PWin32Api.h"

bool RepeatFilter::IsNew(const std::wstring& line) {
    constexpr unsigned long long cQuietMilliseconds = 60000;
    const unsigned long long now = ::GetTickCount64();
    if (line == mLast && now - mLastTime < cQuietMilliseconds) return false;
    mLast = line;
    mLastTime = now;
    return true;
}
