#include "framework/streams/encodings/GASCII85Decode.h"

#include <cstring>
#include <utility>

#include "framework/streams/encodings/GTextByte.h"

namespace {

constexpr std::int32_t cNeededRoom = 16;
constexpr std::uint64_t cLargestGroup = 0xFFFFFFFF;
constexpr unsigned cBase = 85;

// Whether the lower five of eight characters are digits. A sum or difference that runs over into the
// next byte comes from one that is found to be wrong itself.
bool AreDigits(std::uint64_t text) {
    constexpr std::uint64_t cFive = 0x0101010101;
    text &= 0xFF * cFive;
    return ((text | (text - '!' * cFive) | (text + (0x7F - 'u') * cFive)) & 0x80 * cFive) == 0;
}

// Pairs of digits first, then the whole.
std::uint64_t ValueOf(std::uint64_t text) {
    constexpr std::uint64_t cEven = 0x00FF00FF;
    text -= 0x2121212121;
    const std::uint64_t others = text >> 8;
    const std::uint64_t pairs = (others & cEven) * cBase + (others >> 8 & cEven);
    return (text & 0xFF) * 52200625 + (pairs & 0xFFFF) * 7225 + (pairs >> 16 & 0xFFFF);
}

void PutGroup(std::uint64_t value, unsigned char* out) {
    const std::uint32_t bytes = __builtin_bswap32(static_cast<std::uint32_t>(value));
    std::memcpy(out, &bytes, sizeof bytes);
}

// Whole groups as long as nothing else stands between them.
void DecodeGroups(GFilterWindow& window) {
    while (window.InCount() >= 8 && window.OutRoom() >= 4) {
        std::uint64_t text;
        std::memcpy(&text, window.in, sizeof text);
        std::uint64_t value = 0;
        if (AreDigits(text)) {
            value = ValueOf(text);
            if (value > cLargestGroup) return;
            window.in += 5;
        } else if ((text & 0xFF) == 'z') {
            window.in += 1;
        } else {
            return;
        }
        PutGroup(value, window.out);
        window.out += 4;
    }
}

}  // namespace

GASCII85Decode::GASCII85Decode(GHeldStream<GInStream> source)
    : GFilterInStream(std::move(source), cNeededRoom) {}

GASCII85Decode* GASCII85Decode::CreateClone() const {
    return new GASCII85Decode(*this);
}

void GASCII85Decode::Restart() {
    mValue = 0;
    mDigitCount = 0;
    mAtStart = true;
    mTildeSeen = false;
}

GFilterStep GASCII85Decode::Convert(GFilterWindow& window) {
    if (mAtStart && !PassStart(window)) return GFilterStep::cGoOn;
    while (window.OutRoom() >= 4) {
        if (mDigitCount == 0 && !mTildeSeen) DecodeGroups(window);
        if (window.OutRoom() < 4) break;
        if (window.InCount() == 0) return window.isLast ? Finish(window) : GFilterStep::cGoOn;
        const GFilterStep step = TakeCharacter(window);
        if (step != GFilterStep::cGoOn) return step;
    }
    return GFilterStep::cGoOn;
}

// False: more must be known first.
bool GASCII85Decode::PassStart(GFilterWindow& window) {
    while (window.InCount() > 0 && GTextByte::IsWhiteSpace(*window.in)) ++window.in;
    if (window.InCount() < 2 && !window.isLast) return false;
    if (window.InCount() >= 2 && window.in[0] == '<' && window.in[1] == '~') window.in += 2;
    mAtStart = false;
    return true;
}

GFilterStep GASCII85Decode::TakeCharacter(GFilterWindow& window) {
    const unsigned char byte = *window.in++;
    if (GTextByte::IsWhiteSpace(byte)) return GFilterStep::cGoOn;
    if (mTildeSeen) return byte == '>' ? Finish(window) : GFilterStep::cInvalid;
    if (byte == '~') {
        mTildeSeen = true;
        return GFilterStep::cGoOn;
    }
    if (byte == 'z' && mDigitCount == 0) {
        PutGroup(0, window.out);
        window.out += 4;
        return GFilterStep::cGoOn;
    }
    return byte >= '!' && byte <= 'u' ? TakeDigit(window, byte - '!') : GFilterStep::cInvalid;
}

GFilterStep GASCII85Decode::TakeDigit(GFilterWindow& window, unsigned digit) {
    mValue = mValue * cBase + digit;
    if (++mDigitCount < 5) return GFilterStep::cGoOn;
    if (mValue > cLargestGroup) return GFilterStep::cInvalid;
    PutGroup(mValue, window.out);
    window.out += 4;
    mValue = 0;
    mDigitCount = 0;
    return GFilterStep::cGoOn;
}

GFilterStep GASCII85Decode::Finish(GFilterWindow& window) const {
    if (mDigitCount == 0) return GFilterStep::cEnd;
    if (mDigitCount == 1) return mTildeSeen ? GFilterStep::cInvalid : GFilterStep::cTruncated;
    // The characters that were left out count as the highest digit.
    std::uint64_t value = mValue;
    for (std::int32_t i = mDigitCount; i < 5; ++i) value = value * cBase + (cBase - 1);
    if (value > cLargestGroup) return GFilterStep::cInvalid;
    PutGroup(value, window.out);
    window.out += mDigitCount - 1;
    return GFilterStep::cEnd;
}
