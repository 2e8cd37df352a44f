#include "framework/core/containers/GDict.h"

#include "framework/core/containers/GDictListReader.h"
#include "framework/core/text/GDictBufferReader.h"
#include "tests/core/ExpectValue.h"
#include "tests/core/TextForTests.h"
#include "tests/core/containers/CountedValue.h"

namespace {

// A number that is its own hash, so that a test can tell the slot.
struct Key {
    Key(long keyNumber) : number(keyNumber) {}
    long number;
    bool operator==(const Key& other) const = default;
    std::uint32_t GetHash() const { return static_cast<std::uint32_t>(number); }
};

using Numbers = std::vector<long>;
using Dict = GDict<Key, long>;
using DictIterator = GDictIterator<Key, long>;

Dict DictOf(const Numbers& keys) {
    Dict dict;
    for (const long key : keys) dict.Insert(key, 10 * key);
    return dict;
}

Numbers KeysOf(const Dict& dict) {
    Numbers keys;
    for (const auto& entry : dict) keys.push_back(entry.GetKey().number);
    return keys;
}

Numbers Rest(DictIterator& iterator) {
    Numbers keys;
    while (const auto* entry = iterator.Next()) keys.push_back(entry->GetKey().number);
    return keys;
}

// How far the entries lie from their home slots on average.
template <class K>
double GetMeanDistance(const std::vector<K>& keys) {
    GDict<K, char> dict;
    for (const K key : keys) dict.Insert(key, 0);
    double sum = 0;
    GDictIterator<K, char> iterator(dict);
    while (const auto* entry = iterator.Next()) {
        const auto home =
            static_cast<long>(GDictHash(entry->GetKey()) % static_cast<std::uint32_t>(dict.GetSlotCount()));
        const long distance = iterator.GetPosition() - home;
        sum += static_cast<double>(distance < 0 ? distance + dict.GetSlotCount() : distance);
    }
    return sum / static_cast<double>(dict.GetCount());
}

}  // namespace

TEST(GDictUtil, GetAllocation) {
    ForEachRow<2>({"-5 -> 7", "0 -> 7", "1 -> 7", "7 -> 7", "8 -> 13", "14 -> 23", "90 -> 127",
                   "43853 -> 43853", "43854 -> 87701", "5613217 -> 5613217", "5613218 -> 11226434",
                   "6000000 -> 11226434", "11226435 -> 22452868", "1436983552 -> 1436983552"},
                  [](auto count, auto slots) {
                      EXPECT_EQ(std::to_string(GDictUtil::GetAllocation(std::atol(count.data()))), slots);
                  });
    EXPECT_THROW(GDictUtil::GetAllocation(1436983553), std::bad_alloc);
    EXPECT_THROW(GDictUtil::GetAllocation(0x7FFFFFFF), std::bad_alloc);
    EXPECT_THROW(GDictUtil::GetAllocation(std::numeric_limits<long>::max()), std::bad_alloc);
}

TEST(GDictHash, OfNumbersIsTheSameInEveryWidth) {
    EXPECT_EQ(GDictHash(5LL), GDictHash(static_cast<unsigned char>(5)));
    EXPECT_EQ(GDictHash(-1), GDictHash(-1L));
    EXPECT_EQ(GDictHash(-1), GDictHash(-1LL));
    EXPECT_NE(GDictHash(0x100000000LL), GDictHash(0)) << "the upper half counts";
    EXPECT_EQ(GDictHash(GBuffer("A")), 0x51u);
}

TEST(GDictHash, SpreadsKeysThatFollowARule) {
    constexpr long long cCount = 10000;
    const std::tuple<const char*, long long, long long, long long> rows[] = {
        // a row of numbers from one start and one from another, at the same distance
        {"two ranges that would meet", 0, 10000000, 1}, {"far ranges", 0, 1LL << 40, 1},
        {"on both sides of zero", 0, -cCount, 1},       {"every thousandth", 0, 7, 1000},
        {"every fourth slot", 1, 2, 4 * 27407},         {"the upper halves", 0, 1, 1LL << 32}};
    for (const auto& [what, first, second, distance] : rows) {
        SCOPED_TRACE(what);
        std::vector<long long> numbers;
        std::vector<const char*> pointers;
        for (long long i = 0; i < 2 * cCount; ++i) {
            numbers.push_back((i % 2 == 0 ? first : second) + i / 2 * distance);
            pointers.push_back(
                reinterpret_cast<const char*>(static_cast<std::uintptr_t>(8 * numbers.back())));
        }
        // Random keys would lie between 1 and 2 slots away.
        EXPECT_LT(GetMeanDistance(numbers), 3);
        EXPECT_LT(GetMeanDistance(pointers), 3);
    }
}

TEST(GDict, RehashesAtThreeQuarters) {
    Dict dict;
    EXPECT_EQ(dict.GetSlotCount(), 7);
    const long slots[] = {7, 7, 7, 7, 23, 23, 23, 23, 23, 23, 23, 23, 23, 23, 23, 23, 67};
    for (long i = 0; i < 17; ++i) {
        dict.Insert(i * 1000, i);
        EXPECT_EQ(dict.GetSlotCount(), slots[i]) << "after " << i + 1;
        EXPECT_EQ(dict.GetCount(), i + 1);
    }
    EXPECT_EQ((Dict(14).GetSlotCount()), 23);
    EXPECT_EQ((Dict(-1).GetSlotCount()), 7);
}

TEST(GDict, EntriesLieInTheFirstFreeSlotFromTheirHome) {
    // 7 slots.
    EXPECT_EQ(KeysOf(DictOf({3, 1, 2})), (Numbers{1, 2, 3}));
    EXPECT_EQ(KeysOf(DictOf({6, 13, 20})), (Numbers{13, 20, 6})) << "around the end";
    EXPECT_EQ(KeysOf(DictOf({8, 1, 2})), (Numbers{8, 1, 2})) << "pushed from its home by another's";
    Dict dict = DictOf({1, 8, 15});
    dict.Remove(1);
    EXPECT_TRUE(dict.Has(15)) << "a free slot does not end the search";
    dict.Insert(22, 0);
    EXPECT_EQ(KeysOf(dict), (Numbers{22, 8, 15})) << "and is taken by the next";
}

TEST(GDict, TheHomeIsTheRemainderOfTheHash) {
    for (const long slots : {7L, 13L, 937L, 43853L}) {
        for (const unsigned hash :
             {0u, 6u, 7u, 43852u, 43853u, 0x7FFFFFFFu, 0x80000000u, 0xDEADBEEFu, 0xFFFFFFFFu}) {
            Dict dict(slots);
            dict.Insert(static_cast<long>(hash), 0);
            DictIterator iterator(dict);
            iterator.Next();
            EXPECT_EQ(iterator.GetPosition(), static_cast<long>(hash % static_cast<unsigned>(slots))) << hash;
        }
    }
}

TEST(GDict, IsAValueThatKeepsItsSlotsAndEqualityIgnoresThem) {
    Dict dict = DictOf({1, 8, 15}), wide(14);
    dict.Remove(8);
    wide.Insert(1, 1);
    ExpectValue(dict, wide);
    const Dict copy(dict);
    EXPECT_EQ(KeysOf(copy), (Numbers{1, 15}));
    EXPECT_TRUE(copy == DictOf({15, 1})) << "these lie the other way round";
    EXPECT_FALSE(copy == DictOf({1}) || copy == DictOf({1, 2}));
    dict.Set(15, 0);
    EXPECT_FALSE(copy == dict);
    const Dict moved(std::move(wide));
    EXPECT_EQ(moved.GetSlotCount(), 23);
    EXPECT_EQ(wide.GetSlotCount(), 7);
    wide = copy;
    EXPECT_EQ(KeysOf(wide), (Numbers{1, 15}));
}

TEST(GDict, ItsOwnKeysAndValuesMayBePassedIn) {
    GDict<GBuffer, GBuffer> dict;
    for (const char* key : {"a", "b", "c", "d"}) dict.Insert(key, key);
    dict.Insert("e", *dict.Find("a"));  // the fifth: the slots are moved
    EXPECT_EQ(*dict.Find("e"), "a");
    dict.Set(dict.begin()->GetKey(), dict.begin()->GetKey());
    const GBuffer first = dict.begin()->GetKey();
    EXPECT_TRUE(dict.Remove(dict.begin()->GetKey()));
    EXPECT_FALSE(dict.Has(first));
    EXPECT_EQ(dict.GetCount(), 4);
}

TEST(GDict, EachKeyAndValueIsDestroyedOnceAndACopyThatThrowsChangesNothing) {
    using Dict = GDict<CountedValue, CountedValue>;
    {
        Dict dict;
        for (int i = 0; i < 30; ++i) dict.Insert(CountedValue(i), CountedValue(i));
        dict.Insert(CountedValue(7), CountedValue(8));
        EXPECT_EQ(CountedValue::sAlive, 60);
        for (int i = 0; i < 10; ++i) dict.Remove(CountedValue(i));
        Dict copy(dict);
        EXPECT_EQ(CountedValue::sAlive, 80);
        dict.Clear();
        dict = std::move(copy);
        EXPECT_EQ(CountedValue::sAlive, 40);
        const CountedValue key(99);
        for (const long copies : {0L, 1L, 7L}) {  // the key's, then the value's; one of many
            CountedValue::sThrowAfterCopies = copies;
            EXPECT_THROW(copies < 2 ? dict.Insert(key, key) : Dict(dict).IsEmpty(), std::runtime_error);
            CountedValue::sThrowAfterCopies = -1;
            EXPECT_EQ(CountedValue::sAlive, 41);
            EXPECT_TRUE(dict.GetCount() == 20 && !dict.Has(key));
        }
        EXPECT_TRUE(dict.Insert(key, key));
    }
    EXPECT_EQ(CountedValue::sAlive, 0);
}

TEST(GDictIterator, WalksInSlotOrder) {
    Dict dict = DictOf({3, 1, 8});
    DictIterator iterator(dict);
    EXPECT_EQ(iterator.GetPosition(), -1);
    iterator.Next()->GetValue() = 5;
    EXPECT_EQ(iterator.GetPosition(), 1);
    EXPECT_EQ(Rest(iterator), (Numbers{8, 3}));
    EXPECT_EQ(iterator.GetPosition(), 7);
    GConstDictIterator<Key, long> constant(dict);
    EXPECT_EQ(constant.Next()->GetValue(), 5);
    dict.Remove(1);
    EXPECT_EQ(constant.GetCurrent(), nullptr);
    EXPECT_EQ(constant.Next()->GetKey().number, 8);
}

TEST(GDictIterator, GoesAlongWithASwapAndOutlivesItsDictionary) {
    auto dict = std::make_unique<Dict>(DictOf({4, 5}));
    DictIterator iterator(*dict);
    EXPECT_EQ(Rest(iterator), (Numbers{4, 5}));
    iterator.Reset();
    iterator.Next();
    const DictIterator copy(iterator);
    Dict other = DictOf({6});
    dict->Swap(other);
    EXPECT_EQ(iterator.GetCurrent()->GetKey().number, 4);
    EXPECT_EQ(Rest(iterator), (Numbers{5}));
    dict->Swap(other);
    dict.reset();
    EXPECT_FALSE(iterator.IsValid());
    EXPECT_EQ(iterator.GetPosition(), -1);
    EXPECT_EQ(iterator.Next(), nullptr);
    EXPECT_EQ(copy.GetCurrent(), nullptr);
}

TEST(GDictReaders, ReadPairsFromABuffer) {
    GDict<GBuffer, GString> dict;
    const auto reads = [&](const char* text) {
        return GDictBufferReader<GBuffer, GString>(text).ReadInto(dict);
    };
    dict.Set("replaced", GString("2"));
    EXPECT_TRUE(reads("#|name|Zo\xC3\xAB|replaced|a#|b") && reads(""));
    EXPECT_FALSE(reads("#|name|x|key")) << "a key without a value";
    EXPECT_EQ(Plain(*dict.Find("name")) + Plain(*dict.Find("replaced")), u"Zo\u00EBa|b");
    EXPECT_EQ(dict.GetCount(), 2);
    GDict<GString, GString> texts;
    EXPECT_TRUE((GDictBufferReader<GString, GString>("#|a|b").ReadInto(texts)));
    EXPECT_TRUE(texts.Has(GString("a")));
}

TEST(GDictReaders, ReadPairsFromAList) {
    const GTable<GPair<GBuffer, GBuffer>> pairs = {{"a", "1"}, {"b", "2"}, {"a", "3"}};
    GDict<GBuffer, GBuffer> dict;
    GDictListReader<GBuffer, GBuffer>(pairs).ReadInto(dict);
    EXPECT_EQ(dict.GetCount(), 2);
    EXPECT_EQ(*dict.Find("a"), "3");
    const std::vector<GPair<const char*, long>> list = {{"x", 1}};
    GDict<GBuffer, long> numbers;
    GDictListReader<GBuffer, long, std::vector<GPair<const char*, long>>>(list).ReadInto(numbers);
    EXPECT_EQ(*numbers.Find("x"), 1);
}
