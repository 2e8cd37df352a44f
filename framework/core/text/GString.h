#pragma once

/// @file
/// Text and its operators.

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GEncoding.h"
#include "framework/core/memory/GSharedObject.h"

template <class T>
class GTable;

/// GString: text as bytes in a known encoding, looked at as UTF-16.
///
/// A string keeps the bytes that it was given and turns them into UTF-16, in place and once, when an
/// operation needs characters; a string that is only stored, passed on or compared with one of the
/// same encoding is never converted. A character is a 16-bit unit: a surrogate pair counts as two.
/// Positions and lengths are signed counts of units; -1 means "not found".
///
/// A default-constructed string has neither bytes nor an encoding. An encoding belongs to all strings
/// that use it: a string holds a counted reference. Copying copies the bytes by GBuffer's rules:
/// borrowed bytes are shared.
///
/// No operation throws for bad input, only for want of memory (a length that no buffer can have is
/// that, too), and the text is then as it was. Positions out of range are harmless: reading there
/// gives 0, writing does nothing, and ranges are cut to the text.
///
/// Const operations may rewrite the byte form. One string must not be used by two threads at once,
/// not even for reading; different strings may, also when they share bytes or an encoding.
///
/// Integers are 32-bit where a `long` is given, whatever the width of `long`: a larger value is
/// reduced modulo 2^32 as by the product's own `long`.
class QUILLON_EXPORT GString {
public:
    /// The one string that threads may share: it is never converted.
    static const GString cEmptyString;

    GString() noexcept = default;
    GString(const GString& other) = default;
    GString(GString&& other) noexcept = default;
    GString& operator=(const GString& other) = default;
    GString& operator=(GString&& other) noexcept = default;
    ~GString() = default;

    /// ASCII text up to the terminating zero, copied; null is an empty text.
    GString(const char* text);
    /// Text up to the zero that ends it in `encoding` (one byte or one unit), then Normalize.
    GString(const char* text, const GEncoding* encoding, bool keepEncoding = true);
    /// `length` bytes in `encoding`, copied, then Normalize.
    GString(const unsigned char* bytes, long length, const GEncoding* encoding, bool keepEncoding = true);
    /// A buffer's bytes in `encoding`, then Normalize. Borrowed bytes stay borrowed.
    GString(const GBuffer& bytes, const GEncoding* encoding, bool keepEncoding = true);
    /// The same without a copy: takes the buffer over.
    GString(GBuffer&& bytes, const GEncoding* encoding, bool keepEncoding = true);
    ///@{ Decimal ASCII text. The unsigned 64-bit form prints as signed: 2^63 and above are negative.
    explicit GString(int value);
    explicit GString(unsigned int value);
    explicit GString(long value);
    explicit GString(unsigned long value);
    explicit GString(long long value);
    explicit GString(unsigned long long value);
    ///@}
    /// "%f" without trailing zeros and point: 2.5 gives "2.5", 3.0 gives "3". Infinities print as
    /// the largest finite value, as in every form below.
    explicit GString(double value);
    /// By the caller's printf format for one double; trailing zeros and point are cut.
    GString(double value, const GBuffer& format);
    /// Fixed notation with up to `precision` fractional digits (16 for more, or for a negative one).
    GString(double value, long precision);

    /// `length` UTF-16 units, copied and composed; null or a negative length is an empty text.
    static GString FromUTF16(const unsigned short* units, long length);
    /// A zero-terminated UTF-8 text, copied; it stays UTF-8 until characters are needed.
    static GString FromUTF8(const char* text);

    ///@{ Takes the text as the constructor of the same parameters does.
    void Set(const GString& other);
    void Set(const char* text);
    void Set(const char* text, const GEncoding* encoding, bool keepEncoding = true);
    void Set(const unsigned char* bytes, long length, const GEncoding* encoding, bool keepEncoding = true);
    void Set(const GBuffer& bytes, const GEncoding* encoding, bool keepEncoding = true);
    void Set(int value);
    void Set(unsigned int value);
    void Set(long value);
    void Set(unsigned long value);
    void Set(long long value);
    void Set(unsigned long long value);
    void Set(double value);
    void Set(double value, const GBuffer& format);
    void Set(double value, long precision);
    ///@}
    /// Decimal text with at least `minDigits` digits (1022 for more), zeros in front.
    void SetInt(long value, long minDigits);
    /// Fixed notation with up to 15 fractional digits.
    void SetWithHighPrecision(double value);
    void Swap(GString& other) noexcept;  ///< exchanges text and encoding; nothing is copied

    /// True when there are no bytes, whatever the encoding.
    bool IsEmpty() const { return mBuffer.IsEmpty(); }
    /// Length in units.
    long GetLength() const;
    /// The unit at `position`, 0 out of range.
    unsigned short operator[](long position) const;
    void SetChar(long position, unsigned short unit);  ///< out of range it does nothing
    /// Cuts or grows to `length` units; new units are 0.
    void SetLength(long length);
    /// A position beyond the end appends, a negative one inserts at the start.
    void Insert(long position, const GString& text);
    /// The same with one unit.
    void Insert(long position, unsigned short unit);
    /// Removes up to `count` units; a negative start or count removes nothing.
    void Remove(long start, long count);
    /// Replaces every occurrence from `start` on; what was inserted is not searched again. True when
    /// something was replaced. An empty `find` replaces nothing.
    bool Replace(long start, const GString& find, const GString& with);
    /// The same with single units, in place.
    bool Replace(long start, unsigned short find, unsigned short with);
    ///@{ Appends, both as UTF-16.
    GString& operator+=(const GString& text);
    GString& operator+=(unsigned short unit);
    ///@}
    /// The part of up to `count` units from `start`; a negative count gives the rest.
    GString GetSubstring(long start, long count) const;
    /// The same into `out`, which may be this string.
    void GetSubstring(long start, long count, GString& out) const;
    /// No bytes are left; the encoding stays.
    void Clear();

    /// First position of the whole text at or after `start`; an empty text is found at 0.
    long Find(const GString& text, long start = 0) const;
    /// First position of the unit at or after `start`, or -1.
    long FindFirst(unsigned short unit, long start = 0) const;
    /// First unit that is in the set.
    long FindFirst(const unsigned short* set, long setLength, long start = 0) const;
    ///@{ First unit that is another, or that is not in the set.
    long FindFirstNot(unsigned short unit, long start = 0) const;
    long FindFirstNot(const unsigned short* set, long setLength, long start = 0) const;
    ///@}
    /// The last occurrence at or before `upTo`.
    long FindLast(unsigned short unit, long upTo) const;

    /// The bytes as they stand, in GetEncoding(); valid until the string changes or is converted.
    const GBuffer& GetEncodedBuffer() const { return mBuffer; }
    /// The text as bytes in `target`.
    GBuffer GetBuffer(const GEncoding* target) const;
    /// The same into `out`; returns the conversion's result (GEncoding::cConverted and so on).
    /// A string without encoding gives no bytes.
    long GetBuffer(GBuffer& out, const GEncoding* target) const;
    /// The zero-terminated units, converted if need be; valid until the string changes.
    const unsigned short* GetUTF16Ptr() const;
    /// Null when the string has none.
    const GEncoding* GetEncoding() const { return mEncoding.Get(); }
    /// The encoding's registered name, or "NULL".
    const GBuffer& GetEncodingName() const;
    /// True when `bytes` convert to UTF-16 without loss. Tested for ASCII, MacRoman, PDFDoc, UTF-8,
    /// Unicode and WinAnsi; any other encoding takes all bytes.
    static bool AreCompatible(const GBuffer& bytes, const GEncoding* encoding);

    ///@{ The text in ASCII, read as GBuffer reads numbers; no number gives 0.
    std::int32_t GetInt32() const;
    std::uint32_t GetUInt32() const;
    long long GetInt64() const;
    double GetReal() const;
    ///@}

    /// The order of the bytes of little-endian UTF-16, as operator<: U+0100 is less than U+00FF.
    static bool IsLessThan(const GString& a, const GString& b);
    /// The same after mapping every unit by the C library's towlower.
    static bool IsLessThanIgnoreCase(const GString& a, const GString& b);
    /// GBuffer's hash of the UTF-16 bytes: independent of the encoding.
    std::uint32_t GetHash() const;

    ///@{ Maps every unit by PText::ToLower or ToUpper: the length stays.
    void ToLower();
    void ToUpper();
    ///@}

    ///@{ Replaces "%1" to "%9" by the parameter of that number and each "%s" by the next parameter; markers
    /// without a parameter stay. Nothing is expanded inside inserted text. Returns itself.
    GString& SubstituteParams(const GString& first);
    GString& SubstituteParams(const GString& first, const GString& second);
    GString& SubstituteParams(const GString& first, const GString& second, const GString& third);
    ///@}
    /// A null parameter counts as missing.
    GString& SubstituteParams(const GTable<const GString*>& parameters);
    /// `count` parameters of type `const GString*` follow.
    GString& SubstituteParams(long count, ...);
    /// How many "%1" to "%9" and "%s" the text holds.
    long GetNumSubstitutes() const;

    /// True: the encoding brings the bytes into its canonical form; false: they become UTF-16.
    void Normalize(bool keepEncoding);
    /// Turns the bytes into composed UTF-16. An odd last byte of UTF-16 is dropped.
    void EnsureUnicode() const;

private:
    void SetASCII();
    void SetOwn(GBuffer& bytes, const GEncoding* encoding, bool keepEncoding);
    const unsigned char* GetUnits() const;
    GString& Substitute(const GString* const* parameters, long count);
    template <class Mapper>
    void MapUnits(Mapper map);

    mutable GBuffer mBuffer;
    mutable GSharedObject<const GEncoding> mEncoding;
};

/// Both texts as UTF-16, the right one behind the left one.
QUILLON_EXPORT GString operator+(const GString& a, const GString& b);
///@{ Strings of one encoding compare their bytes, others their UTF-16.
QUILLON_EXPORT bool operator==(const GString& a, const GString& b);
QUILLON_EXPORT bool operator!=(const GString& a, const GString& b);
///@}
///@{ The order of GString::IsLessThan().
QUILLON_EXPORT bool operator<(const GString& a, const GString& b);
QUILLON_EXPORT bool operator<=(const GString& a, const GString& b);
QUILLON_EXPORT bool operator>(const GString& a, const GString& b);
QUILLON_EXPORT bool operator>=(const GString& a, const GString& b);
///@}
