#pragma once

#include <cstddef>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/memory/GAllocator.h"

/// A buffer of exactly `length` undefined bytes, for a conversion to fill. Throws as
/// GAllocator::ThrowOutOfMemory() when that is more than a buffer can hold: a conversion may double or
/// treble a length that is near the limit.
inline GBuffer MakeEncodingOutput(std::size_t length) {
    if (length > static_cast<std::size_t>(GBuffer::cMaxLength)) GAllocator::ThrowOutOfMemory();
    GBuffer out;
    out.Allocate(static_cast<long>(length));
    out.SetLength(static_cast<long>(length));
    return out;
}

/// A buffer that borrows a literal.
inline GBuffer BorrowLiteral(const char* text) {
    GBuffer buffer;
    buffer.SetFromStatic(text);
    return buffer;
}
