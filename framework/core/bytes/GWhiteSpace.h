#pragma once

/// GWhiteSpace: the set that all stripping and number parsing shares: backspace, tab, line feed, vertical
/// tab, carriage return and blank (8, 9, 10, 11, 13 and 32); form feed does not belong to it.
class GWhiteSpace {
public:
    /// Whether a byte or UTF-16 unit belongs to the set.
    static constexpr bool Has(unsigned short unit) noexcept {
        return unit == ' ' || (unit >= 8 && unit <= 13 && unit != 12);
    }
};
