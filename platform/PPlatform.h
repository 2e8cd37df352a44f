#pragma once

/// The one place that chooses the platform's classes: the build shows the compiler either
/// platform/win32 or platform/posix, and each holds a PPlatformTypes.h with the same aliases.
#include "PPlatformTypes.h"
