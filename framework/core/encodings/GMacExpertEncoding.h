#pragma once

#include "framework/core/encodings/GSimpleEncoding.h"

/// GMacExpertEncoding: the expert character set (ISO 32000-1, Annex D): old-style figures, small
/// capitals, fractions and ligatures, mostly in Unicode's private-use area.
class QUILLON_EXPORT GMacExpertEncoding : public GSimpleEncoding {
public:
    GMacExpertEncoding();

    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GMacExpertEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GMacExpertEncoding* instance);

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "MacExpertEncoding"
};
