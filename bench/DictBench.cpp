#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/Comparison.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/containers/GTable.h"
#include "framework/core/text/GString.h"

// Dictionaries beside std::unordered_map with the same keys and the same hashes, which the map keeps in
// its nodes, and tables beside std::vector.

namespace {

// Look-ups are to be faster. Building is not, as a map need not walk: it is to cost the same.
constexpr Limits cLookUp = {1.0, 1.2};
constexpr Limits cBuilding = {1.0, 1.5};

template <class K>
struct HashOf {
    std::size_t operator()(const K& key) const { return GDictHash(key); }
};

// A dictionary and a map of the same keys, and the keys to look for.
template <class K>
struct Pair {
    Pair(const std::vector<K>& keys, const std::vector<K>& others) : hits(keys), misses(others) {
        for (const K& key : keys) dict.Insert(key, 1);
        for (const K& key : keys) map.emplace(key, 1);
        // In another order than they came in: the map's nodes lie side by side in that.
        std::shuffle(hits.begin(), hits.end(), std::mt19937(2));
    }
    GDict<K, long> dict;
    std::unordered_map<K, long, HashOf<K>> map;
    std::vector<K> hits, misses;
};

template <class K>
using Pairs = std::vector<std::unique_ptr<Pair<K>>>;

template <class K>
void MeasureLookUps(const std::string& what, const Pairs<K>& pairs, std::vector<K> Pair<K>::*wanted) {
    const std::size_t keys = (pairs[0].get()->*wanted).size();
    // Often enough for the clock to see it.
    const int walks = static_cast<int>(1 + 10000 / keys);
    const auto lookUpAll = [&](auto lookUp) {
        for (const auto& pair : pairs) {
            for (int i = 0; i < walks; ++i) {
                for (const K& key : pair.get()->*wanted) lookUp(*pair, key);
            }
        }
    };
    const auto find = [](const Pair<K>& pair, const K& key) { Comparison::Use(pair.dict.Find(key)); };
    const auto findInMap = [](const Pair<K>& pair, const K& key) { Comparison::Use(pair.map.find(key)); };
    Comparison::Run({.what = what,
                     .size = static_cast<long>(keys),
                     .count = static_cast<double>(walks) * static_cast<double>(keys * pairs.size())},
                    [&] { lookUpAll(find); },
                    {{"std::unordered_map", cLookUp, [&] { lookUpAll(findInMap); }}});
}

template <class K>
void MeasureBuilding(const std::string& what, const std::vector<K>& keys) {
    const auto times = 1 + 1000 / keys.size();
    const auto repeatedly = [&](auto build) {
        for (std::size_t i = 0; i < times; ++i) build();
    };
    const auto build = [&] {
        GDict<K, long> built;
        for (const K& key : keys) built.Insert(key, 1);
        Comparison::Use(built.GetCount());
    };
    const auto buildMap = [&] {
        std::unordered_map<K, long, HashOf<K>> built;
        for (const K& key : keys) built.emplace(key, 1);
        Comparison::Use(built.size());
    };
    Comparison::Run({.what = what,
                     .size = static_cast<long>(keys.size()),
                     .count = static_cast<double>(times * keys.size())},
                    [&] { repeatedly(build); },
                    {{"std::unordered_map", cBuilding, [&] { repeatedly(buildMap); }}});
}

// `make(count)` makes so many keys, other ones each time.
template <class Maker>
void Compare(const std::string& kind, std::size_t count, Maker make) {
    using K = typename decltype(make(count))::value_type;
    // Where the few keys of a small dictionary lie is luck: several of them even it out.
    Pairs<K> pairs;
    for (std::size_t i = 0; i < 1 + 100 / count; ++i)
        pairs.push_back(std::make_unique<Pair<K>>(make(count), make(count)));
    MeasureLookUps(kind + ", hit", pairs, &Pair<K>::hits);
    MeasureLookUps(kind + ", miss", pairs, &Pair<K>::misses);
    MeasureBuilding(kind + ", build", pairs[0]->hits);
}

std::vector<long> RandomNumbers(std::size_t count, std::mt19937& random) {
    std::vector<long> numbers;
    for (std::size_t i = 0; i < count; ++i) numbers.push_back(static_cast<long>(random() & 0x7FFFFFFF));
    return numbers;
}

template <class Text>
std::vector<Text> RandomTexts(std::size_t count, unsigned longest, std::mt19937& random) {
    constexpr unsigned cShortest = 6;
    std::vector<Text> texts(count);
    for (Text& text : texts) {
        GBuffer bytes;
        for (auto j = cShortest + random() % (longest - cShortest + 1); j > 0; --j)
            bytes += static_cast<char>('!' + random() % 90);
        text = Text(bytes.GetPtr());
    }
    return texts;
}

// "Item 00001" and so on in UTF-16: the hash tells few of them apart.
std::vector<GBuffer> NumberedTexts(int first, std::size_t count) {
    std::vector<GBuffer> texts;
    for (std::size_t i = 0; i < count; ++i) {
        char narrow[16];
        std::snprintf(narrow, sizeof narrow, "Item %05d", first + static_cast<int>(i));
        GBuffer text;
        for (const char* c = narrow; *c != 0; ++c) text += static_cast<unsigned short>(*c);
        texts.push_back(text);
    }
    return texts;
}

// All entries go while an iterator walks that has lived through a rehash.
void RemoveUnderAnIterator(std::mt19937& random) {
    constexpr int cCount = 100000;
    const std::vector<long> numbers = RandomNumbers(cCount, random);
    Comparison::Run({.what = "insert, remove under an iterator", .size = cCount, .count = cCount},
                    [&] {
                        GDict<long, long> dict;
                        const GDictIterator<long, long> iterator(dict);
                        for (const long number : numbers) dict.Insert(number, 1);
                        for (const long number : numbers) dict.Remove(number);
                        Comparison::Use(dict.GetCount());
                    },
                    {{"std::unordered_map", {1.0, 1.0}, [&] {
                          std::unordered_map<long, long, HashOf<long>> map;
                          for (const long number : numbers) map.emplace(number, 1);
                          for (const long number : numbers) map.erase(number);
                          Comparison::Use(map.size());
                      }}});
}

template <class T, class Make>
void Append(const char* what, const Limits& limits, Make make) {
    constexpr int cCount = 10000;
    Comparison::Run({.what = what, .size = cCount, .count = cCount},
                    [&] {
                        GTable<T> table;
                        for (long i = 0; i < cCount; ++i) table.Append(make(i));
                        Comparison::Use(table.begin());
                    },
                    {{"std::vector", limits, [&] {
                          std::vector<T> table;
                          for (long i = 0; i < cCount; ++i) table.push_back(make(i));
                          Comparison::Use(table.data());
                      }}});
}

}  // namespace

int main() {
    std::mt19937 random(1);
    for (const std::size_t count : {10, 100, 1000, 10000, 100000}) {
        Compare("numbers", count, [&](std::size_t n) { return RandomNumbers(n, random); });
        Compare("texts", count, [&](std::size_t n) { return RandomTexts<GBuffer>(n, 25, random); });
    }
    for (const std::size_t count : {10, 1000, 10000}) {
        Compare("long texts", count, [&](std::size_t n) { return RandomTexts<GBuffer>(n, 200, random); });
        Compare("strings", count, [&](std::size_t n) { return RandomTexts<GString>(n, 25, random); });
    }
    int first = 0;
    for (const std::size_t count : {1000, 10000}) {
        Compare("numbered texts", count, [&](std::size_t n) {
            first = 50000 - first;
            return NumberedTexts(first, n);
        });
    }
    RemoveUnderAnIterator(random);
    // A table also looks whether iterators walk it.
    Append<long>("append a number to a table", {1.0, 2.0}, [](long i) { return i; });
    const GBuffer text("a text of some length");
    Append<GBuffer>("append a buffer to a table", {1.0, 1.3}, [&](long) -> const GBuffer& { return text; });
}
