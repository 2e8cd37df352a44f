#include "framework/streams/rows/GBitUtils.h"

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

std::int32_t GBitUtils::RowLength(long columns, long colours, long bits) {
    constexpr long long cMaxBits = 8LL * GBuffer::cMaxLength;
    if (columns < 1 || colours < 1 || bits < 1 || bits > 16)
        throw GSimpleException(GExceptionID::cInvalidParameter);
    if (colours > cMaxBits / bits || columns > cMaxBits / (static_cast<long long>(colours) * bits))
        throw GSimpleException(GExceptionID::cInvalidParameter);
    return static_cast<std::int32_t>((static_cast<long long>(columns) * colours * bits + 7) / 8);
}
