#include "tools/machine/Failure.h"

#include "platform/win32/base/PWin32Api.h"

namespace {

const wchar_t* GetAdvice(unsigned long code) {
    static constexpr struct {
        unsigned long code;
        const wchar_t* advice;
    } cAdvice[] = {
        {ERROR_ACCESS_DENIED, L"Run this from an administrator's command prompt."},
        {ERROR_PRINT_MONITOR_IN_USE, L"Another printer still uses the monitor's port."},
        {RPC_S_SERVER_UNAVAILABLE, L"Start the print spooler (net start spooler)."},
    };
    for (const auto& row : cAdvice) {
        if (row.code == code) return row.advice;
    }
    return nullptr;
}

std::wstring GetSystemText(unsigned long code) {
    wchar_t text[512];
    DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                                    0, text, static_cast<DWORD>(std::size(text)), nullptr);
    while (length > 0 && text[length - 1] <= L' ') --length;
    return std::wstring(text, length);
}

}  // namespace

std::wstring DescribeSystemError(unsigned long code) {
    std::wstring description = GetSystemText(code);
    if (!description.empty()) description += L' ';
    description += L"(error " + std::to_wstring(code) + L')';
    if (const wchar_t* advice = GetAdvice(code)) description += std::wstring(L"\n") + advice;
    return description;
}

Failure SystemFailure(const std::wstring& action, unsigned long code) {
    return Failure(action + L" failed: " + DescribeSystemError(code));
}

Failure SystemFailure(const std::wstring& action) {
    return SystemFailure(action, ::GetLastError());
}
