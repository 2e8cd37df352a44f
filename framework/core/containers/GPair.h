#pragma once

#include <utility>

/// GPair: two values side by side. May be relocated bitwise when both values may.
template <class First, class Second>
class GPair {
public:
    GPair() : mFirst(), mSecond() {}
    GPair(First first, Second second) : mFirst(std::move(first)), mSecond(std::move(second)) {}

    const First& GetFirst() const noexcept { return mFirst; }
    First& GetFirst() noexcept { return mFirst; }
    const Second& GetSecond() const noexcept { return mSecond; }
    Second& GetSecond() noexcept { return mSecond; }

    bool operator==(const GPair& other) const { return mFirst == other.mFirst && mSecond == other.mSecond; }

    First mFirst;
    Second mSecond;
};
