#include "framework/core/GRange.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(GRange, HoldsBothItsEnds) {
    const GRange range(3, 5);
    EXPECT_EQ(range.GetFirst(), 3);
    EXPECT_EQ(range.GetLast(), 5);
    EXPECT_EQ(range.GetCount(), 3);
    EXPECT_FALSE(range.Contains(2));
    EXPECT_TRUE(range.Contains(3));
    EXPECT_TRUE(range.Contains(5));
    EXPECT_FALSE(range.Contains(6));
}

TEST(GRange, EmptyRangesHoldNothingAndAreEqual) {
    EXPECT_TRUE(GRange().IsEmpty());
    EXPECT_TRUE(GRange(5, 4).IsEmpty());
    EXPECT_FALSE(GRange(5, 5).IsEmpty());
    EXPECT_EQ(GRange(5, 4).GetCount(), 0);
    EXPECT_FALSE(GRange(5, 4).Contains(4));
    EXPECT_TRUE(GRange() == GRange(5, 4));
    EXPECT_FALSE(GRange() == GRange(0, 0));
    EXPECT_FALSE(GRange(0, 1) == GRange(0, 2));
}

TEST(GRange, TheWholeOf32BitsCanBeCounted) {
    const GRange all(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(all.GetCount(), 4294967296LL);
}

TEST(GRange, Intersections) {
    const struct {
        const char* what;
        GRange a;
        GRange b;
        GRange common;
    } rows[] = {
        {"apart", {0, 4}, {6, 9}, {}},
        {"side by side", {0, 4}, {5, 9}, {}},
        {"one number in common", {0, 5}, {5, 9}, {5, 5}},
        {"one within the other", {0, 9}, {3, 4}, {3, 4}},
        {"the same", {2, 3}, {2, 3}, {2, 3}},
        {"with an empty one inside", {0, 9}, {5, 4}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_TRUE(row.a.GetIntersection(row.b) == row.common);
        EXPECT_TRUE(row.b.GetIntersection(row.a) == row.common);
        EXPECT_EQ(row.a.Intersects(row.b), !row.common.IsEmpty());
    }
    EXPECT_TRUE(GRange(0, 9).Contains(GRange(0, 9)));
    EXPECT_FALSE(GRange(0, 9).Contains(GRange(5, 10)));
    EXPECT_FALSE(GRange(1, 9).Contains(GRange(0, 5)));
    EXPECT_TRUE(GRange(1, 2).Contains(GRange()));
}

}  // namespace
