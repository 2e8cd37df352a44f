#include "framework/streams/rows/GPNGDecode.h"

#include <algorithm>
#include <utility>

#include "framework/streams/rows/GBitUtils.h"

namespace {

constexpr std::int32_t cNeededRoom = 1;

}  // namespace

GPNGDecode::GPNGDecode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GFilterInStream(std::move(source), cNeededRoom),
      mRowLength(GPNGRow::CheckedLength(columns, colours, bits)),
      mRow(GBitUtils::RowLength(1, colours, bits)) {}

void GPNGDecode::Restart() {
    mTagRead = false;
    mRow.Restart();
}

GFilterStep GPNGDecode::Convert(GFilterWindow& window) {
    while (window.InCount() > 0 && window.OutRoom() >= cNeededRoom) {
        if (!mTagRead) {
            if (*window.in >= GPNGRow::cTagCount) return GFilterStep::cWrongTag;
            mTag = static_cast<GPNGTag>(*window.in++);
            mTagRead = true;
        }
        const auto count = static_cast<std::int32_t>(
            std::min<long>({window.InCount(), window.OutRoom(), mRowLength - mRow.GetPosition()}));
        mRow.Decode(mTag, window.in, count, window.out);
        window.in += count;
        window.out += count;
        if (mRow.GetPosition() < mRowLength) continue;
        mRow.Finish();
        mTagRead = false;
    }
    if (!window.isLast || window.InCount() > 0) return GFilterStep::cGoOn;
    return mTagRead ? GFilterStep::cTruncated : GFilterStep::cEnd;
}

GPNGNoneDecode::GPNGNoneDecode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGDecode(std::move(source), columns, colours, bits) {}

GPNGNoneDecode* GPNGNoneDecode::CreateClone() const {
    return new GPNGNoneDecode(*this);
}

GPNGSubDecode::GPNGSubDecode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGDecode(std::move(source), columns, colours, bits) {}

GPNGSubDecode* GPNGSubDecode::CreateClone() const {
    return new GPNGSubDecode(*this);
}

GPNGUpDecode::GPNGUpDecode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGDecode(std::move(source), columns, colours, bits) {}

GPNGUpDecode* GPNGUpDecode::CreateClone() const {
    return new GPNGUpDecode(*this);
}

GPNGAvgDecode::GPNGAvgDecode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGDecode(std::move(source), columns, colours, bits) {}

GPNGAvgDecode* GPNGAvgDecode::CreateClone() const {
    return new GPNGAvgDecode(*this);
}

GPNGPaethDecode::GPNGPaethDecode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGDecode(std::move(source), columns, colours, bits) {}

GPNGPaethDecode* GPNGPaethDecode::CreateClone() const {
    return new GPNGPaethDecode(*this);
}

GPNGOptiDecode::GPNGOptiDecode(GHeldStream<GInStream> source, long columns, long colours, long bits)
    : GPNGDecode(std::move(source), columns, colours, bits) {}

GPNGOptiDecode* GPNGOptiDecode::CreateClone() const {
    return new GPNGOptiDecode(*this);
}
