#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include "bench/Comparison.h"
#include "framework/core/bytes/GBuffer.h"

// Buffers beside std::string, memchr, std::string_view and XXH3.

namespace {

// As fast as the peer; how fast a call is that finds its data in the cache differs between processors.
constexpr Limits cLevel = {1.0, 1.3};
constexpr Limits cAhead = {1.0, 1.0};

const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

GBuffer Borrowed(std::string_view text) {
    GBuffer buffer;
    buffer.SetFromStatic(Bytes(text), static_cast<long>(text.size()));
    return buffer;
}

std::string RandomText(std::size_t length) {
    std::mt19937 random(1);
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('a' + random() % 20);
    return text;
}

void Append(const char* what, std::string_view piece, long pieces) {
    const int times = static_cast<int>(20 + 20000 / pieces);
    Comparison::Run({.what = what, .size = pieces, .count = static_cast<double>(times * pieces)},
                    [&] {
                        for (int i = 0; i < times; ++i) {
                            GBuffer buffer;
                            for (long j = 0; j < pieces; ++j) {
                                if (piece.size() == 1)
                                    buffer += piece[0];
                                else
                                    buffer.AppendByteArray(Bytes(piece), static_cast<long>(piece.size()));
                            }
                            Comparison::Use(buffer.GetRawData());
                        }
                    },
                    {{"std::string", cLevel, [&] {
                          for (int i = 0; i < times; ++i) {
                              std::string buffer;
                              for (long j = 0; j < pieces; ++j) {
                                  if (piece.size() == 1)
                                      buffer += piece[0];
                                  else
                                      buffer.append(piece);
                              }
                              Comparison::Use(buffer.data());
                          }
                      }}});
}

void CopyBorrowed(long length) {
    constexpr int cTimes = 2000;
    const std::string text(static_cast<std::size_t>(length), 'a');
    const GBuffer original = Borrowed(text);
    Comparison::Run({.what = "copy of borrowed bytes", .size = length, .count = cTimes},
                    [&] {
                        for (int i = 0; i < cTimes; ++i) {
                            const GBuffer copy(original);
                            Comparison::Use(copy.GetRawData());
                        }
                    },
                    {{"std::string", cAhead, [&] {
                          for (int i = 0; i < cTimes; ++i) {
                              const std::string copy(text);
                              Comparison::Use(copy.data());
                          }
                      }}});
}

// Both do a search so many times.
template <class Ours, class Theirs>
void Search(const std::string& what, long length, Ours ours, const char* peer, const Limits& limits,
            Theirs theirs) {
    const int times = static_cast<int>(2000000 / (length + 100));
    Comparison::Run({.what = what, .size = length, .count = static_cast<double>(times)},
                    [&] {
                        for (int i = 0; i < times; ++i) Comparison::Use(ours());
                    },
                    {{peer, limits, [&] {
                          for (int i = 0; i < times; ++i) Comparison::Use(theirs());
                      }}});
}

// What is looked for stands at the end only.
void FindElements(long length) {
    const std::string text = RandomText(static_cast<std::size_t>(length) - 3) + "XYZ";
    const GBuffer buffer = Borrowed(text);
    Search(
        "find a byte", length, [&] { return buffer.FindFirstOccurrence('X', 0); }, "memchr", {1.1, 1.4},
        [&] { return std::memchr(text.data(), 'X', text.size()); });
    for (const std::string_view set : {"XY", "VWXYZ", "ABCDEFGHIJKLMNOPX"}) {
        Search(
            "find one of " + std::to_string(set.size()), length,
            [&] { return buffer.FindFirstOccurrence(Bytes(set), static_cast<long>(set.size()), 0); },
            "std::string_view", {1.0, 1.2}, [&] { return std::string_view(text).find_first_of(set); });
    }
}

// The first byte of the pattern stands there often, once before, or at the end only.
void FindPatterns(long length) {
    for (const std::string_view pattern : {"XYZ", "XY", "aXY", "aX", "AXY", "AX"}) {
        std::string text =
            RandomText(static_cast<std::size_t>(length) - pattern.size()) + std::string(pattern);
        text[text.size() / 4] = 'A';
        const GBuffer buffer = Borrowed(text), wanted = Borrowed(pattern);
        Search(
            "find the text " + std::string(pattern), length, [&] { return buffer.FindSubBuffer(wanted); },
            "std::string_view", {1.1, 1.3}, [&] { return std::string_view(text).find(pattern); });
    }
}

void Hash(long length) {
    const int times = static_cast<int>(4000000 / (length + 50));
    const std::string text = RandomText(static_cast<std::size_t>(length));
    const GBuffer buffer = Borrowed(text);
    const Limits limits = length < 32 ? Limits{1.8, 2.2} : length < 1024 ? Limits{1.8, 1.8} : cAhead;
    Comparison::Run({.what = "hash", .size = length, .count = static_cast<double>(times)},
                    [&] {
                        for (int i = 0; i < times; ++i) Comparison::Use(buffer.GetHash());
                    },
                    {{"XXH3, 64 bits", limits, [&] {
                          for (int i = 0; i < times; ++i)
                              Comparison::Use(XXH3_64bits(text.data(), text.size()));
                      }}});
}

}  // namespace

int main() {
    Append("append a byte", "x", 1000);
    Append("append 16 bytes", "0123456789abcdef", 100);
    Append("append 16 bytes", "0123456789abcdef", 10000);
    Append("append 100 bytes", std::string(100, 'x'), 100);
    for (const long length : {16, 1000, 100000}) CopyBorrowed(length);
    for (const long length : {16, 100, 1000, 100000}) FindElements(length);
    for (const long length : {16, 17, 31, 64, 100, 1000, 100000}) FindPatterns(length);
    for (const long length : {4, 8, 12, 16, 24, 31, 100, 1024, 16384, 1048576}) Hash(length);
}
