#include "framework/core/errors/GErrorReporter.h"

std::unique_ptr<GErrorReporter> GErrorReporter::sInstance;

GErrorReporter::~GErrorReporter() = default;

void GErrorReporter::Report(const GString&) const {}

GErrorReporter* GErrorReporter::GetInstance() {
    // No part of sInstance: two threads whose first failures meet must not both install one.
    static GErrorReporter sSilent;
    return sInstance ? sInstance.get() : &sSilent;
}

void GErrorReporter::SetInstance(GErrorReporter* reporter) {
    if (reporter != GetInstance()) sInstance.reset(reporter);
}
