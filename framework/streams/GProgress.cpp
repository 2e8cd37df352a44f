#include "framework/streams/GProgress.h"

#include <algorithm>

#include "framework/core/memory/GReplaceable.h"

namespace {

constinit GReplaceable<GProgressCentre> sInstance;

}  // namespace

GProgressCentre::~GProgressCentre() = default;

void GProgressCentre::Report(const GProgress&) {}

void GProgressCentre::Finished(const GProgress&) noexcept {}

GProgressCentre* GProgressCentre::GetInstance() {
    return sInstance.Get([] { return new GProgressCentre; });
}

void GProgressCentre::SetInstance(GProgressCentre* centre) {
    sInstance.Set(centre);
}

GProgress::GProgress(long long total) : mCentre(GProgressCentre::GetInstance()), mTotal(total) {
    mCentre->Report(*this);
}

GProgress::~GProgress() {
    mCentre->Finished(*this);
}

void GProgress::Advance(long long amount) {
    mDone += amount;
    mCentre->Report(*this);
}

double GProgress::GetFraction() const {
    if (mTotal <= 0) return 0.0;
    return std::clamp(static_cast<double>(mDone) / static_cast<double>(mTotal), 0.0, 1.0);
}
