#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GString.h"

/// PRegistryData: a value of the Windows registry, its type and its content in the matching form.
///
/// The types have the system's own numbers. The other accessors give what is empty, or 0.
class QUILLON_EXPORT PRegistryData {
public:
    static constexpr std::uint32_t cString = 1;            ///< text
    static constexpr std::uint32_t cExpandableString = 2;  ///< with names of variables in it, as they stand
    static constexpr std::uint32_t cBinary = 3;            ///< bytes
    static constexpr std::uint32_t cInt32 = 4;             ///< 32 bits
    static constexpr std::uint32_t cStringTable = 7;       ///< several texts

    PRegistryData() = default;
    /// From the bytes of a value as the system stores them: texts in UTF-16. A number that does not
    /// have four bytes is kept as bytes.
    PRegistryData(std::uint32_t type, const GBuffer& stored);

    /// One of the numbers above, or any other of the system's.
    std::uint32_t GetType() const noexcept { return mType; }
    /// Types 1 and 2.
    const GString& GetString() const noexcept { return mString; }
    /// Type 4.
    long GetInt32() const noexcept { return mInt32; }
    /// Type 7.
    const GTable<GString>& GetStringTable() const noexcept { return mStrings; }
    /// Type 3, and every type that has no accessor of its own.
    const GBuffer& GetBuffer() const noexcept { return mBuffer; }

    /// Becomes a multi-string (type 7). Its strings are in UTF-16, each ended by a zero unit, when the count
    /// of bytes is even and the last four are zero, otherwise in the platform's 8-bit encoding, each ended by
    /// a zero byte. The zero that ends the whole is no string. Zeros alone are an empty table, as that is
    /// stored with one or with two.
    void SetStringTable(const GBuffer& stored);
    /// One text: UTF-16, or the platform's 8-bit encoding when the count of bytes is odd. Zeros at the
    /// end do not belong to it.
    static GString DecodeString(const GBuffer& stored);
    /// Whether SetStringTable() takes the bytes for UTF-16.
    static bool IsWideStringTable(const GBuffer& stored) noexcept;

private:
    std::uint32_t mType = 0;
    std::int32_t mInt32 = 0;
    GString mString;
    GBuffer mBuffer;
    GTable<GString> mStrings;
};
