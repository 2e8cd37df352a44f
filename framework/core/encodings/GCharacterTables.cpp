#include "framework/core/encodings/GCharacterTables.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace {

constexpr GLatinCharsetRow cLatinCharset[] = {
#include "framework/core/encodings/data/latin-charset.inc"
};
constexpr GMacExpertRow cMacExpert[] = {
#include "framework/core/encodings/data/mac-expert.inc"
};
// For the compiler alone, which packs it.
struct GlyphSource {
    std::string_view glyph;
    std::uint8_t count;
    std::array<std::uint16_t, 4> units;
};
constexpr GlyphSource cGlyphSources[] = {
#include "framework/core/encodings/data/glyphlist.inc"
};
constexpr GCompatRow cCompatCharacters[] = {
#include "framework/core/encodings/data/compat.inc"
};

template <class Row>
constexpr std::string_view GlyphOf(const Row& row) {
    return row.glyph;
}

static_assert(std::size(cLatinCharset) == 231);
static_assert(std::ranges::is_sorted(cLatinCharset, {}, GlyphOf<GLatinCharsetRow>));
static_assert(std::ranges::is_sorted(cMacExpert, {}, GlyphOf<GMacExpertRow>));
static_assert(std::ranges::adjacent_find(cGlyphSources, std::ranges::greater_equal(), &GlyphSource::glyph) ==
              std::end(cGlyphSources));
static_assert(std::ranges::adjacent_find(cCompatCharacters, std::ranges::greater_equal(),
                                         &GCompatRow::unit) == std::end(cCompatCharacters));

consteval std::size_t CountNameBytes() {
    std::size_t count = 0;
    for (const GlyphSource& source : cGlyphSources) count += source.glyph.size() + 1;
    return count;
}

struct GlyphList {
    std::array<char, CountNameBytes()> names{};
    std::array<GGlyphRow, std::size(cGlyphSources)> rows{};
};

consteval GlyphList MakeGlyphList() {
    GlyphList list;
    std::size_t position = 0;
    for (std::size_t i = 0; i < list.rows.size(); ++i) {
        const GlyphSource& source = cGlyphSources[i];
        list.rows[i] = {static_cast<std::uint16_t>(position), source.count, source.units};
        for (const char c : source.glyph) list.names[position++] = c;
        ++position;
    }
    return list;
}

static_assert(CountNameBytes() <= 0x10000);
constexpr GlyphList cGlyphList = MakeGlyphList();

}  // namespace

const char* GGlyphRow::GetGlyph() const noexcept {
    return &cGlyphList.names[position];
}

std::span<const GLatinCharsetRow> GCharacterTables::GetLatinCharset() noexcept {
    return cLatinCharset;
}

std::span<const GMacExpertRow> GCharacterTables::GetMacExpert() noexcept {
    return cMacExpert;
}

std::span<const GGlyphRow> GCharacterTables::GetGlyphList() noexcept {
    return cGlyphList.rows;
}

std::span<const GCompatRow> GCharacterTables::GetCompatCharacters() noexcept {
    return cCompatCharacters;
}
