#pragma once

#include "tests/Testing.h"

/// A class of values: copies, moves and swaps, also to itself. Of two values that differ and are not empty.
template <class Value>
void ExpectValue(const Value& one, const Value& other) {
    Value first(one), second(other);
    EXPECT_TRUE(first == one && !(first == other));
    first = second;
    EXPECT_TRUE(first == other && second == other);
    Value& self = first;
    first = self;
    first = std::move(self);
    EXPECT_TRUE(first == other) << "assigned to itself";
    Value moved(std::move(first));
    EXPECT_TRUE(moved == other && first == Value()) << "moved from";
    first = one;
    first.Swap(moved);
    EXPECT_TRUE(first == other && moved == one) << "swapped";
    moved = std::move(first);
    EXPECT_TRUE(moved == other && first == Value());
}
