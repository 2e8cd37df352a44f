#pragma once

#include "framework/core/encodings/GSimpleEncoding.h"

/// GPDFDocEncoding: the PDFDoc column of the Latin character set (ISO 32000-1, Annex D).
///
/// The codes 0x18 to 0x1F are spacing accents; the control codes below them stand for themselves.
class QUILLON_EXPORT GPDFDocEncoding : public GSimpleEncoding {
public:
    GPDFDocEncoding();

    /// The shared instance, made on first use; valid until SetInstance or the framework's end.
    static GPDFDocEncoding* GetInstance();
    /// Takes ownership of a replacement; null: the next GetInstance makes a new one.
    static void SetInstance(GPDFDocEncoding* instance);

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;
};
