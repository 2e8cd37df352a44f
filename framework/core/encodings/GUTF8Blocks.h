#pragma once

#include <cstddef>

/// GUTF8Blocks: the bulk of a conversion between UTF-8 of one to three bytes a unit and UTF-16, in
/// blocks, whatever mixture of kinds they hold.
///
/// Blocks are put together by shuffles of bytes, which nearly every processor can do (SSSE3). On one
/// that cannot, blocks of ASCII are all that is converted. UTF-16 is addressed as bytes.
struct GUTF8Blocks {
    /// How far a conversion has come: what was read is what was written, and ends with a character.
    struct Progress {
        std::size_t read = 0;
        std::size_t written = 0;
    };

    /// Reads UTF-8 up to a block that holds an invalid byte, or up to the last bytes: these are left
    /// to the caller. `room` counts units.
    static Progress Read(const unsigned char* bytes, std::size_t length, unsigned char* units,
                         std::size_t room) noexcept;
    /// Writes UTF-8 up to the last units. `room` is no less than what all of them take.
    static Progress Write(const unsigned char* units, std::size_t count, unsigned char* bytes,
                          std::size_t room) noexcept;
};
