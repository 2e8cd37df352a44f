#pragma once

#include "framework/core/encodings/GCharacterTables.h"

class GSimpleEncoding;

/// GLatinCharset: fills the encodings that are columns of the Latin character set.
struct GLatinCharset {
    /// Maps every code that stands in the column to its glyph. A column's second codes for "space"
    /// and "hyphen" mean the no-break space and the soft hyphen.
    static void AddMappings(GSimpleEncoding& encoding, unsigned char GLatinCharsetRow::*column);
};
