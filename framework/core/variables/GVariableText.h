#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/text/GString.h"

/// GVariableText: takes a text apart into variables, such as "%Date%", and what stands between them.
///
/// A percent sign begins a variable and the next one ends it; the signs belong to its name. Two in a row
/// are one percent sign of text. One without a partner is an error, with which the text ends.
class QUILLON_EXPORT GVariableText {
public:
    /// What a piece is: text, a variable with its percent signs, or the rest behind a sign without partner.
    enum class Kind : std::uint8_t { cText, cVariable, cError };

    explicit GVariableText(const GString& text) : mText(text) {}  ///< keeps a copy of the text

    /// The next piece; false at the end.
    bool Next(Kind& kind, GString& piece);

private:
    GString mText;
    std::int32_t mPosition = 0;
};
