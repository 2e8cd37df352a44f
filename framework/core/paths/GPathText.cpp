#include "framework/core/paths/GPathText.h"

#include "framework/core/encodings/GASCIIEncoding.h"
#include "framework/core/encodings/GUnicodeEncoding.h"

const GBuffer* GPathText::GetPlainASCII(const GString& text) noexcept {
    if (text.GetEncoding() != GASCIIEncoding::GetInstance()) return nullptr;
    const GBuffer& bytes = text.GetEncodedBuffer();
    const unsigned char* const first = bytes.GetRawData();
    const bool plain =
        std::all_of(first, first + bytes.GetLength(), [](unsigned char c) { return c < 0x80; });
    return plain ? &bytes : nullptr;
}

GString GPathText::MakeString(GPathUnits units) {
    if (units.empty()) return GString();
    GUnitBuilder text(units.size());
    text.Add(units);
    return text.Take();
}

GString GPathText::MakeUnicode(const GString& text) {
    if (text.IsEmpty()) return GString();
    if (const GBuffer* const ascii = GetPlainASCII(text)) {
        GUnitBuilder units(static_cast<std::size_t>(ascii->GetLength()));
        units.AddBytes(*ascii);
        return units.Take();
    }
    const GEncoding* const unicode = GUnicodeEncoding::GetInstance();
    if (text.GetEncoding() != nullptr && text.GetEncoding() != unicode)
        return GString(text.GetBuffer(unicode), unicode);
    GString copy(text);
    copy.EnsureUnicode();
    return copy;
}

GPathInput::GPathInput(const GString& text) {
    const GBuffer* const ascii = GPathText::GetPlainASCII(text);
    if (ascii != nullptr && static_cast<std::size_t>(ascii->GetLength()) <= cMostWidened) {
        const unsigned char* const first = ascii->GetRawData();
        std::copy(first, first + ascii->GetLength(), mWidened);
        mUnits = {mWidened, static_cast<std::size_t>(ascii->GetLength())};
    } else {
        mUnits = GPathText::UnitsOf(text);
    }
}
