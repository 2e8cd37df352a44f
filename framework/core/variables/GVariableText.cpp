#include "framework/core/variables/GVariableText.h"

bool GVariableText::Next(Kind& kind, GString& piece) {
    constexpr unsigned short cPercent = '%';
    const long length = mText.GetLength();
    if (mPosition >= length) return false;
    const bool isVariable = mText[mPosition] == cPercent;
    const long partner = mText.FindFirst(cPercent, mPosition + (isVariable ? 1 : 0));
    long end = partner < 0 ? length : partner;
    kind = Kind::cText;
    if (isVariable) {
        kind = partner < 0 ? Kind::cError : Kind::cVariable;
        if (partner >= 0) ++end;
    }
    mText.GetSubstring(mPosition, end - mPosition, piece);
    if (piece.GetLength() == 2 && kind == Kind::cVariable) {
        kind = Kind::cText;
        piece.SetLength(1);
    }
    mPosition = static_cast<std::int32_t>(end);
    return true;
}
