#pragma once

#include "framework/core/encodings/GSimpleEncoding.h"

/// GStandardEncoding: the Standard column of the Latin character set (ISO 32000-1, Annex D).
class QUILLON_EXPORT GStandardEncoding : public GSimpleEncoding {
public:
    GStandardEncoding();

    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GStandardEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GStandardEncoding* instance);

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;
};
