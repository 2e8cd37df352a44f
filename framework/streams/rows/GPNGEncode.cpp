#include "framework/streams/rows/GPNGEncode.h"

#include <algorithm>
#include <utility>

#include "framework/streams/rows/GBitUtils.h"

namespace {

constexpr std::int32_t cNeededRoom = 2;

}  // namespace

GPNGEncode::GPNGEncode(GHeldStream<GInStream> source, GPNGTag tag, long columns, long colours, long bits)
    : GFilterInStream(std::move(source), cNeededRoom),
      mTag(tag),
      mRowLength(GPNGRow::CheckedLength(columns, colours, bits)),
      mRow(GBitUtils::RowLength(1, colours, bits)) {}

void GPNGEncode::Restart() {
    mTagWritten = false;
    mRow.Restart();
}

GFilterStep GPNGEncode::Convert(GFilterWindow& window) {
    while (window.InCount() > 0 && window.OutRoom() >= cNeededRoom) {
        if (!mTagWritten) *window.out++ = static_cast<unsigned char>(mTag);
        mTagWritten = true;
        const auto count = static_cast<std::int32_t>(
            std::min<long>({window.InCount(), window.OutRoom(), mRowLength - mRow.GetPosition()}));
        mRow.Encode(mTag, window.in, count, window.out);
        window.in += count;
        window.out += count;
        if (mRow.GetPosition() < mRowLength) continue;
        mRow.Finish();
        mTagWritten = false;
    }
    return window.isLast && window.InCount() == 0 ? GFilterStep::cEnd : GFilterStep::cGoOn;
}

GPNGNoneEncode::GPNGNoneEncode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGEncode(std::move(source), GPNGTag::cNone, columns, colours, bits) {}

GPNGNoneEncode* GPNGNoneEncode::CreateClone() const {
    return new GPNGNoneEncode(*this);
}

GPNGSubEncode::GPNGSubEncode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGEncode(std::move(source), GPNGTag::cSub, columns, colours, bits) {}

GPNGSubEncode* GPNGSubEncode::CreateClone() const {
    return new GPNGSubEncode(*this);
}

GPNGUpEncode::GPNGUpEncode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGEncode(std::move(source), GPNGTag::cUp, columns, colours, bits) {}

GPNGUpEncode* GPNGUpEncode::CreateClone() const {
    return new GPNGUpEncode(*this);
}

GPNGAvgEncode::GPNGAvgEncode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGEncode(std::move(source), GPNGTag::cAverage, columns, colours, bits) {}

GPNGAvgEncode* GPNGAvgEncode::CreateClone() const {
    return new GPNGAvgEncode(*this);
}

GPNGPaethEncode::GPNGPaethEncode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGEncode(std::move(source), GPNGTag::cPaeth, columns, colours, bits) {}

GPNGPaethEncode* GPNGPaethEncode::CreateClone() const {
    return new GPNGPaethEncode(*this);
}
