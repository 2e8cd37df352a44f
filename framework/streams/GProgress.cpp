#include "framework/streams/GProgress.h"

#include <algorithm>
#include <memory>

namespace {

std::unique_ptr<GProgressCentre>& InstalledCentre() {
    static std::unique_ptr<GProgressCentre> sCentre;
    return sCentre;
}

}  // namespace

GProgressCentre::~GProgressCentre() = default;

void GProgressCentre::Report(const GProgress&) {}

void GProgressCentre::Finished(const GProgress&) noexcept {}

GProgressCentre* GProgressCentre::GetInstance() {
    static GProgressCentre sPlainCentre;
    GProgressCentre* const installed = InstalledCentre().get();
    return installed != nullptr ? installed : &sPlainCentre;
}

void GProgressCentre::SetInstance(GProgressCentre* centre) {
    InstalledCentre().reset(centre);
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
