#pragma once

#include "framework/core/errors/GException.h"

/// The number of the exception that `call` throws; 0 when it throws none.
template <class Call>
long ThrownBy(Call call) {
    try {
        call();
    } catch (const GException& exception) {
        return exception.GetExceptionID();
    }
    return 0;
}
