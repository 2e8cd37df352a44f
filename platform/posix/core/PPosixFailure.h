#pragma once

#include <cstring>
#include <string>

#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/core/paths/GPathName.h"

/// Throws GCustomException GExceptionID::cUNIXSystemError with the system's text for `error`, an errno,
/// and the path as location.
[[noreturn]] inline void ThrowPosixFailure(int error, const GPathName& path) {
    const GExceptionLocation location(path);
    throw GCustomException(GExceptionID::cUNIXSystemError, GString(std::strerror(error)));
}

/// The path as the system takes it.
inline std::string AsPosixPath(const GPathName& path) {
    const GString native = path.GetPortablePath().IsEmpty() ? GString(".") : path.GetPortablePath();
    return std::string(native.GetBuffer(GUTF8Encoding::GetInstance()).GetPtr());
}
