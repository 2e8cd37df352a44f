#include "framework/core/GDictText.h"

#include "framework/core/GBufferSupport.h"
#include "framework/core/GDictUtil.h"
#include "framework/core/GString.h"
#include "framework/core/GUTF8Encoding.h"

GString GDictText<GString>::From(const GBuffer& bytes) {
    return GString(bytes, GUTF8Encoding::GetInstance(), true);
}

// A text, so it is defined among the texts, which the containers do not know.
GString GDictUtil::GetEOLString() {
    const char* ending = GBufferSupport::GetLineEndingNeedsLF() ? "\r\n" : "\r";
    if (!GBufferSupport::GetLineEndingNeedsCR()) ++ending;
    return GString(ending);
}
