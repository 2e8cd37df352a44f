#include "framework/core/errors/GErrorReporter.h"

#include "framework/core/memory/GReplaceable.h"

namespace {

constinit GReplaceable<GErrorReporter> sInstance;

}  // namespace

GErrorReporter::~GErrorReporter() = default;

void GErrorReporter::Report(const GString&) const {}

GErrorReporter* GErrorReporter::GetInstance() {
    return sInstance.Get([] { return new GErrorReporter; });
}

void GErrorReporter::SetInstance(GErrorReporter* reporter) {
    sInstance.Set(reporter);
}
