#include "framework/core/containers/GTable.h"

#include "framework/core/bytes/GBuffer.h"
#include "tests/core/ExpectValue.h"
#include "tests/core/containers/CountedValue.h"

TEST(GTable, StartsWithoutAnArrayAndDoublesIt) {
    GTable<long> table;
    EXPECT_EQ(table.GetCapacity(), 0);
    EXPECT_TRUE(table.IsEmpty());
    for (const long capacity : {2, 2, 4, 4, 8, 8, 8, 8, 16}) {
        table.Append(table.GetCount());
        EXPECT_EQ(table.GetCapacity(), capacity);
    }
    EXPECT_TRUE((table == GTable<long>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(GTable, FindsComparesAndSortsElements) {
    GTable<long> table{5, 6, 5};
    EXPECT_EQ(table.Find(5, 1), 2);
    EXPECT_EQ(table.Find(5, 3), -1);
    EXPECT_EQ(table.Find(6, -9), 1);
    EXPECT_FALSE(table.Has(7));
    EXPECT_FALSE((table == GTable<long>{5, 6}) || (table == GTable<long>{5, 6, 6}));
    table.Sort(std::greater<>());
    EXPECT_TRUE((table == GTable<long>{6, 5, 5}));
}

TEST(GTable, IsAValueWithElementsOfItsOwn) {
    const GTable<GBuffer> table{"a", "b"};
    ExpectValue(table, {"c"});
    GTable<GBuffer> copy(table);
    copy[0] += 'x';
    EXPECT_EQ(table[0], "a");
    EXPECT_EQ(copy[0] + copy.GetLast(), "axb");
}

TEST(GTable, AnElementMayBeInsertedIntoItsOwnTable) {
    GTable<GBuffer> table{GBuffer("first"), GBuffer("second")};
    for (int i = 0; i < 5; ++i) table.Append(table[1]);
    for (int i = 0; i < 5; ++i) table.Insert(0, table[table.GetCount() - 1]);
    EXPECT_EQ(table.Find(GBuffer("first")), 5);
    table.Remove(5);
    EXPECT_EQ(table.GetCount(), 11);
    for (const GBuffer& element : table) EXPECT_EQ(element, "second");
}

TEST(GTable, EachElementIsDestroyedOnceAndACopyThatThrowsChangesNothing) {
    {
        GTable<CountedValue> table;
        for (int i = 0; i < 8; ++i) table.Insert(i / 2, CountedValue(i));
        table.Remove(1, 4);
        EXPECT_EQ(CountedValue::sAlive, 4);
        GTable<CountedValue> target;
        const CountedValue another(9);
        target.Append(another);
        table.Reserve(4);
        GTable<CountedValue> full(table);
        for (const long copies : {0L, 2L}) {
            CountedValue::sThrowAfterCopies = 0;
            EXPECT_THROW(full.Append(another), std::runtime_error) << "the array grows";
            EXPECT_THROW(table.Insert(1, another), std::runtime_error);
            CountedValue::sThrowAfterCopies = copies;
            EXPECT_THROW(target = table, std::runtime_error);
            CountedValue::sThrowAfterCopies = -1;
            EXPECT_EQ(CountedValue::sAlive, 4 + 4 + 1 + 1);
        }
        EXPECT_EQ(table[3].mNumber, full[3].mNumber);
        target = table;
        EXPECT_EQ(CountedValue::sAlive, 4 + 4 + 4 + 1);
        target.Clear();
        EXPECT_EQ(CountedValue::sAlive, 4 + 4 + 1);
    }
    EXPECT_EQ(CountedValue::sAlive, 0);
}

TEST(GTable, ATableBeyondTheAddressSpaceIsRefused) {
    struct Vast {
        char bytes[0x200000000];
    };
    GTable<Vast> table;
    EXPECT_THROW(table.Reserve(0x7FFFFFFF), std::bad_alloc) << "the size in bytes would wrap";
    EXPECT_EQ(table.GetCapacity(), 0);
}

// How it walks is compared with a model.
TEST(GTableIterator, OutlivesItsTable) {
    auto table = std::make_unique<GTable<long>>(GTable<long>{1, 2});
    GTableIterator<long> walker(*table);
    GConstTableIterator<long> constant(*table);
    EXPECT_EQ(*constant.SetPosition(1), 2);
    EXPECT_EQ(constant.Previous(), walker.Next());
    EXPECT_EQ(constant.GetCurrent(), walker.GetCurrent());
    EXPECT_EQ(*constant.Next(), 2);
    table.reset();
    EXPECT_EQ(constant.GetCurrent(), nullptr);
    for (const bool isReset : {false, true}) {
        if (isReset) walker.Reset();
        const GTableIterator<long> copy(walker);
        EXPECT_FALSE(walker.IsValid() || copy.IsValid());
        EXPECT_EQ(walker.GetPosition(), -1);
        EXPECT_FALSE(walker.GetCurrent() || walker.Next() || walker.Previous() || walker.SetPosition(0));
    }
}
