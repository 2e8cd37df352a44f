#include "framework/streams/encodings/GLZWDecode.h"

#include <cstring>
#include <utility>

#include "framework/streams/encodings/GLZWCodes.h"

namespace {

constexpr long cPart = 8;  // bytes of a string that are written at once
constexpr std::int32_t cNeededRoom = GLZWCodes::cTableSize + cPart;

}  // namespace

GLZWDecode::GLZWDecode(GHeldStream<GInStream> source, long earlyChange)
    : GFilterInStream(std::move(source), cNeededRoom),
      mEarlyChange(GLZWCodes::CheckEarlyChange(earlyChange)),
      mStrings(GLZWCodes::cTableSize) {
    for (std::uint16_t byte = 0; byte < GLZWCodes::cClear; ++byte) {
        mStrings[byte] = {byte, 0, 1, static_cast<unsigned char>(byte)};
    }
    ClearTable();
}

GLZWDecode* GLZWDecode::CreateClone() const {
    return new GLZWDecode(*this);
}

void GLZWDecode::Restart() {
    ClearTable();
    mBits = Bits();
}

void GLZWDecode::ClearTable() {
    mNext = GLZWCodes::cFirstString;
    mWidth = GLZWCodes::cFirstWidth;
    mPrevious = -1;
}

void GLZWDecode::Bits::Refill(GFilterWindow& window) {
    if (window.InCount() >= cPart) {
        std::uint64_t bytes;
        std::memcpy(&bytes, window.in, sizeof bytes);
        const std::int32_t taken = (63 - count) / 8;
        // Bits below what is counted come again with the next bytes, which are the same.
        word |= __builtin_bswap64(bytes) >> count;
        window.in += taken;
        count += 8 * taken;
        word &= ~std::uint64_t{0} << (64 - count);
        return;
    }
    for (; count <= 56 && window.InCount() > 0; count += 8) {
        word |= std::uint64_t{*window.in++} << (56 - count);
    }
}

void GLZWDecode::Bits::Drop(std::int32_t width) {
    word <<= width;
    count -= width;
}

void GLZWDecode::Bits::PutBackBytes(GFilterWindow& window) {
    window.in -= count / 8;
    count %= 8;
    word = count == 0 ? 0 : word & ~std::uint64_t{0} << (64 - count);
}

GFilterStep GLZWDecode::Convert(GFilterWindow& window) {
    Bits bits = mBits;
    const GFilterStep step = TakeCodes(window, bits);
    bits.PutBackBytes(window);
    mBits = bits;
    return step;
}

GFilterStep GLZWDecode::TakeCodes(GFilterWindow& window, Bits& bits) {
    while (true) {
        if (bits.count < mWidth) bits.Refill(window);
        if (bits.count < mWidth) return window.isLast ? bits.GetEnd() : GFilterStep::cGoOn;
        const auto code = static_cast<std::int32_t>(bits.word >> (64 - mWidth));
        if (code == GLZWCodes::cClear || code == GLZWCodes::cEnd) {
            bits.Drop(mWidth);
            if (code == GLZWCodes::cEnd) return GFilterStep::cEnd;
            ClearTable();
            continue;
        }
        if (!IsKnown(code)) return GFilterStep::cInvalid;
        const std::size_t known = static_cast<std::size_t>(code == mNext ? mPrevious : code);
        const long length = mStrings[known].length + (code == mNext ? 1 : 0);
        if (window.OutRoom() < length + cPart) return GFilterStep::cGoOn;
        bits.Drop(mWidth);
        AddString(code);
        PutString(code, window.out);
        window.out += length;
    }
}

// The next code may stand for the previous string with its own first byte behind it.
bool GLZWDecode::IsKnown(std::int32_t code) const {
    return code < mNext || (code == mNext && mPrevious >= 0);
}

// Adds the previous string with the first byte of this one, unless the table is full.
void GLZWDecode::AddString(std::int32_t code) {
    const std::int32_t previous = std::exchange(mPrevious, code);
    if (previous < 0 || mNext == GLZWCodes::cTableSize) return;
    const String& start = mStrings[static_cast<std::size_t>(previous)];
    const unsigned char last = mStrings[static_cast<std::size_t>(code == mNext ? previous : code)].first;
    const auto length = static_cast<std::uint16_t>(start.length + 1);
    String& added = mStrings[static_cast<std::size_t>(mNext)];
    const auto tailLength = start.length % cPart;
    if (tailLength == 0) {
        added = {last, static_cast<std::uint16_t>(previous), length, start.first};
    } else {
        const std::uint64_t tail = start.tail | std::uint64_t{last} << (8 * tailLength);
        added = {tail, start.base, length, start.first};
    }
    ++mNext;
    mWidth = GLZWCodes::NextWidth(mWidth, mNext, mEarlyChange);
}

// Part by part from the last one, which may be written too long.
void GLZWDecode::PutString(std::int32_t code, unsigned char* out) const {
    const String* string = &mStrings[static_cast<std::size_t>(code)];
    long position = (string->length - 1) / cPart * cPart;
    std::memcpy(out + position, &string->tail, sizeof string->tail);
    while (position > 0) {
        string = &mStrings[string->base];
        position -= cPart;
        std::memcpy(out + position, &string->tail, sizeof string->tail);
    }
}
