#pragma once

/// What the decoders of text have in common.
struct GTextByte {
    /// White space, which may stand anywhere: NUL, tab, LF, form feed, CR and blank.
    static constexpr bool IsWhiteSpace(unsigned char byte) {
        return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t' || byte == '\f' || byte == 0;
    }
};
