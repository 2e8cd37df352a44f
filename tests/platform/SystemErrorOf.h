#pragma once

#include "platform/win32/core/PWin32SystemException.h"
#include "tests/Testing.h"

/// The system's code of the failure that `call` throws; 0 when it throws none.
template <class Call>
long SystemErrorOf(const Call& call) {
    try {
        call();
    } catch (const PWin32SystemException& failure) {
        EXPECT_EQ(failure.GetExceptionID(), GExceptionID::cWin32SystemError);
        return failure.GetSystemErrorCode();
    }
    return 0;
}
