#pragma once

/// The definition of PPathNameImp: paths have the same rules in a native build, which are plain text.
#include "platform/win32/core/PWin32PathNameImp.h"

using PPathNameImp = PWin32PathNameImp;
