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
constexpr GGlyphRow cGlyphList[] = {
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
static_assert(std::ranges::adjacent_find(cGlyphList, std::ranges::greater_equal(), GlyphOf<GGlyphRow>) ==
              std::end(cGlyphList));
static_assert(std::ranges::adjacent_find(cCompatCharacters, std::ranges::greater_equal(),
                                         &GCompatRow::unit) == std::end(cCompatCharacters));

}  // namespace

std::span<const GLatinCharsetRow> GCharacterTables::GetLatinCharset() noexcept {
    return cLatinCharset;
}

std::span<const GMacExpertRow> GCharacterTables::GetMacExpert() noexcept {
    return cMacExpert;
}

std::span<const GGlyphRow> GCharacterTables::GetGlyphList() noexcept {
    return cGlyphList;
}

std::span<const GCompatRow> GCharacterTables::GetCompatCharacters() noexcept {
    return cCompatCharacters;
}
