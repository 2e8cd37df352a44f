#include "framework/core/containers/GRange.h"

#include "tests/Testing.h"

TEST(GRange, HoldsBothItsEndsAndCountsAll32Bits) {
    const std::tuple<long, long, long long> rows[] = {
        {3, 5, 3}, {5, 5, 1}, {-2147483647 - 1, 2147483647, 4294967296}, {5, 4, 0}, {0, -1, 0}};
    for (const auto& row : rows) {
        const auto& [first, last, count] = row;
        const GRange range(first, last);
        EXPECT_EQ(std::tuple(range.GetFirst(), range.GetLast(), range.GetCount()), row);
        EXPECT_EQ(range.IsEmpty(), count == 0);
        EXPECT_EQ(range.Contains(first), count != 0);
        EXPECT_EQ(range.Contains(last), count != 0);
        EXPECT_EQ(range == GRange(), count == 0) << "all empty ranges are equal";
    }
    EXPECT_FALSE(GRange(3, 5).Contains(2) || GRange(3, 5).Contains(6));
    EXPECT_FALSE(GRange(0, 1) == GRange(0, 2) || GRange() == GRange(0, 0));
}

TEST(GRange, Intersections) {
    const std::tuple<const char*, GRange, GRange, GRange> rows[] = {
        {"apart", {0, 4}, {6, 9}, {}},
        {"side by side", {0, 4}, {5, 9}, {}},
        {"one number in common", {0, 5}, {5, 9}, {5, 5}},
        {"one within the other", {0, 9}, {3, 4}, {3, 4}},
        {"the same", {2, 3}, {2, 3}, {2, 3}},
        {"with an empty one inside", {0, 9}, {5, 4}, {}}};
    for (const auto& [what, a, b, common] : rows) {
        SCOPED_TRACE(what);
        EXPECT_TRUE(a.GetIntersection(b) == common && b.GetIntersection(a) == common);
        EXPECT_EQ(a.Intersects(b), !common.IsEmpty());
        EXPECT_EQ(a.Contains(b), common == b);
        EXPECT_EQ(b.Contains(a), common == a);
    }
}
