#include "framework/streams/encodings/GLZWEncode.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "framework/streams/encodings/GLZWCodes.h"

namespace {

constexpr std::int32_t cNeededRoom = 16;
constexpr std::int32_t cSlotBits = 13;
constexpr std::uint32_t cSlotCount = 1U << cSlotBits;
// Readers clear or stop one entry before the table is full; some refuse what stands there.
constexpr std::int32_t cFull = GLZWCodes::cTableSize - 2;

}  // namespace

GLZWEncode::GLZWEncode(GHeldStream<GInStream> source, long earlyChange)
    : GFilterInStream(std::move(source), cNeededRoom),
      mEarlyChange(GLZWCodes::CheckEarlyChange(earlyChange)),
      mSlots(cSlotCount) {
    ClearTable();
}

GLZWEncode* GLZWEncode::CreateClone() const {
    return new GLZWEncode(*this);
}

void GLZWEncode::Restart() {
    ClearTable();
    mPrefix = -1;
    mBits = 0;
    mBitCount = 0;
    mStarted = false;
}

void GLZWEncode::ClearTable() {
    std::fill(mSlots.begin(), mSlots.end(), 0);
    mNext = GLZWCodes::cFirstString;
    mWidth = GLZWCodes::cFirstWidth;
}

GFilterStep GLZWEncode::Convert(GFilterWindow& window) {
    if (!mStarted) PutCode(window, GLZWCodes::cClear);
    mStarted = true;
    while (window.OutRoom() >= cNeededRoom && window.InCount() > 0) TakeByte(window, *window.in++);
    if (window.InCount() > 0 || !window.isLast || window.OutRoom() < cNeededRoom) return GFilterStep::cGoOn;
    Finish(window);
    return GFilterStep::cEnd;
}

void GLZWEncode::TakeByte(GFilterWindow& window, unsigned char byte) {
    if (mPrefix < 0) {
        mPrefix = byte;
        return;
    }
    const std::uint32_t key = static_cast<std::uint32_t>(mPrefix) << 8 | byte;
    std::uint32_t slot = key * 0x9E3779B1U >> (32 - cSlotBits);
    for (; mSlots[slot] != 0; slot = (slot + 1) % cSlotCount) {
        if (mSlots[slot] >> 12 != key) continue;
        mPrefix = static_cast<std::int32_t>(mSlots[slot] & 0xFFFU);
        return;
    }
    PutCode(window, mPrefix);
    mSlots[slot] = key << 12 | static_cast<std::uint32_t>(mNext);
    // The reader is one string behind: it learns the byte with the next code.
    mWidth = GLZWCodes::NextWidth(mWidth, mNext++, mEarlyChange);
    mPrefix = byte;
    if (mNext < cFull) return;
    PutCode(window, GLZWCodes::cClear);
    ClearTable();
}

void GLZWEncode::PutCode(GFilterWindow& window, std::int32_t code) {
    mBits = mBits << mWidth | static_cast<std::uint64_t>(code);
    mBitCount += mWidth;
    if (mBitCount < 32) return;
    mBitCount -= 32;
    const std::uint32_t bytes = __builtin_bswap32(static_cast<std::uint32_t>(mBits >> mBitCount));
    std::memcpy(window.out, &bytes, sizeof bytes);
    window.out += sizeof bytes;
}

void GLZWEncode::Finish(GFilterWindow& window) {
    if (mPrefix >= 0) {
        PutCode(window, mPrefix);
        mWidth = GLZWCodes::NextWidth(mWidth, mNext, mEarlyChange);
    }
    PutCode(window, GLZWCodes::cEnd);
    for (; mBitCount > 0; mBitCount -= 8) {
        const std::uint64_t byte = mBitCount >= 8 ? mBits >> (mBitCount - 8) : mBits << (8 - mBitCount);
        *window.out++ = static_cast<unsigned char>(byte);
    }
}
