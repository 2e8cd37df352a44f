#include "framework/core/GTable.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "framework/core/GBuffer.h"
#include "framework/core/GPair.h"
#include "tests/core/CountedValue.h"

namespace {

using Numbers = std::vector<long>;

GTable<long> TableOf(const Numbers& numbers) {
    GTable<long> table;
    for (const long number : numbers) table.Append(number);
    return table;
}

template <class T>
Numbers NumbersOf(const GTable<T>& table) {
    Numbers numbers;
    for (const T& element : table) numbers.push_back(static_cast<long>(element));
    return numbers;
}

// What is still to come.
Numbers Rest(GTableIterator<long>& iterator) {
    Numbers numbers;
    while (const long* number = iterator.Next()) numbers.push_back(*number);
    return numbers;
}

}  // namespace

// --- Elements ----------------------------------------------------------------------------------

TEST(GTable, StartsWithoutAnArrayAndDoublesIt) {
    GTable<long> table;
    EXPECT_EQ(table.GetCapacity(), 0);
    EXPECT_TRUE(table.IsEmpty());
    const long capacities[] = {2, 2, 4, 4, 8, 8, 8, 8, 16};
    for (const long capacity : capacities) {
        table.Append(table.GetCount());
        EXPECT_EQ(table.GetCapacity(), capacity);
    }
    EXPECT_EQ(NumbersOf(table), (Numbers{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(GTable, Insert) {
    const struct {
        const char* what;
        long position;
        Numbers result;
    } rows[] = {
        {"at the start", 0, {9, 1, 2, 3}},      {"inside", 2, {1, 2, 9, 3}},
        {"at the end", 3, {1, 2, 3, 9}},        {"behind the end", 7, {1, 2, 3, 9}},
        {"before the start", -2, {9, 1, 2, 3}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GTable<long> table = TableOf({1, 2, 3});
        table.Insert(row.position, 9);
        EXPECT_EQ(NumbersOf(table), row.result);
    }
}

TEST(GTable, Remove) {
    const struct {
        const char* what;
        long position;
        long count;
        Numbers result;
    } rows[] = {
        {"one", 1, 1, {1, 3, 4}},
        {"some", 1, 2, {1, 4}},
        {"to the end", 2, 2, {1, 2}},
        {"more than there is", 2, 9, {1, 2}},
        {"none", 1, 0, {1, 2, 3, 4}},
        {"fewer than none", 1, -1, {1, 2, 3, 4}},
        {"at the end", 4, 1, {1, 2, 3, 4}},
        {"before the start", -1, 1, {1, 2, 3, 4}},
        {"all", 0, 4, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GTable<long> table = TableOf({1, 2, 3, 4});
        table.Remove(row.position, row.count);
        EXPECT_EQ(NumbersOf(table), row.result);
        EXPECT_EQ(table.GetCapacity(), 4);
    }
}

TEST(GTable, FindsEqualElements) {
    const GTable<long> table = TableOf({5, 6, 5});
    EXPECT_EQ(table.Find(5), 0);
    EXPECT_EQ(table.Find(5, 1), 2);
    EXPECT_EQ(table.Find(5, 3), -1);
    EXPECT_EQ(table.Find(7), -1);
    EXPECT_EQ(table.Find(6, -9), 1);
    EXPECT_TRUE(table.Has(6));
    EXPECT_FALSE(table.Has(7));
    EXPECT_TRUE(table == TableOf({5, 6, 5}));
    EXPECT_FALSE(table == TableOf({5, 6}));
    EXPECT_FALSE(table == TableOf({5, 6, 6}));
}

TEST(GTable, CopiesMovesAndSwaps) {
    GTable<GBuffer> table{GBuffer("a"), GBuffer("b")};
    GTable<GBuffer> copy(table);
    copy[0] += 'x';
    EXPECT_EQ(table[0], "a");
    EXPECT_EQ(copy[0], "ax");
    GTable<GBuffer> moved(std::move(copy));
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_EQ(moved.GetCount(), 2);
    copy.Append(GBuffer("c"));
    copy = std::move(moved);
    EXPECT_EQ(copy[0], "ax");
    EXPECT_TRUE(moved.IsEmpty());
    table = copy;
    EXPECT_EQ(table[0], "ax");
    const GTable<GBuffer>& self = table;
    table = self;
    EXPECT_EQ(table.GetCount(), 2);
    table.Swap(moved);
    EXPECT_TRUE(table.IsEmpty());
    EXPECT_EQ(moved.GetLast(), "b");
}

TEST(GTable, AnElementMayBeInsertedIntoItsOwnTable) {
    GTable<GBuffer> table{GBuffer("first"), GBuffer("second")};
    for (int i = 0; i < 5; ++i) table.Append(table[1]);
    for (int i = 0; i < 5; ++i) table.Insert(0, table[table.GetCount() - 1]);
    EXPECT_EQ(table.GetCount(), 12);
    EXPECT_EQ(table.Find(GBuffer("first")), 5);
    table.Remove(5);
    for (const GBuffer& element : table) EXPECT_EQ(element, "second");
}

TEST(GTable, SortsByAnyOrder) {
    GTable<long> table = TableOf({3, 1, 2});
    table.Sort();
    EXPECT_EQ(NumbersOf(table), (Numbers{1, 2, 3}));
    table.Sort([](long a, long b) { return a > b; });
    EXPECT_EQ(NumbersOf(table), (Numbers{3, 2, 1}));
    GTable<GPair<GBuffer, long>> pairs;
    pairs.Append({GBuffer("b"), 1});
    pairs.Append({GBuffer("a"), 2});
    pairs.Sort([](const auto& a, const auto& b) { return a.GetFirst() < b.GetFirst(); });
    EXPECT_EQ(pairs[0].GetSecond(), 2);
    EXPECT_TRUE(pairs[1] == (GPair<GBuffer, long>(GBuffer("b"), 1)));
}

TEST(GTable, EachElementIsDestroyedOnce) {
    CountedValue::Watch watch;
    {
        GTable<CountedValue> table;
        for (int i = 0; i < 20; ++i) table.Insert(i / 2, CountedValue(i));
        EXPECT_EQ(CountedValue::sAlive, 20);
        table.Remove(3, 5);
        EXPECT_EQ(CountedValue::sAlive, 15);
        const GTable<CountedValue> copy(table);
        EXPECT_EQ(CountedValue::sAlive, 30);
        table = copy;
        EXPECT_EQ(CountedValue::sAlive, 30);
        table.Clear();
        EXPECT_EQ(CountedValue::sAlive, 15);
    }
    EXPECT_EQ(CountedValue::sAlive, 0);
}

TEST(GTable, ACopyThatThrowsChangesNothing) {
    CountedValue::Watch watch;
    GTable<CountedValue> table;
    for (int i = 0; i < 4; ++i) table.Append(CountedValue(i));
    const CountedValue another(9);
    GTable<CountedValue> target;
    target.Append(another);
    CountedValue::sThrowAfterCopies = 0;
    EXPECT_THROW(table.Append(another), std::runtime_error) << "full: the array grows";
    CountedValue::sThrowAfterCopies = 0;
    EXPECT_THROW(table.Insert(1, another), std::runtime_error);
    CountedValue::sThrowAfterCopies = 2;
    EXPECT_THROW(target = table, std::runtime_error);
    CountedValue::sThrowAfterCopies = -1;
    EXPECT_EQ(table.GetCount(), 4);
    EXPECT_EQ(table[3].mNumber, 3);
    EXPECT_EQ(target.GetCount(), 1);
    EXPECT_EQ(CountedValue::sAlive, 6);
}

TEST(GTable, ATableBeyondTheAddressSpaceIsRefused) {
    struct Vast {
        char bytes[0x200000000];
    };
    GTable<Vast> table;
    EXPECT_THROW(table.Reserve(0x7FFFFFFF), std::bad_alloc) << "the size in bytes would wrap";
    EXPECT_EQ(table.GetCapacity(), 0);
}

TEST(GTable, HoldsTables) {
    GTable<GTable<long>> tables;
    for (long i = 0; i < 10; ++i) tables.Insert(0, TableOf({i}));
    EXPECT_EQ(tables[0][0], 9);
    EXPECT_EQ(tables[9][0], 0);
}

// --- Robust iterators --------------------------------------------------------------------------

TEST(GTableIterator, WalksBothWays) {
    GTable<long> table = TableOf({1, 2, 3});
    GTableIterator<long> iterator(table);
    EXPECT_EQ(iterator.GetPosition(), -1);
    EXPECT_EQ(iterator.GetCurrent(), nullptr);
    EXPECT_EQ(*iterator.Next(), 1);
    EXPECT_EQ(*iterator.GetCurrent(), 1);
    EXPECT_EQ(*iterator.Next(), 2);
    EXPECT_EQ(*iterator.Previous(), 1);
    EXPECT_EQ(iterator.Previous(), nullptr);
    EXPECT_EQ(iterator.GetPosition(), -1);
    EXPECT_EQ(iterator.Previous(), nullptr);
    EXPECT_EQ(Rest(iterator), (Numbers{1, 2, 3}));
    EXPECT_EQ(iterator.GetPosition(), 3);
    EXPECT_EQ(iterator.Next(), nullptr);
    EXPECT_EQ(*iterator.Previous(), 3);
    EXPECT_EQ(*iterator.SetPosition(1), 2);
    EXPECT_EQ(iterator.SetPosition(9), nullptr);
    EXPECT_EQ(iterator.GetPosition(), 3);
    EXPECT_EQ(iterator.SetPosition(-9), nullptr);
    EXPECT_EQ(*iterator.Next(), 1);
    iterator.Reset();
    EXPECT_EQ(*iterator.Next(), 1);
}

TEST(GTableIterator, StaysOnItsElementThroughInsertsAndRemovals) {
    GTable<long> table = TableOf({0, 1, 2, 3, 4});
    GTableIterator<long> iterator(table);
    iterator.SetPosition(3);
    table.Insert(0, 9);
    EXPECT_EQ(iterator.GetPosition(), 4);
    table.Insert(4, 9);
    EXPECT_EQ(iterator.GetPosition(), 5);
    table.Insert(6, 9);
    EXPECT_EQ(iterator.GetPosition(), 5);
    table.Remove(0, 2);
    EXPECT_EQ(iterator.GetPosition(), 3);
    table.Remove(4, 9);
    EXPECT_EQ(*iterator.GetCurrent(), 3);
    for (long i = 0; i < 100; ++i) table.Insert(0, i);
    EXPECT_EQ(*iterator.GetCurrent(), 3) << "also when the array moves";
}

TEST(GTableIterator, GoesOnBesideARemovedElement) {
    const struct {
        const char* what;
        bool forward;
        long removeAt;
        long removeCount;
        long position;
        Numbers ahead;
    } rows[] = {
        {"its own, forward", true, 2, 1, 2, {3, 4}},      {"its own, backward", false, 2, 1, 1, {1, 0}},
        {"a run around it, forward", true, 1, 3, 1, {4}}, {"a run around it, backward", false, 1, 3, 0, {0}},
        {"everything, forward", true, 0, 5, 0, {}},       {"everything, backward", false, 0, 5, -1, {}},
        {"all ahead, forward", true, 3, 2, 2, {}},        {"all ahead, backward", false, 0, 2, 0, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GTable<long> table = TableOf({0, 1, 2, 3, 4});
        GTableIterator<long> iterator(table);
        iterator.SetPosition(row.forward ? 1 : 3);
        EXPECT_EQ(*(row.forward ? iterator.Next() : iterator.Previous()), 2);
        table.Remove(row.removeAt, row.removeCount);
        EXPECT_EQ(iterator.GetPosition(), row.position);
        Numbers ahead;
        while (const long* number = row.forward ? iterator.Next() : iterator.Previous())
            ahead.push_back(*number);
        EXPECT_EQ(ahead, row.ahead);
    }
}

TEST(GTableIterator, BetweenElementsItMayTurnRound) {
    GTable<long> table = TableOf({0, 1, 2, 3, 4});
    GTableIterator<long> iterator(table);
    iterator.SetPosition(2);
    table.Remove(2);
    EXPECT_FALSE(iterator.IsOnElement());
    EXPECT_TRUE(iterator.IsValid());
    EXPECT_EQ(iterator.GetCurrent(), nullptr);
    GTableIterator<long> turned(iterator);
    EXPECT_EQ(*iterator.Next(), 3);
    EXPECT_EQ(*turned.Previous(), 1);
    iterator = turned;
    EXPECT_EQ(iterator.GetPosition(), 1);
}

TEST(GTableIterator, MeetsWhatIsInsertedAheadOnly) {
    GTable<long> table = TableOf({0, 1, 2});
    GTableIterator<long> iterator(table);
    iterator.Next();
    table.Insert(0, 8);  // behind
    table.Insert(2, 9);  // right ahead
    table.Append(10);    // at the end
    EXPECT_EQ(Rest(iterator), (Numbers{9, 1, 2, 10}));
    table.Append(11);
    EXPECT_EQ(iterator.Next(), nullptr) << "past the end it stays there";
    GTable<long> empty;
    GTableIterator<long> early(empty);
    empty.Append(1);
    empty.Insert(0, 0);
    EXPECT_EQ(Rest(early), (Numbers{0, 1})) << "not yet started";
}

TEST(GTableIterator, AnIteratorMayRemoveWhatItMeets) {
    GTable<long> table = TableOf({0, 1, 2, 3, 4, 5});
    GTableIterator<long> iterator(table);
    Numbers met;
    while (const long* number = iterator.Next()) {
        met.push_back(*number);
        if (*number % 2 == 0) table.Remove(iterator.GetPosition());
    }
    EXPECT_EQ(met, (Numbers{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(NumbersOf(table), (Numbers{1, 3, 5}));
}

TEST(GTableIterator, OutlivesItsTable) {
    auto table = std::make_unique<GTable<long>>(TableOf({1, 2}));
    GTableIterator<long> first(*table);
    GTableIterator<long> second(*table);
    first.Next();
    table.reset();
    EXPECT_FALSE(first.IsValid());
    EXPECT_EQ(first.GetPosition(), -1);
    EXPECT_EQ(first.GetCurrent(), nullptr);
    EXPECT_EQ(first.Next(), nullptr);
    EXPECT_EQ(first.Previous(), nullptr);
    EXPECT_EQ(first.SetPosition(0), nullptr);
    first.Reset();
    EXPECT_EQ(first.Next(), nullptr);
    GTableIterator<long> copy(second);
    EXPECT_FALSE(copy.IsValid());
}

TEST(GTableIterator, MayEndInAnyOrder) {
    GTable<long> table = TableOf({1, 2});
    auto first = std::make_unique<GTableIterator<long>>(table);
    auto second = std::make_unique<GTableIterator<long>>(table);
    auto third = std::make_unique<GTableIterator<long>>(*first);
    second.reset();
    table.Insert(0, 0);
    first.reset();
    EXPECT_EQ(*third->Next(), 0);
    third.reset();
    table.Append(3);
    EXPECT_EQ(table.GetCount(), 4);
}

TEST(GTableIterator, AssignmentStartsAnewAndSwapTakesAlong) {
    GTable<long> table = TableOf({1, 2, 3});
    GTable<long> other = TableOf({7, 8});
    GTableIterator<long> iterator(table);
    iterator.SetPosition(2);
    table.Swap(other);
    EXPECT_EQ(*iterator.GetCurrent(), 3);
    other.Insert(0, 0);
    EXPECT_EQ(iterator.GetPosition(), 3);
    other = table;
    EXPECT_EQ(Rest(iterator), (Numbers{7, 8}));
    iterator.SetPosition(1);
    const GTable<long> taken(std::move(other));
    EXPECT_EQ(iterator.Next(), nullptr);
    other.Append(5);
    iterator.Reset();
    EXPECT_EQ(*iterator.Next(), 5);
}

TEST(GConstTableIterator, WalksAConstTable) {
    GTable<long> table = TableOf({1, 2});
    const GTable<long>& constTable = table;
    GConstTableIterator<long> iterator(constTable);
    EXPECT_EQ(*iterator.Next(), 1);
    table.Insert(0, 0);
    EXPECT_EQ(iterator.GetPosition(), 1);
    EXPECT_EQ(*iterator.Next(), 2);
    EXPECT_EQ(*iterator.Previous(), 1);
    EXPECT_EQ(*iterator.SetPosition(0), 0);
    EXPECT_EQ(*iterator.GetCurrent(), 0);
}
