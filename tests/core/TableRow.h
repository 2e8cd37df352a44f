#pragma once

#include <array>
#include <string_view>

/// The cells of a row that is written as one text, "path -> result", so that a table shows many rows at
/// a glance. A missing cell is empty.
template <std::size_t Count>
std::array<std::u16string_view, Count> CellsOf(std::u16string_view row,
                                               std::u16string_view separator = u" -> ") {
    std::array<std::u16string_view, Count> cells;
    for (std::u16string_view& cell : cells) {
        const std::size_t end = row.find(separator);
        cell = row.substr(0, end);
        row = end == row.npos ? std::u16string_view() : row.substr(end + separator.size());
    }
    return cells;
}
