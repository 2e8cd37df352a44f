#pragma once

#include <utility>

/// GPair: two values side by side. May be relocated bitwise when both values may.
template <class First, class Second>
class GPair {
public:
    GPair() : mFirst(), mSecond() {}
    /// Takes both values over.
    GPair(First first, Second second) : mFirst(std::move(first)), mSecond(std::move(second)) {}

    ///@{ The first value; of a pair that is not const it may be changed in place.
    const First& GetFirst() const noexcept { return mFirst; }
    First& GetFirst() noexcept { return mFirst; }
    ///@}
    ///@{ The second value; of a pair that is not const it may be changed in place.
    const Second& GetSecond() const noexcept { return mSecond; }
    Second& GetSecond() noexcept { return mSecond; }
    ///@}

    /// Both values are equal.
    bool operator==(const GPair& other) const { return mFirst == other.mFirst && mSecond == other.mSecond; }

    First mFirst;    ///< as GetFirst()
    Second mSecond;  ///< as GetSecond()
};
