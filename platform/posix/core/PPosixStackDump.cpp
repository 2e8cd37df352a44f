#include "framework/core/bytes/GBuffer.h"
#include "framework/core/errors/PStackDump.h"

void PStackDump::AppendTo(GBuffer& text) {
    text += "Error: the stack cannot be walked on this system\n";
}
