#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "tests/core/TextForTests.h"

// Tables and dictionaries beside the standard library's, under random operations.

namespace {

class Random {
public:
    explicit Random(unsigned seed) : mEngine(seed) {}
    /// Below `limit`, which is not 0.
    long Below(long limit) { return static_cast<long>(mEngine() % static_cast<unsigned long>(limit)); }

private:
    std::mt19937 mEngine;
};

// --- Tables ------------------------------------------------------------------------------------

// The model is a list in which each walker that stands between elements has a node of its own. What is
// inserted there comes behind those that go backward and before those that go forward.
class TableModel {
public:
    explicit TableModel(unsigned seed) : mRandom(seed) {}

    void Run(long operations) {
        for (long i = 0; i < operations && !testing::Test::HasFatalFailure(); ++i) {
            if (mWalkers.empty() || (mWalkers.size() < 4 && mRandom.Below(4) == 0)) StartWalker();
            ChangeOnce();
            for (const auto& walker : mWalkers) Check(*walker);
            if (i % 16 == 0) CheckElements();
        }
    }

private:
    struct Walker;
    struct Node {
        std::string text;
        Walker* between = nullptr;  // no element: this walker stands here
    };
    using Place = std::list<Node>::iterator;
    struct Walker {
        GTableIterator<GBuffer> iterator;
        Place place;
        bool forward = false;
    };

    void ChangeOnce() {
        const long position = mRandom.Below(mTable.GetCount() + 4) - 2;  // also outside
        switch (mRandom.Below(8)) {
            case 0:
            case 1:
                return Insert(position);
            case 2:
                return Remove(position, 1);
            case 3:
                return Remove(position, mTable.GetCount() > 25 ? 20 : mRandom.Below(5) - 1);
            case 4:
                return MoveTo(*mWalkers[RandomWalker()], position);
            case 5:
                return static_cast<void>(mWalkers.erase(mWalkers.begin() + EndWalker(RandomWalker())));
            default:
                return Step(*mWalkers[RandomWalker()], mRandom.Below(2) == 0);
        }
    }

    // The element at a position, or the end.
    Place At(long position) {
        Place place = mModel.begin();
        while (place != mModel.end() && (place->between != nullptr || position-- > 0)) ++place;
        return place;
    }

    void Insert(long position) {
        const std::string text = std::to_string(mNextNumber++);
        Place place = At(position);
        while (place != mModel.begin() && std::prev(place)->between && std::prev(place)->between->forward)
            --place;
        mTable.Insert(position, BufferOf(text));
        mModel.insert(place, {text});
    }

    void Remove(long position, long count) {
        mTable.Remove(position, count);
        if (position < 0) return;
        for (; count > 0 && At(position) != mModel.end(); --count) {
            const Place gone = At(position);
            for (const auto& walker : mWalkers) {
                if (walker->place == gone) walker->place = mModel.insert(gone, {"", walker.get()});
            }
            mModel.erase(gone);
        }
        for (const auto& walker : mWalkers) ToItsSide(*walker);
    }

    // Two gaps may have become one: there, those that go forward come last.
    void ToItsSide(Walker& walker) {
        if (!walker.place->between || !walker.forward) return;
        Place to = std::next(walker.place);
        while (to != mModel.end() && to->between) ++to;
        mModel.splice(to, mModel, walker.place);
    }

    void StartWalker() {
        mWalkers.push_back(std::make_unique<Walker>(Walker{GTableIterator<GBuffer>(mTable), {}}));
        StandBetween(*mWalkers.back(), mModel.begin(), false);
    }

    void StandBetween(Walker& walker, Place before, bool forward) {
        walker.forward = forward;
        walker.place = mModel.insert(before, {"", &walker});
    }

    void LeavePlace(const Walker& walker) {
        if (walker.place->between) mModel.erase(walker.place);
    }

    long RandomWalker() { return mRandom.Below(static_cast<long>(mWalkers.size())); }

    long EndWalker(long index) {
        LeavePlace(*mWalkers[index]);
        return index;
    }

    void MoveTo(Walker& walker, long position) {
        const GBuffer* const met = walker.iterator.SetPosition(position);
        LeavePlace(walker);
        Stand(walker, position < 0 ? mModel.end() : At(position), position >= 0, met);
    }

    void Step(Walker& walker, bool forward) {
        const GBuffer* const met = forward ? walker.iterator.Next() : walker.iterator.Previous();
        Place place = walker.place;
        do {
            if (!forward && place == mModel.begin()) {
                place = mModel.end();  // nothing before it
                break;
            }
            forward ? ++place : --place;
        } while (place != mModel.end() && place->between);
        LeavePlace(walker);
        Stand(walker, place, forward, met);
    }

    // At an element that was met, or before the first or behind the last.
    void Stand(Walker& walker, Place place, bool forward, const GBuffer* met) {
        ASSERT_EQ(met != nullptr, place != mModel.end());
        if (place == mModel.end())
            return StandBetween(walker, forward ? mModel.end() : mModel.begin(), forward);
        ASSERT_EQ(BytesOf(*met), place->text);
        walker.place = place;
        walker.forward = forward;
    }

    void Check(const Walker& walker) {
        const GBuffer* const current = walker.iterator.GetCurrent();
        ASSERT_EQ(current == nullptr, walker.place->between != nullptr);
        if (current != nullptr) {
            ASSERT_EQ(BytesOf(*current), walker.place->text);
        }
        const long before = std::count_if(mModel.begin(), Place(walker.place),
                                          [](const Node& node) { return !node.between; });
        ASSERT_EQ(walker.iterator.GetPosition(), current == nullptr && !walker.forward ? before - 1 : before);
    }

    void CheckElements() const {
        long position = 0;
        for (const Node& node : mModel) {
            if (node.between) continue;
            ASSERT_EQ(BytesOf(mTable[position]), node.text);
            ASSERT_EQ(mTable.Find(BufferOf(node.text)), position++);
        }
        ASSERT_EQ(mTable.GetCount(), position);
    }

    Random mRandom;
    GTable<GBuffer> mTable;
    std::list<Node> mModel;
    std::vector<std::unique_ptr<Walker>> mWalkers;
    long mNextNumber = 0;
};

// --- Dictionaries ------------------------------------------------------------------------------

// A key with so poor a hash that homes are shared and probing wraps around.
struct PoorKey {
    long number;
    bool operator==(const PoorKey& other) const = default;
    std::uint32_t GetHash() const { return static_cast<std::uint32_t>(number % 11 * 3); }
};

// A walk and what it must still meet and must not meet any more.
template <class K, class V>
struct DictWalk {
    explicit DictWalk(GDict<K, V>& dict) : iterator(dict) {}
    GDictIterator<K, V> iterator;
    std::set<long> stillToMeet;  // there from the start
    std::set<long> met;          // met and not removed since
    long current = -1;           // where it stands
};

template <class K>
class DictModel {
public:
    explicit DictModel(unsigned seed) : mRandom(seed) {}

    void Run(long operations, long keyLimit) {
        for (long i = 0; i < operations && !testing::Test::HasFailure(); ++i) {
            ChangeOnce(mRandom.Below(keyLimit));
            for (const auto& walk : mWalks) CheckPlace(*walk);
            if (i % 1000 == 0) Compare(keyLimit);
            if (i % 50000 == 49999) Clear();
        }
        for (const auto& walk : mWalks) FinishWalk(*walk);
    }

private:
    void ChangeOnce(long number) {
        const long choice = mRandom.Below(8);
        if (choice < 3) return Insert(number);
        if (choice < 5) return Remove(number);
        if (choice == 5) return Find(number);
        if (choice == 6) return MoveWalks();
        if (mRandom.Below(1 + static_cast<long>(mModel.size()) / 4) == 0) StartWalk();
    }

    void Insert(long number) {
        const bool isNew = mModel.insert_or_assign(number, mNextValue).second;
        if (mRandom.Below(4) == 0) {
            mDict.GetOrInsert(K{number}) = mNextValue++;
        } else if (mRandom.Below(4) == 0) {
            mDict.Set(K{number}, 0) = mNextValue++;
        } else {
            ASSERT_EQ(mDict.Insert(K{number}, mNextValue++), isNew);
        }
    }

    void Remove(long number) {
        ASSERT_EQ(mDict.Remove(K{number}), mModel.erase(number) == 1);
        for (const auto& walk : mWalks) {
            walk->stillToMeet.erase(number);
            walk->met.erase(number);
            if (walk->current == number) walk->current = -1;
        }
    }

    void Find(long number) {
        const auto found = mModel.find(number);
        const long* const value = mDict.Find(K{number});
        ASSERT_EQ(value != nullptr, found != mModel.end());
        if (value != nullptr) {
            ASSERT_EQ(*value, found->second);
        }
    }

    void StartWalk() {
        if (mWalks.size() > 4) {
            FinishWalk(*mWalks.front());
            mWalks.erase(mWalks.begin());
        }
        mWalks.push_back(std::make_unique<DictWalk<K, long>>(mDict));
        for (const auto& [number, value] : mModel) mWalks.back()->stillToMeet.insert(number);
    }

    bool Step(DictWalk<K, long>& walk) {
        const auto* const entry = walk.iterator.Next();
        walk.current = entry == nullptr ? -1 : entry->GetKey().number;
        if (entry == nullptr) {
            EXPECT_TRUE(walk.stillToMeet.empty()) << "an entry was passed by";
            return false;
        }
        EXPECT_TRUE(walk.met.insert(walk.current).second) << "an entry was met twice";
        EXPECT_EQ(mModel.at(walk.current), entry->GetValue());
        walk.stillToMeet.erase(walk.current);
        return true;
    }

    static void CheckPlace(const DictWalk<K, long>& walk) {
        const auto* const entry = walk.iterator.GetCurrent();
        ASSERT_EQ(walk.current, entry == nullptr ? -1 : entry->GetKey().number);
    }

    void MoveWalks() {
        for (const auto& walk : mWalks) Step(*walk);
    }

    void FinishWalk(DictWalk<K, long>& walk) {
        while (Step(walk)) {
        }
    }

    void Compare(long keyLimit) {
        ASSERT_EQ(mDict.GetCount(), static_cast<long>(mModel.size()));
        ASSERT_LT(mDict.GetCount(), std::max(mDict.GetSlotCount() * 3 / 4, 1L));
        for (long number = 0; number < keyLimit; ++number) Find(number);
        std::set<long> walked;
        for (const auto& entry : mDict) ASSERT_TRUE(walked.insert(entry.GetKey().number).second);
        ASSERT_EQ(walked.size(), mModel.size());
        const GDict<K, long> copy(mDict);
        ASSERT_TRUE(copy == mDict);
    }

    void Clear() {
        for (const auto& walk : mWalks) FinishWalk(*walk);
        mWalks.clear();
        if (mRandom.Below(2) == 0) {
            mDict.Clear();
        } else {
            mDict = GDict<K, long>();
        }
        mModel.clear();
    }

    Random mRandom;
    GDict<K, long> mDict;
    std::unordered_map<long, long> mModel;
    std::vector<std::unique_ptr<DictWalk<K, long>>> mWalks;
    long mNextValue = 0;
};

struct NumberKey {
    long number;
    bool operator==(const NumberKey& other) const = default;
    std::uint32_t GetHash() const { return GDictHash(number); }
};

struct TextKey {
    explicit TextKey(long keyNumber) : number(keyNumber), text(keyNumber) {}
    long number;
    GBuffer text;
    bool operator==(const TextKey& other) const { return text == other.text; }
    std::uint32_t GetHash() const { return text.GetHash(); }
};

}  // namespace

TEST(ContainerModel, ATableAndItsIteratorsBehaveAsAList) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        TableModel(seed).Run(40000);
        if (HasFatalFailure()) return;
    }
}

TEST(ContainerModel, ADictionaryBehavesAsAMap) {
    DictModel<NumberKey>(1).Run(400000, 300);
    DictModel<NumberKey>(2).Run(200000, 5000);
    DictModel<TextKey>(3).Run(200000, 500);
}

TEST(ContainerModel, ADictionaryOfPoorHashesBehavesAsAMap) {
    DictModel<PoorKey>(4).Run(200000, 60);
    DictModel<PoorKey>(5).Run(100000, 8);
}
