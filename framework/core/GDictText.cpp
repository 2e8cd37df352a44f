#include "framework/core/GDictText.h"

#include "framework/core/GString.h"
#include "framework/core/GUTF8Encoding.h"

GString GDictText<GString>::From(const GBuffer& bytes) {
    return GString(bytes, GUTF8Encoding::GetInstance(), true);
}
