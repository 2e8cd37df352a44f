#pragma once

#include "framework/core/encodings/GSimpleEncoding.h"

/// @file
/// The encodings that are columns of the Latin character set (ISO 32000-1, Annex D). GetInstance gives the
/// shared instance, made on first use, which is valid until SetInstance or the framework's end. SetInstance
/// takes ownership of a replacement; null: the next GetInstance makes a new one.

/// GStandardEncoding: the Standard column.
class QUILLON_EXPORT GStandardEncoding : public GSimpleEncoding {
public:
    GStandardEncoding();

    static GStandardEncoding* GetInstance();               ///< the shared one, made on first use
    static void SetInstance(GStandardEncoding* instance);  ///< takes ownership; null: a new one is made

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "StandardEncoding"
};

/// GMacRomanEncoding: the MacRoman column.
///
/// Code 0xCA is the no-break space U+00A0, in both directions. The mathematical glyphs that the
/// system encoding of the same name has beyond this column have no code here.
class QUILLON_EXPORT GMacRomanEncoding : public GSimpleEncoding {
public:
    GMacRomanEncoding();

    static GMacRomanEncoding* GetInstance();               ///< the shared one, made on first use
    static void SetInstance(GMacRomanEncoding* instance);  ///< takes ownership; null: a new one is made

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "MacRomanEncoding"
};

/// GWinAnsiEncoding: the WinAnsi column.
///
/// Code 0xA0 is the no-break space U+00A0 and code 0xAD the soft hyphen U+00AD, in both directions.
/// The codes 0x7F, 0x81, 0x8D, 0x8F, 0x90 and 0x9D have no character.
class QUILLON_EXPORT GWinAnsiEncoding : public GSimpleEncoding {
public:
    GWinAnsiEncoding();

    static GWinAnsiEncoding* GetInstance();               ///< the shared one, made on first use
    static void SetInstance(GWinAnsiEncoding* instance);  ///< takes ownership; null: a new one is made

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "WinAnsiEncoding"
};

/// GPDFDocEncoding: the PDFDoc column.
///
/// The codes 0x18 to 0x1F are spacing accents; the control codes below them stand for themselves.
class QUILLON_EXPORT GPDFDocEncoding : public GSimpleEncoding {
public:
    GPDFDocEncoding();

    static GPDFDocEncoding* GetInstance();               ///< the shared one, made on first use
    static void SetInstance(GPDFDocEncoding* instance);  ///< takes ownership; null: a new one is made

    const GBuffer& GetASCIIDescription() const override;

    static const GBuffer sDescription;  ///< "PDFDocEncoding"
};
