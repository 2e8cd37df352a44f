#pragma once

#include <array>
#include <cstdint>
#include <span>

/// A glyph of the Latin character set and its codes; 0 where an encoding lacks it.
struct GLatinCharsetRow {
    const char* glyph;
    unsigned char standard;
    unsigned char macRoman;
    unsigned char winAnsi;
    unsigned char pdfDoc;
};

struct GMacExpertRow {
    const char* glyph;
    unsigned char code;
};

/// A glyph name and the UTF-16 units that it stands for.
struct GGlyphRow {
    // The names stand in one text. A pointer for each would take four times as much, and the loader would
    // have to adjust all of them.
    std::uint16_t position;
    std::uint8_t count;
    std::array<std::uint16_t, 4> units;

    /// Zero-terminated; never freed.
    const char* GetGlyph() const noexcept;
};

struct GCompatRow {
    std::uint16_t unit;
    std::uint16_t plain;
};

/// GCharacterTables: the published tables behind the encodings. The data folder holds them as text.
struct GCharacterTables {
    /// In the order of glyph names. "hyphen" and "space" have a second row, with their second codes.
    static std::span<const GLatinCharsetRow> GetLatinCharset() noexcept;
    /// In the order of glyph names.
    static std::span<const GMacExpertRow> GetMacExpert() noexcept;
    /// In the order of glyph names.
    static std::span<const GGlyphRow> GetGlyphList() noexcept;
    /// In the order of units.
    static std::span<const GCompatRow> GetCompatCharacters() noexcept;
};
