#include "framework/core/GErrorReporter.h"

std::unique_ptr<GErrorReporter> GErrorReporter::sInstance;

GErrorReporter::~GErrorReporter() = default;

void GErrorReporter::Report(const GString&) const {}

GErrorReporter* GErrorReporter::GetInstance() {
    if (!sInstance) sInstance = std::make_unique<GErrorReporter>();
    return sInstance.get();
}

void GErrorReporter::SetInstance(GErrorReporter* reporter) {
    if (reporter != sInstance.get()) sInstance.reset(reporter);
}
