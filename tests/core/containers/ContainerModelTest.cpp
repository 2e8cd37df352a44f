#include <list>
#include <set>
#include <unordered_map>

#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "tests/core/TextForTests.h"
#include "tests/core/containers/CountedValue.h"

// Tables and dictionaries beside the standard library's, under random operations.

namespace {

struct Random {
    /// Below `limit`, which is not 0.
    long Below(long limit) { return static_cast<long>(engine() % static_cast<unsigned long>(limit)); }
    std::mt19937 engine;
};

// An iterator stands at an element or in the gap before one. What is inserted into its gap comes behind it
// when it goes backward, and before it when it goes forward.
class TableModel {
public:
    explicit TableModel(unsigned seed) : mRandom{std::mt19937(seed)} {}

    void Run(long operations) {
        for (long i = 0; i < operations && !testing::Test::HasFatalFailure(); ++i) {
            if (mWalkers.empty()) mWalkers.emplace_back(mTable);
            if (mWalkers.size() < 4 && mRandom.Below(4) == 0) mWalkers.push_back(mWalkers.back());
            ChangeOnce(mRandom.Below(GetCount() + 4) - 2);  // also outside
            for (const Walker& walker : mWalkers) Check(walker);
            if (i % 16 == 0) CheckElements();
        }
    }

private:
    struct Walker {
        explicit Walker(GTable<GBuffer>& table) : iterator(table) {}
        void StartAnew() { index = 0, isAtElement = forward = false; }
        GTableIterator<GBuffer> iterator;
        long index = 0;  // of the element, or of the one behind the gap
        bool isAtElement = false, forward = false;
    };

    long GetCount() const { return static_cast<long>(mModel.size()); }

    void ChangeOnce(long position) {
        const auto chosen = std::next(mWalkers.begin(), mRandom.Below(static_cast<long>(mWalkers.size())));
        Walker& walker = *chosen;
        const long choice = mRandom.Below(10);
        if (choice < 2) return Insert(position);
        if (choice == 2) return Remove(position, 1);
        if (choice == 3) return Remove(position, GetCount() > 25 ? 20 : mRandom.Below(5) - 1);
        if (choice == 4) return Stand(walker, position, position >= 0, walker.iterator.SetPosition(position));
        if (choice == 5) return static_cast<void>(mWalkers.erase(chosen));
        if (choice == 8) return static_cast<void>(mWalkers.front() = walker);
        if (choice == 9) return Exchange(walker);
        if (choice == 6)
            return Stand(walker, walker.index + (walker.isAtElement ? 1 : 0), true, walker.iterator.Next());
        Stand(walker, walker.index - 1, false, walker.iterator.Previous());
    }

    void Insert(long position) {
        const std::string text = std::to_string(mNextNumber++);
        mTable.Insert(position, BufferOf(text));
        position = std::clamp(position, 0L, GetCount());
        mModel.insert(mModel.begin() + position, text);
        for (Walker& walker : mWalkers) {
            const bool isPushed = walker.isAtElement || walker.forward;
            if (walker.index > position || (walker.index == position && isPushed)) ++walker.index;
        }
    }

    void Remove(long position, long count) {
        mTable.Remove(position, count);
        count = std::min(count, GetCount() - position);
        if (position < 0 || count <= 0) return;
        mModel.erase(mModel.begin() + position, mModel.begin() + position + count);
        for (Walker& walker : mWalkers) {
            const long behind = walker.index - position;
            if (behind >= 0 && behind < count) walker.isAtElement = false;
            walker.index -= std::clamp(behind, 0L, count);
        }
    }

    // Iterators go with their elements; they start anew in a table that gets others.
    void Exchange(Walker& walker) {
        GTable<GBuffer> other;
        mTable.Swap(other);
        for (const Walker& each : mWalkers) Check(each);
        mTable.Swap(other);
        walker.iterator.Reset(), walker.StartAnew();
        if (mRandom.Below(4) != 0) return;
        GTable<GBuffer> taken(std::move(mTable));
        if (mRandom.Below(2) == 0) mTable = taken;
        if (mTable.IsEmpty()) mTable = std::move(taken);
        for (Walker& each : mWalkers) each.StartAnew();
    }

    // At an element that was met, or before the first or behind the last.
    void Stand(Walker& walker, long index, bool forward, const GBuffer* met) {
        walker.isAtElement = index >= 0 && index < GetCount();
        walker.index = walker.isAtElement ? index : forward ? GetCount() : 0;
        walker.forward = forward;
        ASSERT_EQ(met != nullptr, walker.isAtElement);
    }

    void Check(const Walker& walker) {
        const GBuffer* const current = walker.iterator.GetCurrent();
        ASSERT_EQ(current != nullptr, walker.isAtElement);
        ASSERT_TRUE(!current || BytesOf(*current) == mModel[static_cast<std::size_t>(walker.index)]);
        const bool isBefore = walker.isAtElement || walker.forward;
        ASSERT_EQ(walker.iterator.GetPosition(), isBefore ? walker.index : walker.index - 1);
    }

    void CheckElements() const {
        ASSERT_EQ(mTable.GetCount(), GetCount());
        for (long i = 0; i < GetCount(); ++i)
            ASSERT_EQ(mTable.Find(BufferOf(mModel[static_cast<std::size_t>(i)])), i);
    }

    Random mRandom;
    GTable<GBuffer> mTable;
    std::vector<std::string> mModel;
    std::list<Walker> mWalkers;
    long mNextNumber = 0;
};

// Of keys that are numbers, or made of one and convertible to it.
template <class K>
class DictModel {
public:
    explicit DictModel(unsigned seed) : mRandom{std::mt19937(seed)} {}

    void Run(long operations, long keyLimit) {
        for (long i = 0; i < operations && !testing::Test::HasFailure(); ++i) {
            ChangeOnce(mRandom.Below(keyLimit));
            for (const Walk& walk : mWalks) CheckPlace(walk);
            if (i % 1000 == 0) Compare(keyLimit);
            if (i % 25000 == 24999) Clear();
        }
        for (Walk& walk : mWalks) Finish(walk);
    }

private:
    // A walk and what it must still meet and must not meet any more.
    struct Walk {
        explicit Walk(GDict<K, long>& dict) : iterator(dict) {}
        GDictIterator<K, long> iterator;
        std::set<long> stillToMeet;  // there from the start
        std::set<long> met;          // met and not removed since
        long current = -1;           // where it stands
    };

    void ChangeOnce(long number) {
        const long choice = mRandom.Below(8);
        if (choice < 3) return Insert(number);
        if (choice < 5) return Remove(number);
        if (choice == 5) return Find(number);
        if (choice == 6)
            return static_cast<void>(std::ranges::for_each(mWalks, [this](Walk& w) { Step(w); }));
        if (mRandom.Below(1 + static_cast<long>(mModel.size()) / 4) == 0) StartWalk();
    }

    void Insert(long number) {
        const bool isNew = mModel.insert_or_assign(number, mNextValue).second;
        const long way = mRandom.Below(4);
        if (way == 0) mDict.GetOrInsert(K{number}) = mNextValue;
        if (way == 1) mDict.Set(K{number}, 0) = mNextValue;
        ASSERT_TRUE(way < 2 || mDict.Insert(K{number}, mNextValue) == isNew);
        ++mNextValue;
    }

    void Remove(long number) {
        ASSERT_EQ(mDict.Remove(K{number}), mModel.erase(number) == 1);
        for (Walk& walk : mWalks) {
            walk.stillToMeet.erase(number);
            walk.met.erase(number);
            if (walk.current == number) walk.current = -1;
        }
    }

    void Find(long number) {
        const auto found = mModel.find(number);
        const long* const value = mDict.Find(K{number});
        ASSERT_EQ(value != nullptr, found != mModel.end());
        ASSERT_TRUE(value == nullptr || *value == found->second);
    }

    void StartWalk() {
        if (mWalks.size() > 4) Finish(mWalks.front()), mWalks.pop_front();
        if (!mWalks.empty() && mRandom.Below(3) == 0) return mWalks.push_back(mWalks.back());
        mWalks.emplace_back(mDict);
        for (const auto& [number, value] : mModel) mWalks.back().stillToMeet.insert(number);
    }

    bool Step(Walk& walk) {
        const auto* const entry = walk.iterator.Next();
        walk.current = entry == nullptr ? -1 : static_cast<long>(entry->GetKey());
        if (entry == nullptr) {
            EXPECT_TRUE(walk.stillToMeet.empty()) << "an entry was passed by";
            return false;
        }
        EXPECT_TRUE(walk.met.insert(walk.current).second) << "an entry was met twice";
        EXPECT_EQ(mModel.at(walk.current), entry->GetValue());
        walk.stillToMeet.erase(walk.current);
        return true;
    }

    static void CheckPlace(const Walk& walk) {
        const auto* const entry = walk.iterator.GetCurrent();
        ASSERT_EQ(walk.current, entry == nullptr ? -1 : static_cast<long>(entry->GetKey()));
    }

    void Finish(Walk& walk) {
        while (Step(walk)) continue;
    }

    void Compare(long keyLimit) {
        ASSERT_EQ(mDict.GetCount(), static_cast<long>(mModel.size()));
        ASSERT_LT(mDict.GetCount(), std::max(mDict.GetSlotCount() * 3 / 4, 1L));
        for (long number = 0; number < keyLimit; ++number) Find(number);
        std::set<long> walked;
        for (const auto& entry : mDict) ASSERT_TRUE(walked.insert(static_cast<long>(entry.GetKey())).second);
        ASSERT_EQ(walked.size(), mModel.size());
        const GDict<K, long> copy(mDict);
        ASSERT_TRUE(copy == mDict);
    }

    // Walks go on behind what was cleared, and start anew where other entries come in.
    void Clear() {
        mRandom.Below(2) == 0 ? mDict.Clear() : static_cast<void>(mDict = GDict<K, long>());
        mModel.clear();
        for (Walk& walk : mWalks) walk.stillToMeet.clear(), walk.met.clear(), walk.current = -1;
    }

    Random mRandom;
    GDict<K, long> mDict;
    std::unordered_map<long, long> mModel;
    std::list<Walk> mWalks;
    long mNextValue = 0;
};

}  // namespace

TEST(ContainerModel, ATableAndItsIteratorsBehaveAsAList) {
    TableModel(1).Run(400000);
}

TEST(ContainerModel, ADictionaryBehavesAsAMap) {
    DictModel<long>(1).Run(400000, 300);
    DictModel<long>(2).Run(200000, 5000);
    DictModel<CountedValue>(4).Run(200000, 60);
    DictModel<CountedValue>(5).Run(100000, 8);
}
