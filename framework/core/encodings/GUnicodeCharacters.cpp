#include "framework/core/encodings/GUnicodeCharacters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace {

struct CaseRow {
    std::uint16_t unit;
    std::uint16_t counterpart;
};

struct UnitRange {
    std::uint16_t first;
    std::uint16_t last;
};

constexpr CaseRow cLowerRows[] = {
#include "framework/core/encodings/data/lower.inc"
};
constexpr CaseRow cUpperRows[] = {
#include "framework/core/encodings/data/upper.inc"
};
constexpr UnitRange cLetters[] = {
#include "framework/core/encodings/data/letters.inc"
};
constexpr UnitRange cDigits[] = {
#include "framework/core/encodings/data/digits.inc"
};

// From a unit to its counterpart in two steps: the high byte selects a page, the low byte the
// difference, modulo 2^16. Page 0 is all zeros and serves every high byte without letters.
template <std::size_t PageCount>
struct CaseMap {
    std::array<std::uint8_t, 256> pageOfHighByte{};
    std::array<std::array<std::uint16_t, 256>, PageCount> pages{};

    constexpr unsigned short Map(unsigned short unit) const {
        return static_cast<unsigned short>(unit + pages[pageOfHighByte[unit >> 8]][unit & 0xFF]);
    }
};

template <std::size_t RowCount>
consteval std::size_t CountPages(const CaseRow (&rows)[RowCount]) {
    std::size_t pages = 1;
    for (std::size_t i = 0; i < RowCount; ++i)
        if (i == 0 || rows[i].unit >> 8 != rows[i - 1].unit >> 8) ++pages;
    return pages;
}

template <std::size_t PageCount, std::size_t RowCount>
consteval CaseMap<PageCount> MakeCaseMap(const CaseRow (&rows)[RowCount]) {
    CaseMap<PageCount> map;
    std::uint8_t lastPage = 0;
    for (const CaseRow& row : rows) {
        std::uint8_t& page = map.pageOfHighByte[row.unit >> 8];
        if (page == 0) page = ++lastPage;
        map.pages[page][row.unit & 0xFF] = static_cast<std::uint16_t>(row.counterpart - row.unit);
    }
    return map;
}

constexpr auto cLower = MakeCaseMap<CountPages(cLowerRows)>(cLowerRows);
constexpr auto cUpper = MakeCaseMap<CountPages(cUpperRows)>(cUpperRows);

template <std::size_t Count>
bool IsInRanges(const UnitRange (&ranges)[Count], unsigned short unit) {
    const UnitRange* range = std::ranges::lower_bound(ranges, unit, {}, &UnitRange::last);
    return range != std::end(ranges) && range->first <= unit;
}

}  // namespace

unsigned short GUnicodeCharacters::ToLower(unsigned short unit) noexcept {
    return cLower.Map(unit);
}

unsigned short GUnicodeCharacters::ToUpper(unsigned short unit) noexcept {
    return cUpper.Map(unit);
}

bool GUnicodeCharacters::IsLetter(unsigned short unit) noexcept {
    return IsInRanges(cLetters, unit);
}

bool GUnicodeCharacters::IsDigit(unsigned short unit) noexcept {
    return IsInRanges(cDigits, unit);
}
