#pragma once

#include <cstddef>
#include <cstdint>

/// GUnicodeComposition: canonical composition of two UTF-16 units into one (Unicode 14).
struct GUnicodeComposition {
    /// The unit that `base` and `mark` compose to, or 0.
    static std::uint16_t Compose(std::uint16_t base, std::uint16_t mark) noexcept;
    /// Position of the first unit of `length` that composes with the one before it, or `length`.
    /// `units` need not be aligned.
    static std::size_t FindFirst(const unsigned char* units, std::size_t length) noexcept;
    /// Composes in place, beginning at `position`, which FindFirst has found; returns the new length.
    static std::size_t ComposeFrom(unsigned char* units, std::size_t length, std::size_t position) noexcept;
};
