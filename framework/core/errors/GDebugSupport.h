#pragma once

#include "framework/core/GExport.h"
#include "framework/core/text/GString.h"

/// Help for diagnostics.
class QUILLON_EXPORT GDebugSupport {
public:
    /// The calling thread's stack as text: a begin line, one line "address: module! name + n bytes"
    /// for each of at most 1024 callers, innermost first, and an end line. Where the system cannot
    /// tell, an error line stands between the two; a stack that leads nowhere ends the list there.
    /// Calls from several threads take turns. Throws only for want of memory.
    static GString GetStackDump();
};
