#include "monitor/spooling/JobTrace.h"

#include "framework/core/errors/GFirstFailure.h"

bool JobTrace::IsOn(const char* category) noexcept {
    bool isOn = false;
    RunQuietly([&] { isOn = GTraceLog::IsOn(category); });
    return isOn;
}
