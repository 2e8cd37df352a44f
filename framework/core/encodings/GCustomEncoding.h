#pragma once

#include "framework/core/encodings/GEncoding.h"

/// GCustomEncoding: an encoding that is reached through UTF-16.
///
/// A conversion into it takes the source's bytes to UTF-16 and that to its own bytes. The result is
/// the worse of the two; what the source could convert before invalid input is converted.
class QUILLON_EXPORT GCustomEncoding : public GEncoding {
public:
    using GEncoding::ConvertTo;
    long ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const override;
    /// Converts UTF-16 into this encoding.
    virtual long ConvertFromUnicode(const GBuffer& utf16, GBuffer& out) const = 0;
};
