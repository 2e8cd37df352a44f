#pragma once

#include "framework/streams/GFilterInStream.h"

/// GAddZeroes: a source with zero bytes behind its end.
class QUILLON_EXPORT GAddZeroes : public GFilterInStream {
public:
    /// `count` zero bytes; less than none throws GExceptionID::cInvalidParameter.
    GAddZeroes(GHeldStream<GInStream> source, long long count);

    GAddZeroes* CreateClone() const override;

private:
    GFilterStep Convert(GFilterWindow& window) override;
    void Restart() override;

    long long mCount;
    long long mAdded = 0;
};
