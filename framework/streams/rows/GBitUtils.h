#pragma once

#include <cstdint>

#include "framework/core/GExport.h"

/// GBitUtils: sizes of rows of samples, and values of samples. Widths of samples are in bits.
struct QUILLON_EXPORT GBitUtils {
    /// The greatest value of a sample of 1 to 32 bits.
    static constexpr std::uint32_t GreatestOf(std::int32_t bits) { return 0xFFFFFFFFU >> (32 - bits); }
    /// `value` of a sample of `from` bits as one of `to` bits (1 to 16 each): the greatest becomes the
    /// greatest, what lies between the nearest.
    static constexpr std::uint32_t Scale(std::uint32_t value, std::int32_t from, std::int32_t to) {
        const std::uint64_t scaled = std::uint64_t{value} * GreatestOf(to) + GreatestOf(from) / 2;
        return static_cast<std::uint32_t>(scaled / GreatestOf(from));
    }
    /// The bytes of a row of `columns` pixels of `colours` samples each; rows fill whole bytes. Throws
    /// GExceptionID::cInvalidParameter when a count is below 1, a width is none of 1 to 16, or the row
    /// would be longer than a buffer can be.
    static std::int32_t RowLength(long columns, long colours, long bits);
};
