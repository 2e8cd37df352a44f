#pragma once

#include <array>
#include <string_view>

/// The cells of a row that is written as one text, "path -> result", so that a table shows many rows at
/// a glance. A missing cell is empty.
template <std::size_t Count, class Text>
std::array<Text, Count> SplitRow(Text row, Text separator) {
    std::array<Text, Count> cells;
    for (Text& cell : cells) {
        const std::size_t end = row.find(separator);
        cell = row.substr(0, end);
        row = end == row.npos ? Text() : row.substr(end + separator.size());
    }
    return cells;
}

template <std::size_t Count>
auto CellsOf(std::u16string_view row, std::u16string_view separator = u" -> ") {
    return SplitRow<Count>(row, separator);
}

template <std::size_t Count>
auto CellsOf(std::string_view row) {
    return SplitRow<Count>(row, std::string_view(" -> "));
}
