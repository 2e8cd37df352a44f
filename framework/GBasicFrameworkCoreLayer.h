#pragma once

#include <cstdint>

#include "framework/core/GExport.h"

/// GBasicFrameworkCoreLayer: the counted start-up and shut-down of the framework.
///
/// Between the two the line ending is the platform's, and the encodings, the numbered messages, the
/// progress centre, the trace log and the well-known identifiers of the messaging exist. Not locked: a
/// program calls both from the thread that starts and ends it.
class QUILLON_EXPORT GBasicFrameworkCoreLayer {
public:
    /// Only the first call works. When it throws, nothing is started and nothing counted.
    static void Initialize();
    /// The call that matches the first Initialize ends everything; one too many does nothing.
    static void Finalize() noexcept;

private:
    static std::int32_t sInitCount;
};
