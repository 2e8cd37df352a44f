#pragma once

// The one place that includes the spooler's headers. Their macros would rename methods of ours that
// share a call's name (MonitorPlatform::OpenPrinter).
#include "platform/win32/base/PWin32Api.h"

#include <winspool.h>

// Built on the types of the one above.
#include <winsplp.h>

#undef OpenPrinter
#undef EnumPorts
#undef AddPort
#undef GetJob
#undef SetJob
