#include "framework/core/GBuffer.h"
#include "platform/PStackDump.h"

void PStackDump::AppendTo(GBuffer& text) {
    text += "Error: the stack cannot be walked on this system\n";
}
