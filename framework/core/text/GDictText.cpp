#include "framework/core/text/GDictText.h"

#include "framework/core/containers/GDictUtil.h"
#include "framework/core/encodings/GUTF8Encoding.h"
#include "framework/core/text/GBufferSupport.h"
#include "framework/core/text/GString.h"

GString GDictText<GString>::From(const GBuffer& bytes) {
    return GString(bytes, GUTF8Encoding::GetInstance(), true);
}

// A text, so it is defined among the texts, which the containers do not know.
GString GDictUtil::GetEOLString() {
    const char* ending = GBufferSupport::GetLineEndingNeedsLF() ? "\r\n" : "\r";
    if (!GBufferSupport::GetLineEndingNeedsCR()) ++ending;
    return GString(ending);
}
