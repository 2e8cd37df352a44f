#pragma once

#include <initializer_list>

#include "framework/core/bytes/GBuffer.h"
#include "framework/core/bytes/GCharCode.h"
#include "framework/core/encodings/GUnicodeEncoding.h"
#include "framework/core/text/GString.h"
#include "tests/Testing.h"

// Between the framework's texts and the standard library's, which tests can print.

inline GBuffer BufferOf(std::string_view bytes) {
    return GBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<long>(bytes.size()));
}

inline GBuffer BufferOf(std::u16string_view units) {
    return GBuffer(reinterpret_cast<const unsigned char*>(units.data()), static_cast<long>(2 * units.size()));
}

inline std::string BytesOf(const GBuffer& buffer) {
    return std::string(reinterpret_cast<const char*>(buffer.GetRawData()),
                       static_cast<std::size_t>(buffer.GetLength()));
}

inline GCharCode CodeOf(std::string_view bytes) {
    return GCharCode(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<long>(bytes.size()));
}

inline GCharCode CodeOf(std::u16string_view units) {
    return GCharCode(reinterpret_cast<const unsigned short*>(units.data()), static_cast<long>(units.size()));
}

/// A UTF-16 string of exactly these units.
inline GString Text(std::u16string_view units) {
    return GString(BufferOf(units), GUnicodeEncoding::GetInstance(), true);
}

inline std::u16string Plain(const GBuffer& utf16) {
    std::u16string units;
    for (long i = 0; i < utf16.GetLength() / 2; ++i) units += static_cast<char16_t>(utf16.GetWordAt(i));
    return units;
}

inline std::u16string Plain(const GString& text) {
    return Plain(text.GetBuffer(GUnicodeEncoding::GetInstance()));
}

/// For traces.
inline std::string Readable(std::u16string_view text) {
    return testing::PrintToString(std::u16string(text));
}

template <class View>
constexpr typename View::value_type cArrow[] = {' ', '-', '>', ' ', 0};

/// The cells of a row that is written as one text, "path -> result", so that a table shows many rows at
/// a glance. A row with another number of cells fails.
template <std::size_t Count, class View>
std::array<View, Count> CellsOf(View row, std::type_identity_t<View> separator = cArrow<View>) {
    std::array<View, Count> cells;
    View rest = row;
    for (std::size_t i = 0; i < Count; ++i) {
        const std::size_t end = rest.find(separator);
        const bool isLast = i + 1 == Count;
        EXPECT_EQ(end == rest.npos, isLast) << "not " << Count << " cells: " << testing::PrintToString(row);
        cells[i] = rest.substr(0, isLast ? rest.npos : end);
        rest = end == rest.npos ? View() : rest.substr(end + separator.size());
    }
    return cells;
}

/// Calls `check` with the cells of each row, which a failure names.
template <std::size_t Count, class Row, class Check>
void ForEachRow(std::initializer_list<Row> rows, const Check& check) {
    for (const std::basic_string_view row : rows) {
        SCOPED_TRACE(testing::PrintToString(std::basic_string(row)));
        std::apply(check, CellsOf<Count>(row));
    }
}
