#pragma once

#include "framework/core/encodings/GPlatformEncoding.h"

/// GShiftJISEncoding: Japanese Shift-JIS as the system converts it (code page 932).
class QUILLON_EXPORT GShiftJISEncoding : public GPlatformEncoding {
public:
    GShiftJISEncoding() noexcept;

    /// The shared instance, made on first use by the GPlatformEncodingFactory; valid until
    /// SetInstance or the framework's end.
    static GShiftJISEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GShiftJISEncoding* instance);

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;
};
