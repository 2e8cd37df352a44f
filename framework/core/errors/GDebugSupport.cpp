#include "framework/core/errors/GDebugSupport.h"

#include <mutex>

#include "PPlatformTypes.h"
#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/errors/PStackDump.h"

GString GDebugSupport::GetStackDump() {
    static PCriticalSection sSection;
    const std::lock_guard<PCriticalSection> lock(sSection);
    GBuffer text("=== begin stack dump ===\n");
    PStackDump::AppendTo(text);
    text += "=== end stack dump ===\n";
    return GString(text, GASCIIEncoding::GetInstance(), true);
}
