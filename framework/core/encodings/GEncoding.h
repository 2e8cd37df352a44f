#pragma once

#include "framework/core/GExport.h"
#include "framework/core/memory/GRefCount.h"

class GASCIIEncoding;
class GBuffer;
class GCharCode;
class GCustomEncoding;
class GMacRomanEncoding;
class GPDFDocEncoding;
class GUnicodeEncoding;
class GWinAnsiEncoding;

/// GEncoding: turns bytes in one character encoding into another.
///
/// Every encoding can reach UTF-16 in the machine's byte order (GUnicodeEncoding), the form in which
/// strings look at characters. The encodings of the framework are process-wide singletons that
/// strings share by reference count; a string that outlives Finalize keeps its encoding alive.
/// What an encoding cannot represent becomes the default character, '@' unless it was changed.
///
/// Conversions are const and may run on any thread. The output may be the same buffer as the input.
/// A missing source or target (null) gives an empty output and the result cConverted; a target of
/// Unicode only chooses the overload and is not looked at. A call that throws, for want of memory,
/// leaves its output as it was.
class QUILLON_EXPORT GEncoding : public GThreadSafeRefCount {
public:
    GEncoding(const GEncoding&) = delete;
    GEncoding& operator=(const GEncoding&) = delete;
    /// What a conversion reports.
    static constexpr long cConverted = 1;  ///< every character was converted
    static constexpr long cReplaced = 2;   ///< a default character stands for at least one other
    static constexpr long cInvalid = 4;    ///< invalid input; the output ends where it begins

    ~GEncoding() override;

    /// Converts `bytes`, which are in `source`, into this encoding. Returns cConverted, cReplaced or
    /// cInvalid.
    virtual long ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const = 0;
    ///@{ Converts `bytes` from this encoding into the target's.
    virtual long ConvertTo(const GBuffer& bytes, const GPDFDocEncoding* target, GBuffer& out) const;
    virtual long ConvertTo(const GBuffer& bytes, const GCustomEncoding* target, GBuffer& out) const;
    virtual long ConvertTo(const GBuffer& bytes, const GWinAnsiEncoding* target, GBuffer& out) const;
    virtual long ConvertTo(const GBuffer& bytes, const GASCIIEncoding* target, GBuffer& out) const;
    virtual long ConvertTo(const GBuffer& bytes, const GMacRomanEncoding* target, GBuffer& out) const;
    virtual long ConvertTo(const GBuffer& bytes, const GUnicodeEncoding* target, GBuffer& out) const = 0;
    ///@}
    /// The name of the glyph that `code`, a character code of this encoding, shows; false if none.
    virtual bool GetGlyphName(const GCharCode& code, GBuffer& name) const = 0;
    /// The code that shows the named glyph in this encoding; false, `code` untouched, if none.
    virtual bool GetCharCode(const GBuffer& glyphName, GCharCode& code) const = 0;
    /// The encoding's registered name, such as "WinAnsiEncoding".
    virtual const GBuffer& GetASCIIDescription() const = 0;
    /// True when `name` is exactly the registered name.
    virtual bool IsOfType(const GBuffer& name) const;
    /// Brings bytes of this encoding into its canonical form. Most encodings have only one.
    virtual void Normalize(GBuffer& bytes) const;
    /// Length in bytes of a zero-terminated text in this encoding; 0 for a null pointer.
    virtual long GetLength(const unsigned char* text) const;

    /// What stands for an unmappable character. A plain global: set it before threads convert.
    static char GetDefaultCharacter() { return sDefaultCharacter; }
    /// One of ASCII, which every encoding has; that is not checked.
    static void SetDefaultCharacter(char character) { sDefaultCharacter = character; }
    /// The default character as a UTF-16 unit: sign-extended, 0xFFxx for one above 0x7F.
    static unsigned short GetDefaultUnit();

    /// Releases all singletons of the framework and the glyph dictionaries, at its shut-down, when
    /// no other thread converts any more. A later GetInstance makes a new singleton.
    static void FinalizeAll();

protected:
    GEncoding() = default;

private:
    static char sDefaultCharacter;
};
