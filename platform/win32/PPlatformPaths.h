#pragma once

/// The definition of PPathNameImp on this platform.
#include "platform/win32/core/PWin32PathNameImp.h"

using PPathNameImp = PWin32PathNameImp;
