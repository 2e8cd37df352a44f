#pragma once

#include "framework/GBasicFrameworkCoreLayer.h"

/// GFrameworkScope: the framework runs while it exists. Made first and destroyed last, on the thread that
/// starts and ends the program; scopes may nest.
class GFrameworkScope {
public:
    /// Throws what the start of the framework throws.
    GFrameworkScope() { GBasicFrameworkCoreLayer::Initialize(); }
    GFrameworkScope(const GFrameworkScope&) = delete;
    GFrameworkScope& operator=(const GFrameworkScope&) = delete;
    ~GFrameworkScope() { GBasicFrameworkCoreLayer::Finalize(); }
};
