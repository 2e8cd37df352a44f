#pragma once

#include "framework/core/GBuffer.h"

/// A buffer of exactly `length` undefined bytes, for a conversion to fill.
inline GBuffer MakeEncodingOutput(long length) {
    GBuffer out;
    out.Allocate(length);
    out.SetLength(length);
    return out;
}

/// A buffer that borrows a literal.
inline GBuffer BorrowLiteral(const char* text) {
    GBuffer buffer;
    buffer.SetFromStatic(text);
    return buffer;
}
