#pragma once

#include <cstdint>

#include "framework/core/errors/GException.h"

/// PWin32SystemException: a failed call of the operating system (GExceptionID::cWin32SystemError), with
/// the system's code.
///
/// The description is the system's own message for the code: in English when the string pools'
/// current language is "enUS", otherwise in the user's language.
class QUILLON_EXPORT PWin32SystemException : public GException {
public:
    explicit PWin32SystemException(long errorCode);
    PWin32SystemException(const PWin32SystemException&) = default;
    PWin32SystemException& operator=(const PWin32SystemException&) = default;
    ~PWin32SystemException() override;

    GLngString GetLngDescription() const override;
    long GetSystemErrorCode() const noexcept { return mErrorCode; }

    /// For calls that return a BOOL: throws the thread's last error when `result` is 0.
    static void CheckForErrors(long result);
    /// For calls that return a handle: throws the thread's last error when it is null or
    /// INVALID_HANDLE_VALUE.
    static void CheckHandle(void* handle);

private:
    std::int32_t mErrorCode;
};
