#include "framework/core/encodings/GCustomEncoding.h"

#include <algorithm>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/encodings/GUnicodeEncoding.h"

long GCustomEncoding::ConvertFrom(const GBuffer& bytes, const GEncoding* source, GBuffer& out) const {
    if (source == nullptr) {
        out.Clear();
        return cConverted;
    }
    GBuffer utf16;
    const long read = source->ConvertTo(bytes, GUnicodeEncoding::GetInstance(), utf16);
    return std::max(read, ConvertFromUnicode(utf16, out));
}
