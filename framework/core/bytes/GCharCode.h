#pragma once

#include <cstdint>
#include <cstring>

#include "framework/core/GExport.h"

/// GCharCode: the code of one character in some encoding: one or more bytes, or UTF-16 units.
///
/// A small value without memory of its own. It holds up to cMaxLength bytes; UTF-16 units are held
/// as two bytes each in machine order. What goes beyond cMaxLength is left out.
class QUILLON_EXPORT GCharCode {
public:
    static constexpr long cMaxLength = 16;  ///< in bytes; the longest glyph name stands for four units

    constexpr GCharCode() noexcept = default;
    /// A code of one byte.
    explicit GCharCode(unsigned char code) noexcept { Append(&code, 1); }
    /// A code of one UTF-16 unit.
    explicit GCharCode(unsigned short unit) noexcept { *this += unit; }
    /// A code of `length` bytes.
    GCharCode(const unsigned char* bytes, long length) noexcept { Append(bytes, length); }
    /// A code of `count` UTF-16 units.
    GCharCode(const unsigned short* units, long count) noexcept {
        for (long i = 0; i < count; ++i) *this += units[i];
    }

    ///@{ Appends a byte, or a UTF-16 unit in machine order; one that does not fit whole is left out.
    GCharCode& operator+=(unsigned char code) noexcept {
        Append(&code, 1);
        return *this;
    }
    GCharCode& operator+=(unsigned short unit) noexcept {
        unsigned char bytes[sizeof unit];
        std::memcpy(bytes, &unit, sizeof unit);
        if (mLength + 2 <= cMaxLength) Append(bytes, 2);
        return *this;
    }
    ///@}
    void Clear() noexcept { mLength = 0; }  ///< back to no code

    bool IsEmpty() const noexcept { return mLength == 0; }  ///< whether it has no byte
    /// In bytes.
    long GetLength() const noexcept { return mLength; }
    /// The bytes, GetLength() of them; valid as long as the object.
    const unsigned char* GetPtr() const noexcept { return mBytes; }
    /// The byte at `index`; 0 where there is none.
    unsigned char GetByte(long index = 0) const noexcept {
        return index >= 0 && index < mLength ? mBytes[index] : static_cast<unsigned char>(0);
    }
    /// Whole UTF-16 units.
    long GetUnitCount() const noexcept { return mLength / 2; }
    /// The UTF-16 unit at `index`; 0 where there is none.
    unsigned short GetUnit(long index = 0) const noexcept {
        unsigned short unit = 0;
        if (index >= 0 && index < GetUnitCount()) std::memcpy(&unit, mBytes + 2 * index, sizeof unit);
        return unit;
    }

    /// Same length and same bytes.
    bool operator==(const GCharCode& other) const noexcept {
        return mLength == other.mLength &&
               std::memcmp(mBytes, other.mBytes, static_cast<std::size_t>(mLength)) == 0;
    }
    /// By bytes as memcmp has it, the shorter code first on a tie.
    bool operator<(const GCharCode& other) const noexcept;
    /// The hash of the same bytes in a GBuffer.
    std::uint32_t GetHash() const noexcept;

private:
    void Append(const unsigned char* bytes, long length) noexcept;

    unsigned char mBytes[cMaxLength] = {};
    std::int32_t mLength = 0;  // of mBytes in use
};
