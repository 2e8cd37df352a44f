#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/Comparison.h"
#include "framework/core/GBuffer.h"
#include "framework/core/GDict.h"
#include "framework/core/GTable.h"

// Dictionaries beside std::unordered_map with the same keys and the same hashes, and tables beside
// std::vector.

namespace {

template <class K>
struct HashOf {
    std::size_t operator()(const K& key) const { return GDictHash(key); }
};

template <class K>
void LookUps(const std::string& what, const std::vector<K>& keys, const std::vector<K>& others) {
    GDict<K, long> dict;
    std::unordered_map<K, long, HashOf<K>> map;
    for (const K& key : keys) dict.Insert(key, 1), map.emplace(key, 1);
    // Often enough for the clock to see it.
    const int walks = static_cast<int>(1 + 10000 / keys.size());
    const auto measure = [&](const char* kind, const std::vector<K>& wanted) {
        Comparison::Print(
            what + ", " + std::to_string(keys.size()) + " keys, " + kind,
            walks * static_cast<int>(wanted.size()), "std::unordered_map",
            [&] {
                for (int i = 0; i < walks; ++i) {
                    for (const K& key : wanted) Comparison::Use(dict.Find(key));
                }
            },
            [&] {
                for (int i = 0; i < walks; ++i) {
                    for (const K& key : wanted) Comparison::Use(map.find(key));
                }
            });
    };
    // In another order than they came in: the map's nodes lie side by side in that.
    std::vector<K> shuffled(keys);
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(2));
    measure("hit", shuffled);
    measure("miss", others);
    Comparison::Print(
        what + ", " + std::to_string(keys.size()) + " keys, build", static_cast<int>(keys.size()),
        "std::unordered_map",
        [&] {
            GDict<K, long> built;
            for (const K& key : keys) built.Insert(key, 1);
            Comparison::Use(built.GetCount());
        },
        [&] {
            std::unordered_map<K, long, HashOf<K>> built;
            for (const K& key : keys) built.emplace(key, 1);
            Comparison::Use(built.size());
        });
}

std::vector<long> RandomNumbers(std::size_t count, std::mt19937& random) {
    std::vector<long> numbers;
    for (std::size_t i = 0; i < count; ++i) numbers.push_back(static_cast<long>(random() & 0x7FFFFFFF));
    return numbers;
}

std::vector<GBuffer> RandomTexts(std::size_t count, std::mt19937& random) {
    std::vector<GBuffer> texts;
    for (std::size_t i = 0; i < count; ++i) {
        GBuffer text;
        for (auto j = 6 + random() % 20; j > 0; --j) text += static_cast<char>('!' + random() % 90);
        texts.push_back(text);
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

void AppendAndInsert() {
    constexpr int cCount = 10000;
    Comparison::Print(
        "append a number to a table", cCount, "std::vector",
        [] {
            GTable<long> table;
            for (long i = 0; i < cCount; ++i) table.Append(i);
            Comparison::Use(table.begin());
        },
        [] {
            std::vector<long> table;
            for (long i = 0; i < cCount; ++i) table.push_back(i);
            Comparison::Use(table.data());
        });
    const GBuffer text("a text of some length");
    Comparison::Print(
        "append a buffer to a table", cCount, "std::vector",
        [&] {
            GTable<GBuffer> table;
            for (long i = 0; i < cCount; ++i) table.Append(text);
            Comparison::Use(table.begin());
        },
        [&] {
            std::vector<GBuffer> table;
            for (long i = 0; i < cCount; ++i) table.push_back(text);
            Comparison::Use(table.data());
        });
}

}  // namespace

int main() {
    std::mt19937 random(1);
    for (const std::size_t count : {10, 1000, 100000}) {
        LookUps("numbers", RandomNumbers(count, random), RandomNumbers(count, random));
        LookUps("texts", RandomTexts(count, random), RandomTexts(count, random));
    }
    LookUps("numbered texts", NumberedTexts(0, 1000), NumberedTexts(50000, 1000));
    LookUps("numbered texts", NumberedTexts(0, 10000), NumberedTexts(50000, 10000));
    AppendAndInsert();
}
