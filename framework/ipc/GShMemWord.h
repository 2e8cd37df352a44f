#pragma once

#include <cstdint>

/// GShMemWord: how a number lies in shared memory, as four bytes with the low one first.
struct GShMemWord {
    static constexpr long cSize = 4;

    static void Put(unsigned char* bytes, std::int32_t value) noexcept {
        const auto word = static_cast<std::uint32_t>(value);
        for (int index = 0; index < cSize; ++index)
            bytes[index] = static_cast<unsigned char>(word >> (8 * index));
    }
    static std::int32_t Get(const unsigned char* bytes) noexcept {
        std::uint32_t word = 0;
        for (int index = 0; index < cSize; ++index) word |= std::uint32_t{bytes[index]} << (8 * index);
        return static_cast<std::int32_t>(word);
    }
};
