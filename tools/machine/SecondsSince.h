#pragma once

#include "platform/win32/base/PWin32Api.h"

/// Whole seconds since then by the system's clock; 0 for a moment that is still to come.
long long SecondsSince(const FILETIME& time);
