#include "framework/core/GRange.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace {

TEST(GRange, HoldsBothItsEnds) {
    const long lowest = std::numeric_limits<std::int32_t>::min();
    const long highest = std::numeric_limits<std::int32_t>::max();
    const std::tuple<GRange, long, long, long long> rows[] = {
        {{3, 5}, 3, 5, 3}, {{5, 5}, 5, 5, 1}, {{lowest, highest}, lowest, highest, 4294967296}};
    for (const auto& [range, first, last, count] : rows) {
        EXPECT_EQ(range.GetFirst(), first);
        EXPECT_EQ(range.GetLast(), last);
        EXPECT_EQ(range.GetCount(), count);
        EXPECT_FALSE(range.IsEmpty());
        EXPECT_TRUE(range.Contains(first) && range.Contains(last));
    }
    EXPECT_FALSE(GRange(3, 5).Contains(2) || GRange(3, 5).Contains(6));
    EXPECT_FALSE(GRange(0, 1) == GRange(0, 2));
}

TEST(GRange, EmptyRangesHoldNothingAndAreEqual) {
    for (const GRange& empty : {GRange(), GRange(5, 4)}) {
        EXPECT_TRUE(empty.IsEmpty());
        EXPECT_EQ(empty.GetCount(), 0);
        EXPECT_FALSE(empty.Contains(4) || empty.Contains(0));
        EXPECT_TRUE(empty == GRange());
        EXPECT_FALSE(empty == GRange(0, 0));
        EXPECT_TRUE(GRange(1, 2).Contains(empty));
    }
}

TEST(GRange, Intersections) {
    const std::tuple<const char*, GRange, GRange, GRange> rows[] = {
        {"apart", {0, 4}, {6, 9}, {}},
        {"side by side", {0, 4}, {5, 9}, {}},
        {"one number in common", {0, 5}, {5, 9}, {5, 5}},
        {"one within the other", {0, 9}, {3, 4}, {3, 4}},
        {"the same", {2, 3}, {2, 3}, {2, 3}},
        {"with an empty one inside", {0, 9}, {5, 4}, {}},
    };
    for (const auto& [what, a, b, common] : rows) {
        SCOPED_TRACE(what);
        EXPECT_TRUE(a.GetIntersection(b) == common);
        EXPECT_TRUE(b.GetIntersection(a) == common);
        EXPECT_EQ(a.Intersects(b), !common.IsEmpty());
        EXPECT_EQ(a.Contains(b), common == b);
        EXPECT_EQ(b.Contains(a), common == a);
    }
}

}  // namespace
