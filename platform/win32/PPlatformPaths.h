#pragma once

/// The definition of PPathNameImp on this platform.
#include "platform/win32/PWin32PathNameImp.h"

using PPathNameImp = PWin32PathNameImp;
