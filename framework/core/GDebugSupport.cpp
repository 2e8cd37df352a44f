#include "framework/core/GDebugSupport.h"

#include <mutex>

#include "PPlatformTypes.h"
#include "framework/core/GASCIIEncoding.h"
#include "framework/core/GBuffer.h"
#include "platform/PStackDump.h"

GString GDebugSupport::GetStackDump() {
    static PCriticalSection sSection;
    const std::lock_guard<PCriticalSection> lock(sSection);
    GBuffer text("=== begin stack dump ===\n");
    PStackDump::AppendTo(text);
    text += "=== end stack dump ===\n";
    return GString(text, GASCIIEncoding::GetInstance(), true);
}
