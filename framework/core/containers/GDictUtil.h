#pragma once

#include <cstdint>

#include "framework/core/GExport.h"

class GString;

/// GDictUtil: the sizes that dictionaries take, how they hash numbers, and the line end of dictionary
/// texts.
class QUILLON_EXPORT GDictUtil {
public:
    static constexpr std::int32_t cFirstAllocation = 7;  ///< slots of a dictionary that was given no number

    /// The first value of the slot sequence that is not below `count`: 7, 13, 23, 41, ... 5613217, from
    /// there on doubled. Throws as GAllocator::ThrowOutOfMemory() beyond 31 bits.
    static long GetAllocation(long count);

    /// A hash of all bits of a number. Numbers in a row, or at equal distances, spread over any count
    /// of slots as random ones do.
    static constexpr std::uint32_t MixBits(std::uint64_t value) noexcept {
        // The golden ratio as a fraction of 64 bits: its multiples spread evenly. The two halves of the
        // product together depend on all bits of the value.
        constexpr std::uint64_t cGoldenRatio = 0x9E3779B97F4A7C15;
        __extension__ using Wide = unsigned __int128;
        const Wide product = Wide{value} * cGoldenRatio;
        const std::uint64_t mixed =
            static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
        return static_cast<std::uint32_t>(mixed ^ mixed >> 32);
    }

    /// The platform's line ending: CR if it uses CR, then LF if it uses LF.
    static GString GetEOLString();
};
