#include "framework/streams/encodings/GLZWEncode.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "framework/streams/encodings/GLZWCodes.h"

namespace {

constexpr std::int32_t cNeededRoom = 16;
constexpr std::int32_t cSlotBits = 14;
constexpr std::uint32_t cSlotCount = 1U << cSlotBits;
// Readers clear or stop one entry before the table is full; some refuse what stands there.
constexpr std::int32_t cFull = GLZWCodes::cTableSize - 2;

}  // namespace

/// One conversion. Nothing points to the object, so that the processor's registers can hold it while bytes
/// are taken, whatever is written.
class GLZWEncode::Run {
public:
    Run(const GLZWEncode& filter, std::uint32_t* slots, const GFilterWindow& window)
        : mState(filter.mState),
          mEarlyChange(filter.mEarlyChange),
          mSlots(slots),
          mIn(window.in),
          mInEnd(window.inEnd),
          mOut(window.out),
          mOutEnd(window.outEnd) {}

    GFilterStep TakeBytes(bool isLast) {
        if (mState.next == 0 && HasRoom()) Clear();
        if (mState.prefix < 0 && mIn < mInEnd) mState.prefix = *mIn++;
        while (mIn < mInEnd && HasRoom()) TakeString();
        if (mIn < mInEnd || !isLast || !HasRoom()) return GFilterStep::cGoOn;
        Finish();
        return GFilterStep::cEnd;
    }

    void Leave(GLZWEncode& filter, GFilterWindow& window) const {
        window.in = mIn;
        window.out = mOut;
        filter.mState = mState;
    }

private:
    bool HasRoom() const { return mOutEnd - mOut >= cNeededRoom; }

    // Takes bytes up to the first that makes a new string, or all.
    void TakeString() {
        auto prefix = static_cast<std::uint32_t>(mState.prefix);
        do {
            const std::uint32_t byte = *mIn++;
            const std::uint32_t key = prefix << 8 | byte;
            // A quick place to look, below the count: each byte of a long string waits for the one before.
            std::uint32_t slot = byte << (cSlotBits - 8) ^ prefix;
            while (mSlots[slot] != 0 && mSlots[slot] >> 12 != key) slot = (slot + 2 * byte + 1) % cSlotCount;
            if (mSlots[slot] == 0) {
                PutCode(static_cast<std::int32_t>(prefix));
                AddString(slot, key);
                prefix = byte;
                break;
            }
            prefix = mSlots[slot] & 0xFFFU;
        } while (mIn < mInEnd);
        mState.prefix = static_cast<std::int32_t>(prefix);
    }

    // The reader is one string behind: it learns the last byte with the next code.
    void AddString(std::uint32_t slot, std::uint32_t key) {
        mSlots[slot] = key << 12 | static_cast<std::uint32_t>(mState.next);
        mState.width = GLZWCodes::NextWidth(mState.width, mState.next++, mEarlyChange);
        if (mState.next == cFull) Clear();
    }

    void Clear() {
        PutCode(GLZWCodes::cClear);
        std::fill_n(mSlots, cSlotCount, 0);
        mState.next = GLZWCodes::cFirstString;
        mState.width = GLZWCodes::cFirstWidth;
    }

    // May write eight bytes.
    void PutCode(std::int32_t code) {
        mState.bits = mState.bits << mState.width | static_cast<std::uint64_t>(code);
        mState.bitCount += mState.width;
        const std::uint64_t bytes = __builtin_bswap64(mState.bits << (64 - mState.bitCount));
        std::memcpy(mOut, &bytes, sizeof bytes);
        mOut += mState.bitCount / 8;
        mState.bitCount %= 8;
    }

    void Finish() {
        if (mState.prefix >= 0) {
            PutCode(mState.prefix);
            mState.width = GLZWCodes::NextWidth(mState.width, mState.next, mEarlyChange);
        }
        PutCode(GLZWCodes::cEnd);
        if (mState.bitCount > 0) ++mOut;
    }

    State mState;
    const std::int32_t mEarlyChange;
    std::uint32_t* const mSlots;
    const unsigned char* mIn;
    const unsigned char* const mInEnd;
    unsigned char* mOut;
    unsigned char* const mOutEnd;
};

GLZWEncode::GLZWEncode(GHeldStream<GInStream> source, long earlyChange)
    : GFilterInStream(std::move(source), cNeededRoom),
      mEarlyChange(GLZWCodes::CheckEarlyChange(earlyChange)),
      mSlots(cSlotCount) {}

GLZWEncode* GLZWEncode::CreateClone() const {
    return new GLZWEncode(*this);
}

void GLZWEncode::Restart() {
    mState = State();
}

GFilterStep GLZWEncode::Convert(GFilterWindow& window) {
    Run run(*this, mSlots.data(), window);
    const GFilterStep step = run.TakeBytes(window.isLast);
    run.Leave(*this, window);
    return step;
}
