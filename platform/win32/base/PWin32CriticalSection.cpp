#include "platform/win32/base/PWin32CriticalSection.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

// What the guarded sections of the framework take is far below the price of going to sleep.
constexpr DWORD cSpinCount = 4000;

CRITICAL_SECTION* AsSection(unsigned char* bytes) {
    return reinterpret_cast<CRITICAL_SECTION*>(bytes);
}

}  // namespace

PWin32CriticalSection::PWin32CriticalSection() noexcept {
    static_assert(sizeof(CRITICAL_SECTION) == cSize);
    static_assert(alignof(CRITICAL_SECTION) <= 8);
    // Without debug information nothing is allocated, and so the call cannot fail.
    ::InitializeCriticalSectionEx(AsSection(mSection), cSpinCount, CRITICAL_SECTION_NO_DEBUG_INFO);
}

PWin32CriticalSection::~PWin32CriticalSection() {
    ::DeleteCriticalSection(AsSection(mSection));
}

void PWin32CriticalSection::Lock() noexcept {
    ::EnterCriticalSection(AsSection(mSection));
}

bool PWin32CriticalSection::TryToLock() noexcept {
    return ::TryEnterCriticalSection(AsSection(mSection)) != FALSE;
}

void PWin32CriticalSection::Unlock() noexcept {
    ::LeaveCriticalSection(AsSection(mSection));
}
