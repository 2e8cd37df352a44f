#pragma once

#include <cstdint>

#include "framework/core/GExport.h"

/// GRange: the whole numbers from a first to a last one, both included, in 32 bits.
///
/// A range whose last number is below its first is empty; all empty ranges are equal.
class QUILLON_EXPORT GRange {
public:
    /// An empty range.
    constexpr GRange() noexcept = default;
    /// From `first` to `last`, each cut to 32 bits; empty when `last` is below `first`.
    constexpr GRange(long first, long last) noexcept
        : mFirst(static_cast<std::int32_t>(first)), mLast(static_cast<std::int32_t>(last)) {}

    /// Of an empty range: any number above GetLast().
    constexpr long GetFirst() const noexcept { return mFirst; }
    /// Included; of an empty range: any number below GetFirst().
    constexpr long GetLast() const noexcept { return mLast; }
    constexpr bool IsEmpty() const noexcept { return mLast < mFirst; }  ///< holds no number
    /// How many numbers the range holds: up to 2^32, hence 64 bits.
    constexpr long long GetCount() const noexcept {
        return IsEmpty() ? 0 : static_cast<long long>(mLast) - mFirst + 1;
    }
    /// Both ends included.
    constexpr bool Contains(long number) const noexcept { return mFirst <= number && number <= mLast; }
    /// True when every number of `other` is in this range; an empty range is in all.
    constexpr bool Contains(const GRange& other) const noexcept {
        return other.IsEmpty() || (mFirst <= other.mFirst && other.mLast <= mLast);
    }
    /// Whether a number is in both ranges.
    constexpr bool Intersects(const GRange& other) const noexcept {
        return !GetIntersection(other).IsEmpty();
    }
    /// The numbers that both ranges hold.
    constexpr GRange GetIntersection(const GRange& other) const noexcept {
        if (IsEmpty() || other.IsEmpty()) return GRange();
        return GRange(mFirst > other.mFirst ? mFirst : other.mFirst,
                      mLast < other.mLast ? mLast : other.mLast);
    }

    /// Same numbers.
    friend constexpr bool operator==(const GRange& a, const GRange& b) noexcept {
        return (a.IsEmpty() && b.IsEmpty()) || (a.mFirst == b.mFirst && a.mLast == b.mLast);
    }

private:
    std::int32_t mFirst = 0;
    std::int32_t mLast = -1;
};
