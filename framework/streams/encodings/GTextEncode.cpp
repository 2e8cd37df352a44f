#include "framework/streams/encodings/GTextEncode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr std::int32_t cNeededRoom = 128;
constexpr long cMarkRoom = 4;  // an end mark and a line end
constexpr long cPiece = 1024;  // characters that are put into lines at once

}  // namespace

GTextEncode::GTextEncode(GHeldStream<GInStream> source, std::string_view endMark, bool breakLines)
    : GFilterInStream(std::move(source), cNeededRoom), mEndMark(endMark), mBreakLines(breakLines) {}

GFilterStep GTextEncode::Convert(GFilterWindow& window) {
    unsigned char* const end = window.outEnd;
    window.outEnd -= cMarkRoom;
    const GFilterStep step = mBreakLines ? EncodeInLines(window) : Encode(window);
    window.outEnd = end;
    if (step != GFilterStep::cEnd) return step;
    const long markLength = static_cast<long>(mEndMark.size());
    if (mBreakLines && mColumn + markLength > cLineLength) *window.out++ = '\n';
    std::memcpy(window.out, mEndMark.data(), mEndMark.size());
    window.out += markLength;
    return step;
}

void GTextEncode::Restart() {
    mColumn = 0;
}

// Room for a line end is kept for each line that the piece may come to lie on.
GFilterStep GTextEncode::EncodeInLines(GFilterWindow& window) {
    std::array<unsigned char, cPiece> piece;
    while (true) {
        const long lineEnds = window.OutRoom() / cLineLength + 1;
        const long room = std::min(cPiece, window.OutRoom() - lineEnds);
        if (room < cEncodeRoom) return GFilterStep::cGoOn;
        GFilterWindow unbroken = {window.in, window.inEnd, window.isLast, piece.data(), piece.data() + room};
        const GFilterStep step = Encode(unbroken);
        window.in = unbroken.in;
        const long count = static_cast<long>(unbroken.out - piece.data());
        PutInLines(window, piece.data(), count);
        if (step != GFilterStep::cGoOn || unbroken.OutRoom() >= cEncodeRoom) return step;
    }
}

void GTextEncode::PutInLines(GFilterWindow& window, const unsigned char* text, long count) {
    while (count > 0) {
        if (mColumn == cLineLength) {
            *window.out++ = '\n';
            mColumn = 0;
        }
        const long part = std::min(count, cLineLength - mColumn);
        std::memcpy(window.out, text, static_cast<std::size_t>(part));
        window.out += part;
        text += part;
        count -= part;
        mColumn += static_cast<std::int32_t>(part);
    }
}
