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

#include "framework/core/GBuffer.h"
#include "framework/core/GDict.h"
#include "framework/core/GTable.h"
#include "tests/core/TextForTests.h"

// Buffers, tables and dictionaries beside the standard library's, under random operations.

namespace {

class Random {
public:
    explicit Random(unsigned seed) : mEngine(seed) {}
    /// Below `limit`, which is not 0.
    long Below(long limit) { return static_cast<long>(mEngine() % static_cast<unsigned long>(limit)); }
    std::string Text(long maxLength) {
        std::string text;
        for (long i = Below(maxLength + 1); i > 0; --i) text += "ab\0"[Below(3)];
        return text;
    }

private:
    std::mt19937 mEngine;
};

// --- Buffers -----------------------------------------------------------------------------------

void ChangeBuffer(Random& random, GBuffer& buffer, std::string& model) {
    const auto length = static_cast<long>(model.size());
    const std::string text = random.Text(20);
    const long start = random.Below(length + 1);
    const long count = random.Below(length - start + 1);
    const auto at = static_cast<std::size_t>(start), many = static_cast<std::size_t>(count);
    switch (random.Below(12)) {
        case 0:
            buffer += BufferOf(text), model += text;
            break;
        case 1:
            buffer += 'x', model += 'x';
            break;
        case 2:
            buffer += static_cast<unsigned short>(0x7978), model += "xy";
            break;
        case 3:
            buffer.Replace(start, count, BufferOf(text)), model.replace(at, many, text);
            break;
        case 4:
            buffer.Remove(start, count), model.erase(at, many);
            break;
        case 5:
            buffer.AppendByteArray(buffer.GetRawData() + start, count), model += model.substr(at, many);
            break;
        case 6:
            buffer.ReplaceByteArray(0, 1, buffer.GetRawData() + start, count);
            model.replace(0, 1, std::string(model.substr(at, many)));
            break;
        case 7:
            buffer.SetLength(start), model.resize(at);
            break;
        case 8:
            buffer.FindAndReplace(start, 'a', 'c'),
                std::replace(model.begin() + start, model.end(), 'a', 'c');
            break;
        case 9:
            buffer.GetSubBuffer(start, count, buffer), model = model.substr(at, many);
            break;
        case 10:
            buffer = BufferOf(text), model = text;
            break;
        default:
            buffer.GetPtr();
            break;
    }
}

// --- Tables ------------------------------------------------------------------------------------

// The model of a robust iterator: a place in a list of elements that know whether they were there all
// the time. A std::list's iterators stay where they are, as ours should.
struct ModelElement {
    std::string text;
    long number;
};

class TableModel {
public:
    explicit TableModel(unsigned seed) : mRandom(seed) {}

    void Run(long operations) {
        for (long i = 0; i < operations; ++i) {
            ChangeOnce();
            if (i % 16 == 0) Compare();
            if (i % 1000 == 0) Shrink();
        }
    }

private:
    // An iterator and the element on which it should stand.
    struct Walker {
        GTableIterator<GBuffer> iterator;
        std::list<ModelElement>::iterator place;
    };

    std::list<ModelElement>::iterator At(long position) { return std::next(mModel.begin(), position); }

    void ChangeOnce() {
        const auto count = static_cast<long>(mModel.size());
        switch (mRandom.Below(6)) {
            case 0:
            case 1:
                InsertAt(mRandom.Below(count + 1));
                break;
            case 2:
                if (count > 0) RemoveAt(mRandom.Below(count), 1 + mRandom.Below(3));
                break;
            case 3:
                if (count > 0) StartWalker(mRandom.Below(count));
                break;
            case 4:
                MoveWalkers();
                break;
            default:
                if (mWalkers.size() > 6) mWalkers.erase(mWalkers.begin() + mRandom.Below(6));
                break;
        }
    }

    void InsertAt(long position) {
        const std::string text = std::to_string(mNextNumber);
        mTable.Insert(position, BufferOf(text));
        mModel.insert(At(position), {text, mNextNumber++});
    }

    void RemoveAt(long position, long removed) {
        removed = std::min(removed, static_cast<long>(mModel.size()) - position);
        mTable.Remove(position, removed);
        for (; removed > 0; --removed) {
            const auto gone = At(position);
            // A walker whose element goes is checked for what it meets next, and then ends.
            std::erase_if(mWalkers, [&](const auto& walker) {
                return walker->place == gone && walker->iterator.GetCurrent() == nullptr;
            });
            mModel.erase(gone);
        }
    }

    void StartWalker(long position) {
        mWalkers.push_back(std::make_unique<Walker>(Walker{GTableIterator<GBuffer>(mTable), At(position)}));
        mWalkers.back()->iterator.SetPosition(position);
    }

    void MoveWalkers() {
        for (auto& walker : mWalkers) {
            const bool forward = mRandom.Below(2) == 0;
            if (forward ? std::next(walker->place) == mModel.end() : walker->place == mModel.begin())
                continue;
            const GBuffer* const met = forward ? walker->iterator.Next() : walker->iterator.Previous();
            forward ? ++walker->place : --walker->place;
            ASSERT_NE(met, nullptr);
            ASSERT_EQ(BytesOf(*met), walker->place->text);
        }
    }

    void Compare() {
        ASSERT_EQ(mTable.GetCount(), static_cast<long>(mModel.size()));
        long position = 0;
        for (const ModelElement& element : mModel) ASSERT_EQ(BytesOf(mTable[position++]), element.text);
        for (const auto& walker : mWalkers) {
            ASSERT_NE(walker->iterator.GetCurrent(), nullptr);
            ASSERT_EQ(BytesOf(*walker->iterator.GetCurrent()), walker->place->text);
            ASSERT_EQ(walker->iterator.GetPosition(), std::distance(mModel.begin(), walker->place));
        }
    }

    void Shrink() {
        const auto count = static_cast<long>(mModel.size());
        if (count > 60) RemoveAt(0, count - 20);
    }

    Random mRandom;
    GTable<GBuffer> mTable;
    std::list<ModelElement> mModel;
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
};

template <class K>
class DictModel {
public:
    explicit DictModel(unsigned seed) : mRandom(seed) {}

    void Run(long operations, long keyLimit) {
        for (long i = 0; i < operations; ++i) {
            ChangeOnce(mRandom.Below(keyLimit));
            if (i % 1000 == 0) Compare(keyLimit);
            if (i % 50000 == 49999) Clear();
        }
        for (const auto& walk : mWalks) FinishWalk(*walk);
    }

private:
    void ChangeOnce(long number) {
        switch (mRandom.Below(8)) {
            case 0:
            case 1:
            case 2:
                Insert(number);
                break;
            case 3:
            case 4:
                Remove(number);
                break;
            case 5:
                if (mRandom.Below(1 + static_cast<long>(mModel.size()) / 4) == 0) StartWalk();
                break;
            case 6:
                MoveWalks();
                break;
            default:
                Find(number);
                break;
        }
    }

    void Insert(long number) {
        const bool isNew = mModel.insert_or_assign(number, mNextValue).second;
        ASSERT_EQ(mDict.Insert(K{number}, mNextValue++), isNew);
    }

    void Remove(long number) {
        ASSERT_EQ(mDict.Remove(K{number}), mModel.erase(number) == 1);
        for (const auto& walk : mWalks) {
            walk->stillToMeet.erase(number);
            walk->met.erase(number);
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

    static bool Step(DictWalk<K, long>& walk) {
        const auto* const entry = walk.iterator.Next();
        if (entry == nullptr) {
            EXPECT_TRUE(walk.stillToMeet.empty()) << "an entry was passed by";
            return false;
        }
        const long number = entry->GetKey().number;
        EXPECT_TRUE(walk.met.insert(number).second) << "an entry was met twice";
        walk.stillToMeet.erase(number);
        return true;
    }

    void MoveWalks() {
        for (const auto& walk : mWalks) Step(*walk);
    }

    static void FinishWalk(DictWalk<K, long>& walk) {
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

TEST(ContainerModel, ABufferBehavesAsAString) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Random random(seed);
        GBuffer buffer;
        std::string model;
        for (int i = 0; i < 5000; ++i) {
            ChangeBuffer(random, buffer, model);
            if (model.size() > 3000) buffer.SetLength(10), model.resize(10);
            ASSERT_EQ(BytesOf(buffer), model) << "seed " << seed << ", step " << i;
            ASSERT_TRUE(buffer.GetLength() == 0 || buffer.GetArraySize() >= buffer.GetLength() + 2);
        }
    }
}

TEST(ContainerModel, ATableAndItsIteratorsBehaveAsAList) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        TableModel(seed).Run(20000);
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
