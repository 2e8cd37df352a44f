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
    Comparison::Print(
        what, times * static_cast<int>(pieces), "std::string",
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
        [&] {
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
        });
}

void CopyBorrowed(std::size_t length) {
    constexpr int cTimes = 2000;
    const std::string text(length, 'a');
    const GBuffer original = Borrowed(text);
    Comparison::Print(
        "copy of " + std::to_string(length) + " borrowed bytes", cTimes, "std::string",
        [&] {
            for (int i = 0; i < cTimes; ++i) {
                const GBuffer copy(original);
                Comparison::Use(copy.GetRawData());
            }
        },
        [&] {
            for (int i = 0; i < cTimes; ++i) {
                const std::string copy(text);
                Comparison::Use(copy.data());
            }
        });
}

// The element looked for stands at the end only.
void Find(std::size_t length) {
    const int times = static_cast<int>(2000000 / (length + 100));
    const std::string text = RandomText(length) + "XYZ";
    const GBuffer buffer = Borrowed(text);
    const std::string size = std::to_string(length);
    Comparison::Print(
        "find a byte in " + size, times, "memchr",
        [&] {
            for (int i = 0; i < times; ++i) Comparison::Use(buffer.FindFirstOccurrence('X', 0));
        },
        [&] {
            for (int i = 0; i < times; ++i) Comparison::Use(std::memchr(text.data(), 'X', text.size()));
        });
    for (const std::string_view set : {"XY", "VWXYZ", "ABCDEFGHIJKLMNOPX"}) {
        Comparison::Print(
            "find one of " + std::to_string(set.size()) + " in " + size, times, "string_view",
            [&] {
                for (int i = 0; i < times; ++i) {
                    Comparison::Use(buffer.FindFirstOccurrence(Bytes(set), static_cast<long>(set.size()), 0));
                }
            },
            [&] {
                for (int i = 0; i < times; ++i) Comparison::Use(std::string_view(text).find_first_of(set));
            });
    }
    for (const std::string_view pattern : {"XYZ", "aX"}) {
        const std::string haystack = RandomText(length) + std::string(pattern);
        const GBuffer hay = Borrowed(haystack), needle = Borrowed(pattern);
        Comparison::Print(
            "find \"" + std::string(pattern) + "\" in " + size, times, "string_view",
            [&] {
                for (int i = 0; i < times; ++i) Comparison::Use(hay.FindSubBuffer(needle));
            },
            [&] {
                for (int i = 0; i < times; ++i) Comparison::Use(std::string_view(haystack).find(pattern));
            });
    }
}

void Hash(std::size_t length) {
    const int times = static_cast<int>(4000000 / (length + 50));
    const std::string text = RandomText(length);
    const GBuffer buffer = Borrowed(text);
    Comparison::Print(
        "hash of " + std::to_string(length), times, "XXH3 64 bits",
        [&] {
            for (int i = 0; i < times; ++i) Comparison::Use(buffer.GetHash());
        },
        [&] {
            for (int i = 0; i < times; ++i) Comparison::Use(XXH3_64bits(text.data(), text.size()));
        });
}

}  // namespace

int main() {
    Append("append a byte, 1000 times", "x", 1000);
    Append("append 16 bytes, 100 times", "0123456789abcdef", 100);
    Append("append 16 bytes, 10000 times", "0123456789abcdef", 10000);
    Append("append 100 bytes, 100 times", std::string(100, 'x'), 100);
    for (const std::size_t length : {16, 1000, 100000}) CopyBorrowed(length);
    for (const std::size_t length : {16, 100, 1000, 100000}) Find(length);
    for (const std::size_t length : {8, 16, 31, 100, 1024, 16384, 1048576}) Hash(length);
}
