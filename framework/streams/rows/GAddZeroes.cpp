#include "framework/streams/rows/GAddZeroes.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionID.h"

GAddZeroes::GAddZeroes(GHeldStream<GInStream> source, long long count)
    : GFilterInStream(std::move(source), 1), mCount(count) {
    if (count < 0) throw GSimpleException(GExceptionID::cInvalidParameter);
}

GAddZeroes* GAddZeroes::CreateClone() const {
    return new GAddZeroes(*this);
}

void GAddZeroes::Restart() {
    mAdded = 0;
}

GFilterStep GAddZeroes::Convert(GFilterWindow& window) {
    window.CopyThrough(window.InCount());
    if (!window.isLast || window.InCount() > 0) return GFilterStep::cGoOn;
    const long zeros = static_cast<long>(std::min<long long>(window.OutRoom(), mCount - mAdded));
    std::memset(window.out, 0, static_cast<std::size_t>(zeros));
    window.out += zeros;
    mAdded += zeros;
    return mAdded == mCount ? GFilterStep::cEnd : GFilterStep::cGoOn;
}
