#include "framework/core/patterns/GRegExTraits.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "framework/core/encodings/GUnicodeCharacters.h"

namespace {

using Classes = GRegExTraits::char_class_type;

constexpr Classes cAlpha = 1U << 0;
constexpr Classes cDigit = 1U << 1;
constexpr Classes cLower = 1U << 2;
constexpr Classes cUpper = 1U << 3;
constexpr Classes cSpace = 1U << 4;
constexpr Classes cBlank = 1U << 5;
constexpr Classes cControl = 1U << 6;
constexpr Classes cPunctuation = 1U << 7;
constexpr Classes cHexDigit = 1U << 8;
constexpr Classes cUnderscore = 1U << 9;
constexpr Classes cBeyondLatin1 = 1U << 10;
constexpr Classes cHorizontal = 1U << 11;
constexpr Classes cVertical = 1U << 12;
constexpr Classes cAlnum = cAlpha | cDigit;
constexpr Classes cGraph = cAlnum | cPunctuation;
constexpr Classes cPrint = cGraph | cBlank;

struct ClassName {
    std::u16string_view name;
    Classes classes;
};

constexpr ClassName cClassNames[] = {
    {u"alnum", cAlnum},
    {u"alpha", cAlpha},
    {u"blank", cBlank},
    {u"cntrl", cControl},
    {u"d", cDigit},
    {u"digit", cDigit},
    {u"graph", cGraph},
    {u"h", cHorizontal},
    {u"l", cLower},
    {u"lower", cLower},
    {u"print", cPrint},
    {u"punct", cPunctuation},
    {u"s", cSpace},
    {u"space", cSpace},
    {u"u", cUpper},
    {u"unicode", cBeyondLatin1},
    {u"upper", cUpper},
    {u"v", cVertical},
    {u"w", cAlnum | cUnderscore},
    {u"word", cAlnum | cUnderscore},
    {u"xdigit", cHexDigit},
};

bool IsIn(char16_t unit, std::u16string_view set) {
    return set.find(unit) != std::u16string_view::npos;
}

bool IsVertical(char16_t unit) {
    return IsIn(unit, u"\n\v\f\r\u0085\u2028\u2029");
}

bool IsBlank(char16_t unit) {
    return IsIn(unit, u"\t \u00A0\u1680\u202F\u205F\u3000") || (unit >= 0x2000 && unit <= 0x200A);
}

bool IsControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

bool IsHexDigit(char16_t unit) {
    return IsIn(unit, u"0123456789abcdefABCDEF");
}

Classes GetClasses(char16_t unit) {
    Classes classes = 0;
    if (GUnicodeCharacters::IsLetter(unit)) classes |= cAlpha;
    if (GUnicodeCharacters::IsDigit(unit)) classes |= cDigit;
    if (GUnicodeCharacters::ToUpper(unit) != unit) classes |= cLower;
    if (GUnicodeCharacters::ToLower(unit) != unit) classes |= cUpper;
    if (IsBlank(unit)) classes |= cBlank | cSpace | cHorizontal;
    if (IsVertical(unit)) classes |= cSpace | cVertical;
    if (IsControl(unit)) classes |= cControl;
    if (IsHexDigit(unit)) classes |= cHexDigit;
    if (unit == '_') classes |= cUnderscore;
    if (unit > 0xFF) classes |= cBeyondLatin1;
    if ((classes & (cAlnum | cSpace | cControl)) == 0) classes |= cPunctuation;
    return classes;
}

}  // namespace

GRegExTraits::char_type GRegExTraits::translate_nocase(char_type unit) const {
    return GUnicodeCharacters::ToLower(unit);
}

GRegExTraits::string_type GRegExTraits::transform_primary(const char_type* first,
                                                          const char_type* last) const {
    string_type key(first, last);
    std::ranges::transform(key, key.begin(), [this](char_type unit) { return translate_nocase(unit); });
    return key;
}

GRegExTraits::char_class_type GRegExTraits::lookup_classname(const char_type* first,
                                                             const char_type* last) const {
    const string_type name = transform_primary(first, last);
    const ClassName* found = std::ranges::find(cClassNames, std::u16string_view(name), &ClassName::name);
    return found == std::end(cClassNames) ? 0 : found->classes;
}

GRegExTraits::string_type GRegExTraits::lookup_collatename(const char_type* first,
                                                           const char_type* last) const {
    return last - first == 1 ? string_type(first, last) : string_type();
}

bool GRegExTraits::isctype(char_type unit, char_class_type classes) const {
    return (GetClasses(unit) & classes) != 0;
}

int GRegExTraits::value(char_type unit, int radix) const {
    int digit = -1;
    if (unit >= '0' && unit <= '9') digit = unit - '0';
    if (unit >= 'a' && unit <= 'f') digit = unit - 'a' + 10;
    if (unit >= 'A' && unit <= 'F') digit = unit - 'A' + 10;
    return digit < radix ? digit : -1;
}
