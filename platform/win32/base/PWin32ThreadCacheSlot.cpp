#include "platform/win32/base/PWin32ThreadCacheSlot.h"

#include <cstddef>

#include "platform/win32/base/PWin32Api.h"
#include "platform/win32/base/PWin32LastErrorKeeper.h"

#include <winternl.h>

namespace {

constexpr DWORD cFirstSlots = 64;

static_assert(sizeof(TEB::TlsSlots) == cFirstSlots * sizeof(void*));
constexpr unsigned long long cFirstSlotsOffset = offsetof(TEB, TlsSlots);
static_assert(cFirstSlotsOffset == 0x1480, "where 64-bit Windows has them");

}  // namespace

PWin32ThreadCacheSlot::PWin32ThreadCacheSlot(AtThreadEnd atThreadEnd) noexcept
    : mIndex(::TlsAlloc()), mEndIndex(::FlsAlloc(atThreadEnd)) {
    if (mIndex == TLS_OUT_OF_INDEXES || mEndIndex == FLS_OUT_OF_INDEXES) {
        End();
    } else if (mIndex < cFirstSlots) {
        mOffset = cFirstSlotsOffset + mIndex * sizeof(void*);
    }
}

void PWin32ThreadCacheSlot::End() noexcept {
    mOffset = 0;
    if (mIndex != TLS_OUT_OF_INDEXES) ::TlsFree(mIndex);
    mIndex = TLS_OUT_OF_INDEXES;
    // The last, since it calls the function for what threads have set and that then finds null.
    const DWORD endIndex = mEndIndex;
    mEndIndex = FLS_OUT_OF_INDEXES;
    if (endIndex != FLS_OUT_OF_INDEXES) ::FlsFree(endIndex);
}

bool PWin32ThreadCacheSlot::Set(void* value) noexcept {
    if (mIndex == TLS_OUT_OF_INDEXES || !::TlsSetValue(mIndex, value)) return false;
    if (::FlsSetValue(mEndIndex, value)) return true;
    ::TlsSetValue(mIndex, nullptr);
    return false;
}

void* PWin32ThreadCacheSlot::GetFromExpansion() const noexcept {
    if (mIndex == TLS_OUT_OF_INDEXES) return nullptr;
    const PWin32LastErrorKeeper keeper;
    return ::TlsGetValue(mIndex);
}
