#include "framework/streams/encodings/GLZWCodes.h"

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

std::int32_t GLZWCodes::CheckEarlyChange(long earlyChange) {
    if (earlyChange != 0 && earlyChange != 1) throw GSimpleException(GExceptionID::cInvalidParameter);
    return static_cast<std::int32_t>(earlyChange);
}
