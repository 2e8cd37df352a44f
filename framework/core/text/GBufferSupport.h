#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GByteHash.h"
#include "framework/core/bytes/GWhiteSpace.h"

class GBuffer;
class GEncoding;
template <class T>
class GTable;

/// GBufferSupport: what is done to buffers from outside: line ends, escapes, lists, number texts.
///
/// "ASCII" forms work on bytes, "Uni" forms on UTF-16 units in machine order; an odd last byte of
/// UTF-16 text is left as it is. Every operation leaves its buffer as it was when it throws for want
/// of memory. A source may be the target. Any thread may call, except that SetLineEnding() belongs to
/// the start of the process.
class QUILLON_EXPORT GBufferSupport {
public:
    // --- Line ends -----------------------------------------------------------------------------

    /// What the platform ends its lines with: a CR, an LF or both, in this order. CR LF until set.
    static void SetLineEnding(bool cr, bool lf) noexcept;
    static bool GetLineEndingNeedsCR() noexcept;  ///< whether a line ends with a CR first
    static bool GetLineEndingNeedsLF() noexcept;  ///< whether a line ends with an LF
    /// Every CR, LF and CR LF becomes the platform's line ending; LF CR counts as two.
    static void ASCIIPlatformLineEndings(GBuffer& text);
    static void UniPlatformLineEndings(GBuffer& text);  ///< the same over UTF-16

    // --- Escapes -------------------------------------------------------------------------------

    /// Escapes for storage: tab as `\t`; LF, CR, CR LF and LF CR as `\n`; quotation mark and backslash
    /// after a backslash.
    static void ASCIIReplaceSpecialChars(GBuffer& text);
    static void UniReplaceSpecialChars(GBuffer& text);  ///< the same over UTF-16
    /// The reverse. `\n` becomes the platform's line ending, `\t` a tab; behind a backslash a quote of either
    /// kind and a backslash stand for themselves; before anything else and at the end the introducer stays.
    static void ASCIIReplaceEscapeCodes(GBuffer& text);
    static void UniReplaceEscapeCodes(GBuffer& text);  ///< the same over UTF-16
    /// The same where only the backslash introduces: the form that the two escaping calls above write.
    static void UniReplaceBackslashEscapes(GBuffer& text);
    /// Whether this introduces an escape: the backslash, and what some code pages show in its place.
    static bool IsBackSlashCharacter(unsigned short character) noexcept {
        return character == '\\' || character == 0x80 || character == 0xA5;
    }
    /// Every line end, LF CR counting as one, becomes one unit: GEncoding's default character,
    /// sign-extended.
    static void UniReplaceSpecialEndCharsWithDefaultChar(GBuffer& text);

    // --- Lists ---------------------------------------------------------------------------------

    /// Splits at every byte that is one of `separators`, which is no field. Without `keepEmpty` empty
    /// fields are dropped. An empty text has one empty field.
    static void SeparatedBufferToBufferTable(const GBuffer& text, const GBuffer& separators,
                                             GTable<GBuffer>& out, bool keepEmpty);
    /// The elements with the separator between them.
    static void BufferTableToSeparatedBuffer(const GTable<GBuffer>& elements, const GBuffer& separator,
                                             GBuffer& out);
    /// A list that describes itself: '#' and '|' as escape and separator, then the elements, separated,
    /// each '#' and '|' in them escaped. An empty table gives an empty buffer; a table of one empty
    /// element gives "#|", which splits into an empty table.
    static void MergeIntoSeparatedBuffer(const GTable<GBuffer>& elements, GBuffer& out);
    /// The reverse, with the escape and the separator that the first two bytes name. Below three bytes:
    /// an empty table. An escape in the last position is dropped.
    static void SplitSeparatedBuffer(const GBuffer& merged, GTable<GBuffer>& out);

    // --- Bytes and units -----------------------------------------------------------------------

    /// Cuts to 255 bytes, puts the length in front; the zero-terminated pointer, valid until the
    /// buffer changes.
    static const unsigned char* ConvertToPString(GBuffer& text);
    /// Removes zero bytes, or 16-bit zeros, at the end.
    static void StripTrailingZeroes(GBuffer& text, bool wide);
    /// Whether it belongs to GWhiteSpace.
    static bool IsWhiteSpace(unsigned short character) noexcept { return GWhiteSpace::Has(character); }
    ///@{ Removes white space at the start or the end.
    static void StripLeadingWhiteSpace(GBuffer& text);
    static void StripTrailingWhiteSpace(GBuffer& text);
    ///@}
    /// UTF-16: removes the first unit 0x1B, the next one, and all between them.
    static void RemoveUnicodeLanguageTags(GBuffer& text);
    static void SwapUnicodeBytes(GBuffer& text);  ///< swaps the bytes of each unit
    static void SwapBigEndian(GBuffer& text);     ///< big-endian units to machine order or back
    static void SwapLittleEndian(GBuffer& text);  ///< little-endian units to machine order or back
    /// Copies `bitCount` bits between bit addresses counted from the high bit of the first byte, the
    /// order in which scan lines are packed. Other bits of the target stay. The areas may overlap.
    static void CopyBitBlock_LBE_LBE(const unsigned char* source, long sourceBit, unsigned char* target,
                                     long targetBit, long bitCount) noexcept;
    /// The bytes, read in `encoding`, as UTF-16; the conversion's result code. Null: no encoding, which
    /// gives an empty buffer and 1.
    static long GetUnicodeBuffer(const GBuffer& bytes, const GEncoding* encoding, GBuffer& out);

    // --- Numbers -------------------------------------------------------------------------------

    /// "%1.6f" for 6; digits are cut to 0 to 99.
    static void GenerateFormatStringForReals(long digits, GBuffer& out);
    /// The number as fixed text without trailing zeros, as GBuffer::SetWithPrecision().
    static void RealToBuffer(double value, long digits, GBuffer& out);
    /// Roman numerals for 1 to 3999; any other number as decimal digits.
    static GBuffer IntToRomanNumeralLower(long value);
    static GBuffer IntToRomanNumeralUpper(long value);  ///< the same in capitals

    // --- Plain bytes ---------------------------------------------------------------------------

    /// GBuffer::GetHash() of bytes that lie anywhere.
    static std::uint32_t GetHash(const unsigned char* bytes, long length) noexcept {
        return GByteHash::Of(bytes, length);
    }
};
