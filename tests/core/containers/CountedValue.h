#pragma once

#include <cstdint>
#include <stdexcept>

/// A value that counts its living objects, and whose copying fails when told to. It holds a block of
/// its own, so that a sanitizer sees what is destroyed twice or not at all.
class CountedValue {
public:
    explicit CountedValue(long number = 0) : mNumber(number), mBlock(new char) { ++sAlive; }
    CountedValue(const CountedValue& other) : mNumber(other.mNumber), mBlock(NewBlock()) { ++sAlive; }
    CountedValue& operator=(const CountedValue& other) {
        delete NewBlock();
        mNumber = other.mNumber;
        return *this;
    }
    ~CountedValue() {
        delete mBlock;
        --sAlive;
    }
    bool operator==(const CountedValue& other) const { return mNumber == other.mNumber; }
    explicit operator long() const { return mNumber; }
    /// So poor that homes are shared and probing wraps around.
    std::uint32_t GetHash() const { return static_cast<std::uint32_t>(mNumber % 11 * 3); }

    static inline long sAlive = 0;
    static inline long sThrowAfterCopies = -1;  // negative: never

    long mNumber;

private:
    static char* NewBlock() {
        if (sThrowAfterCopies == 0) throw std::runtime_error("this copy fails");
        if (sThrowAfterCopies > 0) --sThrowAfterCopies;
        return new char;
    }

    char* mBlock;
};
