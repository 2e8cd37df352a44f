#pragma once

/// @file
/// Byte strings and literals.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "framework/core/GExport.h"

class GCharCode;

/// GBuffer: a byte string that owns its block or borrows memory which outlives it.
///
/// Lengths and positions are signed byte counts, or counts of 16-bit units where an operation takes
/// or looks for `unsigned short`; -1 means "not found". An owned block keeps two spare bytes behind
/// the data, so GetPtr() can hand it out zero-terminated, as 8-bit or UTF-16 text, without a copy.
///
/// Copying an owned buffer duplicates its bytes; copying a borrowed one shares the pointer, which
/// makes copies of constants free. Borrowed memory is never written and never freed: the first
/// operation that must write moves the bytes into an owned block.
///
/// Bad positions and negative lengths are not reported: a start before the bytes counts as 0, one
/// behind them finds nothing, a count below 1 does nothing. What cannot be had from the allocator, or
/// is more than a length of 31 bits can say, throws as GAllocator::ThrowOutOfMemory() does, and the
/// buffer is then as it was. Source bytes may lie inside the buffer they are put into.
///
/// One thread at a time (GetPtr() may write spare bytes), but copies of borrowed memory may be used
/// on different threads. Objects may be relocated bitwise.
class QUILLON_EXPORT GBuffer {
public:
    /// The longest buffer that can be: the size of a block with room for one more 16-bit unit and the
    /// two spare bytes has 31 bits.
    static constexpr std::int32_t cMaxLength = 0x7FFFFFFF - 4;

    /// A shared empty constant.
    static const GBuffer cEmptyBuffer;

    /// Bytes with a zero behind them that are there for as long as the program.
    struct Literal {
        const unsigned char* bytes;  ///< one more is readable: the zero
        std::int32_t length;         ///< bytes, without the zero
    };

    constexpr GBuffer() noexcept = default;
    /// Borrows a literal when the program is compiled: a constant made like this is there before the first
    /// static object. See cLiteral.
    explicit constexpr GBuffer(Literal literal) noexcept
        : mData(const_cast<unsigned char*>(literal.bytes)),
          mLength(literal.length),
          mSizeWord(static_cast<std::uint32_t>(literal.length) + 1) {}
    GBuffer(const GBuffer& other);  ///< owned: duplicates the bytes; borrowed: shares the pointer
    GBuffer(GBuffer&& other) noexcept { Swap(other); }  ///< leaves `other` empty
    GBuffer(const char* text);                          ///< copies a zero-terminated text; null: empty
    GBuffer(const unsigned char* bytes, long length);   ///< copies the bytes
    ///@{ The number as decimal text, with '-' before a negative one.
    explicit GBuffer(int value);
    explicit GBuffer(long value);
    explicit GBuffer(unsigned int value);
    explicit GBuffer(unsigned long value);
    explicit GBuffer(long long value);
    ///@}
    explicit GBuffer(unsigned long long value);    ///< printed as signed: 2^63 and above come out negative
    explicit GBuffer(double value);                ///< as Set(double)
    GBuffer(double value, const GBuffer& format);  ///< as Set(double, const GBuffer&)
    ~GBuffer();

    GBuffer& operator=(const GBuffer& other);      ///< as the copying constructor
    GBuffer& operator=(GBuffer&& other) noexcept;  ///< leaves `other` empty

    // --- Setting -------------------------------------------------------------------------------

    ///@{ Takes the value as the constructor of the same parameters does.
    void Set(const GBuffer& other) { *this = other; }
    void Set(const char* text);
    void Set(const unsigned char* bytes, long length);
    void Set(int value);
    void Set(long value);
    void Set(unsigned int value);
    void Set(unsigned long value);
    void Set(long long value);
    ///@}
    void Set(unsigned long long value);  ///< printed as signed: 2^63 and above come out negative
    /// Decimal, zero-padded to at least `minDigits` digits, the sign not counted.
    void Set(int value, long minDigits) { Set(static_cast<long>(value), minDigits); }
    /// The same for a long.
    void Set(long value, long minDigits);
    /// Fixed notation with six fractional digits, then stripped: trailing zeros behind a point go,
    /// and a point left at the end goes, too.
    void Set(double value);
    /// By a printf format that holds exactly one conversion of a real (f F e E g G a A, with flags, width
    /// and precision in digits) and any text around it (`%%` is a percent sign). Any other format counts as
    /// "%f". The result is cut to 1023 bytes, then stripped as above: that looks at the end of the whole
    /// text and so suits fixed notation; it takes the zeros off an exponent's end, too. The decimal point
    /// is always '.', whatever the C locale.
    void Set(double value, const GBuffer& format);
    /// Fixed notation, never an exponent, with at most `digits` fractional digits (16 when above 16 or
    /// negative), stripped as above; "nan" for what is no number. Infinities count as the largest
    /// finite value in all forms.
    void SetWithPrecision(double value, long digits);
    void SetWithHighPrecision(double value);  ///< 15 digits

    /// Takes over `length` bytes, copying min(length + 2, copyLength) from `source`: a copyLength of
    /// length + 1 brings the source's terminator along; bytes past copyLength stay undefined. A null
    /// source or a length below 1 makes the buffer empty: it keeps a block of its own and gives up a
    /// borrowed one.
    void CopyByteArray(const unsigned char* source, long length, long copyLength);
    /// Copies `length` bytes.
    void CopyByteArray(const unsigned char* source, long length) { CopyByteArray(source, length, length); }

    /// Borrows a zero-terminated text; it must outlive this buffer and every copy made of it.
    void SetFromStatic(const char* text);
    /// Borrows `length` bytes of `arraySize` readable ones, by default one more: the terminator.
    void SetFromStatic(const unsigned char* bytes, long length, long arraySize);
    /// Borrows `length` bytes with a terminator behind them.
    void SetFromStatic(const unsigned char* bytes, long length) {
        SetFromStatic(bytes, length, length < cMaxLength ? length + 1 : length);
    }
    /// Borrows a caller's block of `arraySize` bytes, of which `length` are in use; an owned block is
    /// freed first. The block stays the caller's and is not written.
    void TakeByteArray(unsigned char* bytes, long length, long arraySize);

    /// Makes room for `capacity` bytes and the two spare ones, exactly; keeps the bytes. Does nothing
    /// when there is room, or for a negative capacity.
    void Allocate(long capacity);
    /// Growing leaves the new bytes undefined; a negative length is ignored.
    void SetLength(long length) {
        if (mSizeWord >= static_cast<std::uint64_t>(length) + 2 + cAllocated) {
            mLength = static_cast<std::int32_t>(length);  // within an own block
        } else {
            SetLengthSlowly(length);
        }
    }
    void Clear() noexcept { mLength = 0; }  ///< keeps the block
    void Swap(GBuffer& other) noexcept;     ///< exchanges the blocks; nothing is copied

    // --- Reading -------------------------------------------------------------------------------

    long GetLength() const noexcept { return mLength; }     ///< bytes in use
    bool IsEmpty() const noexcept { return mLength == 0; }  ///< whether it has no byte
    /// The bytes, zero-terminated (an owned block: by two zeros); never null. Valid until the buffer
    /// changes. Borrowed bytes without a zero behind them are moved into an owned block first.
    const char* GetPtr() const;
    operator const char*() const { return GetPtr(); }  ///< as GetPtr()
    /// The bytes for writing in place, zero-terminated; null when there are none. Valid until the
    /// buffer changes. Borrowed bytes are moved into an owned block of the declared size first.
    unsigned char* GetWritePtr() {
        if (mLength == 0) return nullptr;
        if (!GetAllocated()) MoveToBlock(GetArraySize());
        unsigned char* const bytes = mData;
        std::memset(bytes + mLength, 0, 2);
        return bytes;
    }
    /// The bytes as they lie, with nothing sure behind them; null for a buffer that never held any.
    const unsigned char* GetRawData() const noexcept { return mData; }
    /// The 16-bit unit at `index`, in machine order. Not checked against the length; 0 outside the block.
    unsigned short GetWordAt(long index) const noexcept;
    /// Not checked against the length; nothing is written outside the block.
    void SetWordAt(long index, unsigned short word);
    /// `count` bytes from `start` as an owned buffer; a negative or too large count means the rest.
    GBuffer GetSubBuffer(long start, long count = -1) const;
    /// The same into `out`, which may be this buffer.
    void GetSubBuffer(long start, long count, GBuffer& out) const;

    // The fields as they are, for code that hands blocks around. The setters change nothing else.
    /// Whether the destructor frees the block.
    bool GetAllocated() const noexcept { return mSizeWord >= cAllocated; }
    /// Says who frees the block, and takes or gives up nothing.
    void SetAllocated(bool allocated) noexcept {
        mSizeWord = SizeOf(mSizeWord) | (allocated ? cAllocated : 0);
    }
    /// Bytes of the block, the spare ones included.
    long GetArraySize() const noexcept { return static_cast<long>(SizeOf(mSizeWord)); }
    /// Says how large the block is, and allocates nothing.
    void SetArraySize(long arraySize) noexcept {
        mSizeWord = SizeOf(static_cast<std::uint32_t>(arraySize)) | (mSizeWord & cAllocated);
    }
    /// The block's size less its two spare bytes; 0 without a block.
    long GetAllocatedLength() const noexcept { return GetArraySize() < 2 ? 0 : GetArraySize() - 2; }

    // --- Editing -------------------------------------------------------------------------------

    ///@{ Appends the bytes; they may be this buffer's own.
    GBuffer& operator+=(const GBuffer& other);
    GBuffer& operator+=(const GCharCode& code);
    GBuffer& operator+=(char byte) { return *this += static_cast<unsigned char>(byte); }
    GBuffer& operator+=(unsigned char byte) {
        if (!HasOwnRoomFor(1U)) GrowForElement(1);
        // The length is stored last: a byte could be stored over anything, for all the compiler knows,
        // so that it would load again what was stored before it.
        const std::uint32_t length = static_cast<std::uint32_t>(mLength);
        mData[length] = byte;
        mLength = static_cast<std::int32_t>(length + 1);
        return *this;
    }
    ///@}
    /// Two bytes in machine order.
    GBuffer& operator+=(unsigned short unit) {
        if (!HasOwnRoomFor(2U)) GrowForElement(sizeof unit);
        const std::uint32_t length = static_cast<std::uint32_t>(mLength);
        std::memcpy(mData + length, &unit, sizeof unit);
        mLength = static_cast<std::int32_t>(length + sizeof unit);
        return *this;
    }
    GBuffer& operator+=(const char* text);  ///< up to its zero; null adds nothing
    /// Appends; null or a length below 1 adds nothing.
    void AppendByteArray(const unsigned char* bytes, long length);
    /// Puts `insertCount` bytes in the place of `removeCount` at `start`, both cut to what is there.
    void ReplaceByteArray(long start, long removeCount, const unsigned char* bytes, long insertCount);
    /// As ReplaceByteArray(), with a buffer's bytes.
    void Replace(long start, long count, const GBuffer& with);
    void Remove(long start, long count);  ///< takes `count` bytes out, cut to what is there
    /// Replaces every occurrence from `start` on, going on behind each inserted text; an empty `find`
    /// occurs nowhere. True when anything was replaced.
    bool FindAndReplace(long start, const GBuffer& find, const GBuffer& with);
    /// The same for single bytes, in place.
    bool FindAndReplace(long start, unsigned char find, unsigned char with);

    // --- Searching -----------------------------------------------------------------------------

    ///@{ Position of the first element at or after `start`, or -1. A `char` is looked for as a byte; an
    /// `unsigned short` as a 16-bit unit, and `start` and the result then count units.
    long FindFirstOccurrence(unsigned char byte, long start = 0) const noexcept {
        start = start < 0 ? 0 : start;
        if (start >= mLength) return -1;
        const void* const found = std::memchr(mData + start, byte, static_cast<std::size_t>(mLength - start));
        return found == nullptr ? -1 : static_cast<long>(static_cast<const unsigned char*>(found) - mData);
    }
    long FindFirstOccurrence(char byte, long start = 0) const noexcept {
        return FindFirstOccurrence(static_cast<unsigned char>(byte), start);
    }
    long FindFirstOccurrence(unsigned short unit, long start = 0) const noexcept;
    ///@}
    /// The first element that is in the set.
    long FindFirstOccurrence(const unsigned char* set, long setLength, long start) const noexcept;
    /// The same over 16-bit units.
    long FindFirstOccurrence(const unsigned short* set, long setLength, long start) const noexcept;
    /// The first element that is not in the set.
    long FindFirstNonOccurrence(const unsigned char* set, long setLength, long start) const noexcept;
    /// The same over 16-bit units.
    long FindFirstNonOccurrence(const unsigned short* set, long setLength, long start) const noexcept;
    /// The last occurrence at or before `upTo`.
    long FindLastOccurrence(unsigned char byte, long upTo) const noexcept;
    /// The same for a `char`, looked for as a byte.
    long FindLastOccurrence(char byte, long upTo) const noexcept {
        return FindLastOccurrence(static_cast<unsigned char>(byte), upTo);
    }
    /// The same over 16-bit units.
    long FindLastOccurrence(unsigned short unit, long upTo) const noexcept;
    /// The first place at or after `start` where the whole pattern stands; an empty pattern stands at
    /// 0. `wide`: compares and counts in 16-bit units.
    long FindSubBuffer(const GBuffer& pattern, long start = 0, bool wide = false) const noexcept;

    // --- Numbers out ---------------------------------------------------------------------------

    /// As strtol in base 10: white space, sign, digits; outside 32 bits the nearest 32-bit limit.
    long GetInt32() const noexcept;
    /// GetInt64() cut to 32 bits.
    unsigned long GetUInt32() const noexcept;
    /// White space (8, 9, 10, 11, 13, 32), sign, digits up to the first other byte; wraps around.
    long long GetInt64() const noexcept;
    /// White space as above, then [+-] digits [. digits] [(e|E) [+-] digits], with a digit before or
    /// behind the point; what follows is not looked at. No number: 0.0. Beyond the range of a double:
    /// an infinity, or a zero, of the number's sign.
    double GetReal() const noexcept;

    // --- Comparison ----------------------------------------------------------------------------

    /// Negative, 0 or positive: memcmp over the shorter length; on a tie the shorter is less.
    int Compare(const GBuffer& other) const noexcept;
    /// Same length and same bytes.
    bool operator==(const GBuffer& other) const noexcept {
        if (mLength != other.mLength) return false;
        return mLength == 0 || std::memcmp(mData, other.mData, static_cast<std::size_t>(mLength)) == 0;
    }
    /// Against a zero-terminated text; null counts as empty.
    bool operator==(const char* text) const noexcept;
    ///@{ The order of Compare().
    bool operator<(const GBuffer& other) const noexcept { return Compare(other) < 0; }
    bool operator<=(const GBuffer& other) const noexcept { return Compare(other) <= 0; }
    bool operator>(const GBuffer& other) const noexcept { return Compare(other) > 0; }
    bool operator>=(const GBuffer& other) const noexcept { return Compare(other) >= 0; }
    ///@}
    /// h is the length; for each byte b, h = rotate-left-32(h, 4) xor b.
    std::uint32_t GetHash() const noexcept;

private:
    static constexpr std::uint32_t cAllocated = 0x80000000;

    static constexpr std::uint32_t SizeOf(std::uint32_t sizeWord) noexcept { return sizeWord & ~cAllocated; }
    // For an own block the set top bit stands on both sides; a borrowed one is less in any case. The sum
    // of 32 bits holds one unit more than the longest buffer; what may be larger comes in 64 bits.
    template <class Size>
    bool HasOwnRoomFor(Size more) const noexcept {
        return mSizeWord >= more + static_cast<std::uint32_t>(mLength) + 2 + cAllocated;
    }
    void SetLengthSlowly(long length);
    void GrowForElement(long size);
    bool IsInOwnBlock(const unsigned char* bytes) const noexcept;
    void FreeBlock() const noexcept;
    void TakeBlock(unsigned char* block, std::int32_t size) const noexcept;
    void MoveToBlock(long size) const;
    [[gnu::noinline]] void AppendInLargerBlock(const unsigned char* bytes, long length);
    void Borrow(const unsigned char* bytes, long length, long arraySize);
    void ReplaceInNewBlock(long start, long removeCount, const unsigned char* bytes, long insertCount);

    // A const GetPtr() may move borrowed bytes into a block of its own; the bytes stay the same.
    mutable unsigned char* mData = nullptr;  // null only before the first byte
    std::int32_t mLength = 0;
    // Size of the whole block, spare bytes included; the top bit: the destructor frees it.
    mutable std::uint32_t mSizeWord = 0;
};

/// The bytes of the left one and behind them those of the right one.
QUILLON_EXPORT GBuffer operator+(const GBuffer& left, const GBuffer& right);

/// The bytes of a text in quotes, as a parameter of a template.
template <std::size_t Size>
struct GLiteralBytes {
    /// Takes the bytes of the quotes, the zero included.
    consteval GLiteralBytes(const char (&text)[Size]) {
        for (std::size_t i = 0; i < Size; ++i) bytes[i] = static_cast<unsigned char>(text[i]);
    }
    unsigned char bytes[Size] = {};  ///< the text and its zero
};

/// The literal: `constinit const GBuffer cName(cLiteral<"name">);`
template <GLiteralBytes Text>
inline constexpr GBuffer::Literal cLiteral = {Text.bytes, sizeof Text.bytes - 1};
