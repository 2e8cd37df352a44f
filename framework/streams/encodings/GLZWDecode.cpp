#include "framework/streams/encodings/GLZWDecode.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr long cPart = 8;  // bytes of a string that are written at once
constexpr std::int32_t cNeededRoom = 1;
constexpr std::uint32_t cTableSize = GLZWCodes::cTableSize;

}  // namespace

inline unsigned char* GLZWDecode::Rest::Give(unsigned char* out, const unsigned char* outEnd) {
    const long repeated = std::min<long>(runLength, outEnd - out);
    if (repeated > 0) std::memset(out, runByte, static_cast<std::size_t>(repeated));
    runLength -= static_cast<std::int32_t>(repeated);
    out += repeated;
    const long copied = std::min<long>(end - start, outEnd - out);
    if (copied < 1) return out;
    if (copied <= cPart && outEnd - out >= cPart) {
        std::memcpy(out, bytes.data() + start, cPart);  // the last part may be written too long
    } else {
        std::memcpy(out, bytes.data() + start, static_cast<std::size_t>(copied));
    }
    start += static_cast<std::int32_t>(copied);
    return out + copied;
}

/// One conversion. Its operations are inlined and nothing points to the object, so that the processor's
/// registers hold it while codes are taken, whatever is written.
class GLZWDecode::Run {
public:
    Run(GLZWDecode& filter, const GFilterWindow& window)
        : mState(filter.mState),
          mEarlyChange(filter.mEarlyChange),
          mStrings(filter.mStrings.data()),
          mRest(filter.mRest),
          mIn(window.in),
          mBit(mState.usedBits),
          mBits(static_cast<std::uint32_t>(8 * window.InCount())),
          mIsLast(window.isLast),
          mOut(window.out),
          mOutEnd(window.outEnd) {
        SetWidth(mState.width);
    }

    // Ends with the first string that there is no room for; it becomes the rest.
    [[gnu::always_inline]] GFilterStep TakeCodes() {
        while (true) {
            const std::uint32_t code = PeekCode();
            if (code >= mState.next && (code > mState.next || !HasPrevious())) return FindFailure(code);
            // The next code stands for the previous string with its own first byte behind it.
            const String string = code == mState.next ? Longer(FirstOf(mState.string)) : mStrings[code];
            const long length = LengthOf(string);
            if (length == 0) {
                if (code == GLZWCodes::cEnd) return TakeEnd();
                TakeClear();
                continue;
            }
            const bool hasRoom = mOutEnd - mOut >= length + cPart;
            mBit += mState.width;
            if (mState.next < cTableSize && HasPrevious()) AddString(FirstOf(string));
            mState.string = string;
            mState.previous = code;
            if (hasRoom) {
                Put(string, length, mOut);
                mOut += length;
                continue;
            }
            Keep(string, length);
            mOut = mRest.Give(mOut, mOutEnd);
            if (!mRest.IsEmpty()) return GFilterStep::cGoOn;
        }
    }

    void Leave(GLZWDecode& filter, GFilterWindow& window) const {
        window.in = mIn + mBit / 8;
        window.out = mOut;
        // Part by part: for a copy of the whole it would have to lie in memory.
        filter.mState.next = mState.next;
        filter.mState.width = mState.width;
        filter.mState.previous = mState.previous;
        filter.mState.string.tail = mState.string.tail;
        filter.mState.string.facts = mState.string.facts;
        filter.mState.usedBits = mBit % 8;
    }

    static void ClearTable(State& state) {
        state.next = GLZWCodes::cFirstString;
        state.width = GLZWCodes::cFirstWidth;
        state.string = {};
    }

    static String StringOfOneByte(std::uint64_t byte) { return {byte, 1 | byte << cFirstShift}; }

private:
    static constexpr std::uint32_t cNoCode = 0xFFFFFFFF;
    // The facts of a string: its length in 16 bits, the string before its last part in 16, its first byte,
    // and whether all bytes before the last part are like that one.
    static constexpr int cBaseShift = 16;
    static constexpr int cFirstShift = 32;
    static constexpr int cRunShift = 40;

    static long LengthOf(const String& string) { return static_cast<std::uint16_t>(string.facts); }
    static std::size_t BaseOf(const String& string) {
        return static_cast<std::uint16_t>(string.facts >> cBaseShift);
    }
    static std::uint64_t FirstOf(const String& string) { return string.facts >> cFirstShift & 0xFF; }
    static bool IsRun(const String& string) { return (string.facts >> cRunShift & 1) != 0; }
    bool HasPrevious() const { return mState.string.facts != 0; }

    void SetWidth(std::uint32_t width) {
        const bool isLast = width == GLZWCodes::cLastWidth;
        mState.width = width;
        mGrowAt = isLast ? cTableSize + 1 : (1U << width) - mEarlyChange;
    }

    std::uint32_t PeekCode() const {
        std::uint32_t word = 0;
        if (mBits - mBit >= 32) {
            std::memcpy(&word, mIn + mBit / 8, sizeof word);
            word = __builtin_bswap32(word);
        } else {
            if (mBits - mBit < mState.width) return cNoCode;
            for (std::uint32_t i = mBit / 8; i < mBits / 8; ++i) {
                word |= std::uint32_t{mIn[i]} << (24 - 8 * (i - mBit / 8));
            }
        }
        return word >> (32 - mBit % 8 - mState.width) & ((1U << mState.width) - 1);
    }

    void TakeClear() {
        mBit += mState.width;
        ClearTable(mState);
        SetWidth(mState.width);
    }

    // What is left of the last byte belongs to the end.
    GFilterStep TakeEnd() {
        mBit = (mBit + mState.width + 7) / 8 * 8;
        return GFilterStep::cEnd;
    }

    // Data that has no whole code any more ends well when zero bits fill its last byte.
    GFilterStep FindFailure(std::uint32_t code) {
        if (code != cNoCode) return GFilterStep::cInvalid;
        if (!mIsLast) return GFilterStep::cGoOn;
        const std::uint32_t left = mBits - mBit;
        const bool isFilled = left == 0 || (left < 8 && (mIn[mBit / 8] & ((1U << left) - 1)) == 0);
        mBit = mBits;
        return isFilled ? GFilterStep::cEnd : GFilterStep::cTruncated;
    }

    // The previous string with a byte behind it.
    String Longer(std::uint64_t last) const {
        const long tailLength = LengthOf(mState.string) % cPart;
        if (tailLength == 0) return WithNewPart(last);
        return {mState.string.tail | last << 8 * tailLength, mState.string.facts + 1};
    }

    String WithNewPart(std::uint64_t last) const {
        constexpr std::uint64_t cEachByte = 0x0101010101010101;
        const String& start = mState.string;
        const bool wasRun = LengthOf(start) == cPart || IsRun(start);
        const std::uint64_t isRun = wasRun && start.tail == FirstOf(start) * cEachByte ? 1 : 0;
        const auto length = static_cast<std::uint64_t>(LengthOf(start) + 1);
        return {last, length | std::uint64_t{mState.previous} << cBaseShift | FirstOf(start) << cFirstShift |
                          isRun << cRunShift};
    }

    void AddString(std::uint64_t last) {
        mStrings[mState.next++] = Longer(last);
        if (mState.next >= mGrowAt) SetWidth(mState.width + 1);
    }

    // The last part may be written too long.
    void Put(const String& string, long length, unsigned char* out) const {
        if (length <= cPart) {
            std::memcpy(out, &string.tail, sizeof string.tail);
        } else {
            PutParts(string, (length - 1) / cPart * cPart, out);
        }
    }

    // From the last part, which stands at `position`, to the first.
    void PutParts(String string, long position, unsigned char* out) const {
        for (; position > 0 && !IsRun(string); position -= cPart) {
            std::memcpy(out + position, &string.tail, sizeof string.tail);
            string = mStrings[BaseOf(string)];
        }
        if (position > 0) {
            std::memset(out, static_cast<int>(FirstOf(string)), static_cast<std::size_t>(position));
        }
        std::memcpy(out + position, &string.tail, sizeof string.tail);
    }

    // A run is not written down, or small reads of runs would copy nearly all of it.
    void Keep(const String& string, long length) const {
        const long position = (length - 1) / cPart * cPart;
        const bool isRun = position > 0 && IsRun(string);
        mRest.start = 0;
        mRest.end = static_cast<std::int32_t>(isRun ? length - position : length);
        if (isRun) {
            mRest.runLength = static_cast<std::int32_t>(position);
            mRest.runByte = static_cast<unsigned char>(FirstOf(string));
            std::memcpy(mRest.bytes.data(), &string.tail, sizeof string.tail);
        } else {
            Put(string, length, mRest.bytes.data());
        }
    }

    State mState;
    const std::uint32_t mEarlyChange;
    std::uint32_t mGrowAt = 0;  // the next code from which on codes are wider
    String* const mStrings;
    Rest& mRest;
    const unsigned char* const mIn;
    std::uint32_t mBit;         // counted from mIn
    const std::uint32_t mBits;  // how many there are
    const bool mIsLast;
    unsigned char* mOut;
    unsigned char* const mOutEnd;
};

GLZWDecode::GLZWDecode(GHeldStream<GInStream> source, long earlyChange)
    : GFilterInStream(std::move(source), cNeededRoom),
      mEarlyChange(static_cast<std::uint32_t>(GLZWCodes::CheckEarlyChange(earlyChange))),
      mStrings(cTableSize) {
    for (std::size_t byte = 0; byte < GLZWCodes::cClear; ++byte) mStrings[byte] = Run::StringOfOneByte(byte);
    Run::ClearTable(mState);
}

GLZWDecode* GLZWDecode::CreateClone() const {
    return new GLZWDecode(*this);
}

void GLZWDecode::Restart() {
    mRest = {};
    mState.usedBits = 0;
    Run::ClearTable(mState);
}

GFilterStep GLZWDecode::Convert(GFilterWindow& window) {
    window.out = mRest.Give(window.out, window.outEnd);
    if (!mRest.IsEmpty()) return GFilterStep::cGoOn;
    Run run(*this, window);
    const GFilterStep step = run.TakeCodes();
    run.Leave(*this, window);
    return step;
}
