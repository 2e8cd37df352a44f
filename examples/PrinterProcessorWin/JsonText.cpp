#include "examples/PrinterProcessorWin/JsonText.h"

namespace {

bool IsHighSurrogate(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(wchar_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendEscape(std::wstring& json, wchar_t unit) {
    constexpr wchar_t cDigits[] = L"0123456789abcdef";
    json += L"\\u";
    for (int shift = 12; shift >= 0; shift -= 4) json += cDigits[unit >> shift & 15];
}

void AppendUnit(std::wstring& json, wchar_t unit) {
    switch (unit) {
        case L'"':
            json += L"\\\"";
            return;
        case L'\\':
            json += L"\\\\";
            return;
        case L'\t':
            json += L"\\t";
            return;
        case L'\n':
            json += L"\\n";
            return;
        case L'\r':
            json += L"\\r";
            return;
        default:
            break;
    }
    // Programs that read line by line may take U+0085, U+2028 and U+2029 for line ends.
    const bool isLineEnd = unit == 0x85 || unit == 0x2028 || unit == 0x2029;
    if (unit < 0x20 || unit == 0x7F || isLineEnd) {
        AppendEscape(json, unit);
    } else {
        json += unit;
    }
}

}  // namespace

std::wstring QuoteAsJson(std::wstring_view text) {
    std::wstring json = L"\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t unit = text[i];
        if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            json += unit;
            json += text[++i];
        } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
            AppendEscape(json, unit);
        } else {
            AppendUnit(json, unit);
        }
    }
    return json + L'"';
}
