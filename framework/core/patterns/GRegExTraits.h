#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// GRegExTraits: what the expression engine asks about characters, answered by GUnicodeCharacters
/// and thus alike on every machine and in every locale.
struct GRegExTraits {
    using char_type = char16_t;
    using size_type = std::size_t;
    using string_type = std::u16string;
    using char_class_type = std::uint32_t;
    struct locale_type {};

    static size_type length(const char_type* text) { return std::char_traits<char_type>::length(text); }
    char_type translate(char_type unit) const { return unit; }
    char_type translate_nocase(char_type unit) const;
    // Ranges go by code, not by any language's alphabet.
    string_type transform(const char_type* first, const char_type* last) const { return {first, last}; }
    string_type transform_primary(const char_type* first, const char_type* last) const;
    char_class_type lookup_classname(const char_type* first, const char_type* last) const;
    string_type lookup_collatename(const char_type* first, const char_type* last) const;
    bool isctype(char_type unit, char_class_type classes) const;
    int value(char_type unit, int radix) const;
    locale_type imbue(locale_type locale) { return locale; }
    locale_type getloc() const { return {}; }
};
