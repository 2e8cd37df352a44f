#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/win32/base/PWin32Api.h"
#include "tools/machine/Failure.h"

/// SpoolerList: the records that one of the spooler's enumeration calls returns, with the memory
/// that holds their texts.
template <class Record>
class SpoolerList {
public:
    /// `enumerate(buffer, size, &needed, &count)` makes the call; `what` completes "Listing ..." for
    /// the Failure. The call is repeated while the list outgrows the buffer.
    template <class Enumerate>
    SpoolerList(const std::wstring& what, Enumerate enumerate) {
        DWORD needed = 0;
        constexpr int cMaxAttempts = 8;
        for (int attempt = 0; attempt < cMaxAttempts; ++attempt) {
            mMemory.resize(needed);
            if (enumerate(mMemory.data(), static_cast<DWORD>(mMemory.size()), &needed, &mCount)) return;
            if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) break;
        }
        throw SystemFailure(L"Listing the " + what);
    }
    const Record* begin() const { return reinterpret_cast<const Record*>(mMemory.data()); }
    const Record* end() const { return begin() + mCount; }

private:
    std::vector<BYTE> mMemory;
    DWORD mCount = 0;
};

/// A text that the spooler may leave out.
inline std::wstring TextOrEmpty(const wchar_t* text) {
    return text != nullptr ? text : L"";
}

/// Whether two names are the same to the spooler, which does not tell upper from lower case.
inline bool IsSameName(const std::wstring& one, const std::wstring& other) {
    return ::CompareStringOrdinal(one.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
}
