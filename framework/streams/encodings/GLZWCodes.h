#pragma once

#include <cstdint>

/// What the writer and the reader of LZW data agree on.
///
/// Codes have 9 to 12 bits, highest bit first. 0 to 255 are bytes, 256 clears the table, 257 ends the
/// data, and from 258 on stand the strings that were met since the table was cleared.
struct GLZWCodes {
    static constexpr std::int32_t cClear = 256;
    static constexpr std::int32_t cEnd = 257;
    static constexpr std::int32_t cFirstString = 258;
    static constexpr std::int32_t cFirstWidth = 9;
    static constexpr std::int32_t cLastWidth = 12;
    static constexpr std::int32_t cTableSize = 1 << cLastWidth;

    /// The width of the codes behind a string that made `next` the reader's next code. `earlyChange` is
    /// how many codes before it must the width grows: 0 or 1.
    static constexpr std::int32_t NextWidth(std::int32_t width, std::int32_t next, std::int32_t earlyChange) {
        return next + earlyChange >= 1 << width && width < cLastWidth ? width + 1 : width;
    }
    /// Throws GExceptionID::cInvalidParameter unless it is 0 or 1.
    static std::int32_t CheckEarlyChange(long earlyChange);
};
