#include "framework/core/bytes/GBuffer.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "framework/core/bytes/GByteHash.h"
#include "framework/core/bytes/GCharCode.h"
#include "framework/core/memory/GAllocator.h"

// Constant-initialised and with nothing to free: usable before and after all other statics.
constinit const GBuffer GBuffer::cEmptyBuffer;

static_assert(sizeof(GBuffer) == 16, "a pointer, a length, and the word of size and ownership");

namespace {

constexpr std::int32_t cSpareBytes = 2;
constexpr std::int32_t cMaxArraySize = GBuffer::cMaxLength + cSpareBytes;

// What GetPtr() shows of a buffer without a block; as 8-bit and as UTF-16 text.
alignas(2) constexpr char cEmptyText[cSpareBytes] = {};

std::int32_t SumOfLengths(long a, long b) {
    if (a > GBuffer::cMaxLength - b) GAllocator::ThrowOutOfMemory();
    return static_cast<std::int32_t>(a + b);
}

// A third more than needed, so that a run of appends costs linear time; at least 8.
std::int32_t WithSpareThird(std::int32_t size) {
    const std::int64_t grown = static_cast<std::int64_t>(size) + size / 3;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(grown, 8, cMaxArraySize - cSpareBytes));
}

std::int32_t BlockSizeToGrowTo(std::int32_t length) {
    return std::max<std::int32_t>(WithSpareThird(length + cSpareBytes), length + cSpareBytes);
}

unsigned char* NewBlock(std::int32_t size) {
    return static_cast<unsigned char*>(GAllocator::GetInstance().Allocate(static_cast<std::size_t>(size)));
}

// Moves a short run as its first and its last bytes, which meet or overlap in the middle. Both are read
// before either is written.
template <class Word>
void MoveByEnds(unsigned char* target, const unsigned char* source, std::size_t length) {
    Word first;
    Word last;
    std::memcpy(&first, source, sizeof first);
    std::memcpy(&last, source + length - sizeof last, sizeof last);
    std::memcpy(target, &first, sizeof first);
    std::memcpy(target + length - sizeof last, &last, sizeof last);
}

// Moves bytes between areas that may overlap; most runs are short, and calling the library would take
// longer than moving those.
inline void MoveMostlyShort(unsigned char* target, const unsigned char* source, std::size_t length) {
    if (length > 32) {
        std::memmove(target, source, length);
    } else if (length >= 16) {
        MoveByEnds<__m128i>(target, source, length);
    } else if (length >= 8) {
        MoveByEnds<std::uint64_t>(target, source, length);
    } else if (length >= 4) {
        MoveByEnds<std::uint32_t>(target, source, length);
    } else if (length >= 2) {
        MoveByEnds<std::uint16_t>(target, source, length);
    } else if (length == 1) {
        *target = *source;
    }
}

// memmove must not be called with the null pointer of an empty buffer.
void Move(unsigned char* target, const unsigned char* source, long length) {
    if (length > 0) std::memmove(target, source, static_cast<std::size_t>(length));
}

// More than a buffer can hold counts as one byte too many, which a long of 32 bits can still say.
long LengthOfText(const char* text) {
    constexpr std::size_t cTooMany = std::size_t{GBuffer::cMaxLength} + 1;
    return text == nullptr ? 0 : static_cast<long>(std::min(std::strlen(text), cTooMany));
}

const unsigned char* AsBytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

}  // namespace

// --- Blocks ------------------------------------------------------------------------------------

void GBuffer::FreeBlock() const noexcept {
    if (GetAllocated()) GAllocator::GetInstance().Free(mData, SizeOf(mSizeWord));
}

void GBuffer::TakeBlock(unsigned char* block, std::int32_t size) const noexcept {
    FreeBlock();
    mData = block;
    mSizeWord = static_cast<std::uint32_t>(size) | cAllocated;
}

bool GBuffer::IsInOwnBlock(const unsigned char* bytes) const noexcept {
    // Of pointers into different blocks only this order is defined.
    return GetAllocated() && !std::less<>()(bytes, mData) && std::less<>()(bytes, mData + GetArraySize());
}

// Moves the bytes into an own block of that size, or of what they and the spare bytes need.
void GBuffer::MoveToBlock(long size) const {
    const std::int32_t needed = SumOfLengths(mLength, 0) + cSpareBytes;
    const std::int32_t blockSize =
        std::max(needed, static_cast<std::int32_t>(std::min<long>(size, cMaxArraySize)));
    if (GetAllocated() && mLength >= GetArraySize() / 2) {
        // Hardly a byte too many is moved, and of a large block perhaps none.
        mData = static_cast<unsigned char*>(GAllocator::GetInstance().Reallocate(
            mData, SizeOf(mSizeWord), static_cast<std::size_t>(blockSize)));
        mSizeWord = static_cast<std::uint32_t>(blockSize) | cAllocated;
        return;
    }
    unsigned char* const block = NewBlock(blockSize);
    Move(block, mData, mLength);
    TakeBlock(block, blockSize);
}

void GBuffer::GrowForElement(long size) {
    const std::int32_t newLength = SumOfLengths(mLength, size);
    MoveToBlock(std::max(WithSpareThird(newLength), newLength) + cSpareBytes);
}

void GBuffer::Borrow(const unsigned char* bytes, long length, long arraySize) {
    if (bytes == nullptr || length < 0) length = arraySize = 0;
    if (length > cMaxLength) GAllocator::ThrowOutOfMemory();
    FreeBlock();
    mData = const_cast<unsigned char*>(bytes);
    mLength = static_cast<std::int32_t>(length);
    mSizeWord = static_cast<std::uint32_t>(std::clamp<long>(arraySize, length, cMaxArraySize));
}

// --- Construction and setting ------------------------------------------------------------------

GBuffer::GBuffer(const GBuffer& other) {
    *this = other;
}

GBuffer::GBuffer(const char* text) {
    Set(text);
}

GBuffer::GBuffer(const unsigned char* bytes, long length) {
    Set(bytes, length);
}

GBuffer::~GBuffer() {
    FreeBlock();
}

GBuffer& GBuffer::operator=(const GBuffer& other) {
    if (this == &other) return *this;
    if (other.GetAllocated()) {
        CopyByteArray(other.mData, other.mLength, other.mLength);
    } else {
        Borrow(other.mData, other.mLength, other.GetArraySize());
    }
    return *this;
}

GBuffer& GBuffer::operator=(GBuffer&& other) noexcept {
    GBuffer(std::move(other)).Swap(*this);
    return *this;
}

void GBuffer::Set(const char* text) {
    const long length = LengthOfText(text);
    CopyByteArray(AsBytes(text), length, length + 1);
}

void GBuffer::Set(const unsigned char* bytes, long length) {
    CopyByteArray(bytes, length, length);
}

void GBuffer::CopyByteArray(const unsigned char* source, long length, long copyLength) {
    if (source == nullptr || length < 1) {
        // A borrowed pointer must go: its owner may free the memory now.
        if (!GetAllocated()) Borrow(nullptr, 0, 0);
        mLength = 0;
        return;
    }
    const std::int32_t newSize = SumOfLengths(length, 0) + cSpareBytes;
    const long copied = std::min<long>(newSize, copyLength);
    if (GetAllocated() && GetArraySize() >= newSize) {
        Move(mData, source, copied);
    } else {
        // The old block goes last: the source may lie inside it.
        unsigned char* const block = NewBlock(newSize);
        Move(block, source, copied);
        TakeBlock(block, newSize);
    }
    mLength = static_cast<std::int32_t>(length);
}

void GBuffer::SetFromStatic(const char* text) {
    SetFromStatic(AsBytes(text), LengthOfText(text));
}

void GBuffer::SetFromStatic(const unsigned char* bytes, long length, long arraySize) {
    Borrow(bytes, length, arraySize);
}

void GBuffer::TakeByteArray(unsigned char* bytes, long length, long arraySize) {
    Borrow(bytes, length, arraySize);
}

void GBuffer::Allocate(long capacity) {
    if (capacity < 0 || capacity <= GetAllocatedLength()) return;
    MoveToBlock(SumOfLengths(capacity, 0) + cSpareBytes);
}

void GBuffer::SetLengthSlowly(long length) {
    if (length < 0) return;
    const std::int32_t newLength = SumOfLengths(length, 0);
    const long room = GetAllocated() ? GetAllocatedLength() : GetArraySize();
    if (length > room) MoveToBlock(newLength + cSpareBytes);
    mLength = newLength;
}

void GBuffer::Swap(GBuffer& other) noexcept {
    std::swap(mData, other.mData);
    std::swap(mLength, other.mLength);
    std::swap(mSizeWord, other.mSizeWord);
}

// --- Reading -----------------------------------------------------------------------------------

const char* GBuffer::GetPtr() const {
    if (mData == nullptr) return cEmptyText;
    if (!GetAllocated()) {
        const bool terminated = mLength < GetArraySize() && mData[mLength] == 0;
        if (terminated) return reinterpret_cast<const char*>(mData);
        MoveToBlock(GetArraySize());
    }
    mData[mLength] = mData[mLength + 1] = 0;
    return reinterpret_cast<const char*>(mData);
}

unsigned short GBuffer::GetWordAt(long index) const noexcept {
    unsigned short word = 0;
    if (index >= 0 && index < GetArraySize() / 2) std::memcpy(&word, mData + 2 * index, sizeof word);
    return word;
}

void GBuffer::SetWordAt(long index, unsigned short word) {
    if (index < 0 || index >= GetArraySize() / 2) return;
    if (!GetAllocated()) MoveToBlock(GetArraySize());
    std::memcpy(mData + 2 * index, &word, sizeof word);
}

GBuffer GBuffer::GetSubBuffer(long start, long count) const {
    GBuffer result;
    GetSubBuffer(start, count, result);
    return result;
}

void GBuffer::GetSubBuffer(long start, long count, GBuffer& out) const {
    start = std::clamp<long>(start, 0, mLength);
    const long rest = mLength - start;
    if (count < 0 || count > rest) count = rest;
    out.CopyByteArray(mData + start, count, count);
}

// --- Editing -----------------------------------------------------------------------------------

GBuffer& GBuffer::operator+=(const GBuffer& other) {
    AppendByteArray(other.mData, other.mLength);
    return *this;
}

GBuffer& GBuffer::operator+=(const GCharCode& code) {
    AppendByteArray(code.GetPtr(), code.GetLength());
    return *this;
}

GBuffer& GBuffer::operator+=(const char* text) {
    AppendByteArray(AsBytes(text), LengthOfText(text));
    return *this;
}

void GBuffer::AppendByteArray(const unsigned char* bytes, long length) {
    if (bytes == nullptr || length < 1) return;
    const auto count = static_cast<std::size_t>(length);
    if (!HasOwnRoomFor(count)) return AppendInLargerBlock(bytes, length);
    unsigned char* const end = mData + mLength;
    mLength += static_cast<std::int32_t>(length);
    MoveMostlyShort(end, bytes, count);
}

void GBuffer::AppendInLargerBlock(const unsigned char* bytes, long length) {
    const std::int32_t newLength = SumOfLengths(mLength, length);
    // What lies in the own block moves with it.
    const bool isOwn = IsInOwnBlock(bytes);
    const std::ptrdiff_t offset = isOwn ? bytes - mData : 0;
    MoveToBlock(BlockSizeToGrowTo(newLength));
    Move(mData + mLength, isOwn ? mData + offset : bytes, length);
    mLength = newLength;
}

void GBuffer::ReplaceByteArray(long start, long removeCount, const unsigned char* bytes, long insertCount) {
    start = std::clamp<long>(start, 0, mLength);
    removeCount = std::clamp<long>(removeCount, 0, mLength - start);
    if (bytes == nullptr || insertCount < 0) insertCount = 0;
    if (removeCount == 0 && insertCount == 0) return;
    const std::int32_t newLength = SumOfLengths(mLength - removeCount, insertCount);
    if (!GetAllocated() || newLength > GetAllocatedLength()) {
        ReplaceInNewBlock(start, removeCount, bytes, insertCount);
        return;
    }
    GBuffer ownBytes;
    if (insertCount > 0 && IsInOwnBlock(bytes)) {
        // What is inserted would be moved away under its own copying.
        ownBytes.Set(bytes, insertCount);
        bytes = ownBytes.mData;
    }
    Move(mData + start + insertCount, mData + start + removeCount, mLength - start - removeCount);
    Move(mData + start, bytes, insertCount);
    mLength = newLength;
}

// Puts the result together in a new block. The old one goes last: the bytes may lie inside it.
void GBuffer::ReplaceInNewBlock(long start, long removeCount, const unsigned char* bytes, long insertCount) {
    const std::int32_t newLength = SumOfLengths(mLength - removeCount, insertCount);
    const std::int32_t size = BlockSizeToGrowTo(newLength);
    unsigned char* const block = NewBlock(size);
    Move(block, mData, start);
    Move(block + start, bytes, insertCount);
    const long tail = start + removeCount;
    if (mLength > tail) Move(block + start + insertCount, mData + tail, mLength - tail);
    TakeBlock(block, size);
    mLength = newLength;
}

void GBuffer::Replace(long start, long count, const GBuffer& with) {
    ReplaceByteArray(start, count, with.mData, with.mLength);
}

void GBuffer::Remove(long start, long count) {
    ReplaceByteArray(start, count, nullptr, 0);
}

bool GBuffer::FindAndReplace(long start, const GBuffer& find, const GBuffer& with) {
    long found = find.IsEmpty() ? -1 : FindSubBuffer(find, start);
    if (found < 0) return false;
    // Built apart: either argument may be this buffer.
    GBuffer result;
    if (with.mLength <= find.mLength) result.Allocate(mLength);
    long copied = 0;
    for (; found >= 0; found = FindSubBuffer(find, copied)) {
        result.AppendByteArray(mData + copied, found - copied);
        result += with;
        copied = found + find.mLength;
    }
    result.AppendByteArray(mData + copied, mLength - copied);
    Swap(result);
    return true;
}

bool GBuffer::FindAndReplace(long start, unsigned char find, unsigned char with) {
    const long first = FindFirstOccurrence(find, start);
    if (first < 0) return false;
    unsigned char* const bytes = GetWritePtr();
    std::replace(bytes + first, bytes + mLength, find, with);
    return true;
}

GBuffer operator+(const GBuffer& left, const GBuffer& right) {
    GBuffer result;
    result.Allocate(SumOfLengths(left.GetLength(), right.GetLength()));
    result += left;
    result += right;
    return result;
}

// --- Comparison --------------------------------------------------------------------------------

int GBuffer::Compare(const GBuffer& other) const noexcept {
    const std::int32_t shorter = std::min(mLength, other.mLength);
    const int order = shorter == 0 ? 0 : std::memcmp(mData, other.mData, static_cast<std::size_t>(shorter));
    if (order != 0) return order;
    if (mLength == other.mLength) return 0;
    return mLength < other.mLength ? -1 : 1;
}

bool GBuffer::operator==(const char* text) const noexcept {
    const long length = LengthOfText(text);
    if (mLength != length) return false;
    return length == 0 || std::memcmp(mData, text, static_cast<std::size_t>(length)) == 0;
}

std::uint32_t GBuffer::GetHash() const noexcept {
    return GByteHash::Of(mData, mLength);
}
