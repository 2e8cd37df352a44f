#pragma once

#include "framework/GFrameworkScope.h"
#include "framework/core/GExport.h"

class GWaitBudget;

/// GPPHandOffScope: while it exists, the framework runs and messages from the port monitor can be received.
/// For processing applications. Made first and destroyed last, on the thread that owns everything in between.
class QUILLON_EXPORT GPPHandOffScope {
public:
    /// Throws a GException when the messaging cannot be started. `budget`, null for none, limits all waits
    /// for shared mutexes and outlives the scope.
    explicit GPPHandOffScope(GWaitBudget* budget = nullptr);
    GPPHandOffScope(const GPPHandOffScope&) = delete;
    GPPHandOffScope& operator=(const GPPHandOffScope&) = delete;
    /// A registration that cannot be taken back is left to whoever meets it next.
    ~GPPHandOffScope();

private:
    GFrameworkScope mFramework;
};
