#include "framework/core/patterns/GRegEx.h"

#include <algorithm>
#include <boost/regex.hpp>
#include <stdexcept>
#include <string>
#include <utility>

#include "framework/core/errors/GException.h"
#include "framework/core/patterns/GRegExTraits.h"

namespace {

using Expression = boost::basic_regex<char16_t, GRegExTraits>;
using Match = boost::match_results<const char16_t*>;

// A string's units as the engine wants them; they stay the string's.
struct Units {
    explicit Units(const GString& text)
        : begin(reinterpret_cast<const char16_t*>(text.GetUTF16Ptr())), end(begin + text.GetLength()) {}

    const char16_t* begin;
    const char16_t* end;
};

// The engine's failures, a malformed expression or one too slow for its text, become the framework's.
template <class Action>
auto Guard(Action action) {
    try {
        return action();
    } catch (const std::runtime_error& failure) {
        throw GCustomException(GExceptionID::cGeneral, GString(failure.what()));
    }
}

GString MakeString(const char16_t* begin, const char16_t* end) {
    return GString::FromUTF16(reinterpret_cast<const unsigned short*>(begin), static_cast<long>(end - begin));
}

GString GetGroup(const Match& match, std::size_t group) {
    return match[static_cast<int>(group)].matched
               ? MakeString(match[static_cast<int>(group)].first, match[static_cast<int>(group)].second)
               : GString();
}

bool Search(const Expression& expression, const GString& text, long start, Match& match) {
    const Units units(text);
    if (start > units.end - units.begin) return false;
    const char16_t* from = units.begin + std::max(start, 0L);
    // What stands before the start counts for "^" and word boundaries, but is not matched.
    return Guard([&] {
        return boost::regex_search(from, units.end, match, expression,
                                   from == units.begin ? boost::match_default : boost::match_prev_avail,
                                   units.begin);
    });
}

GRange GetRange(const Match& match, const Units& units) {
    const auto first = static_cast<long>(match[0].first - units.begin);
    return GRange(first, first + static_cast<long>(match[0].length()) - 1);
}

}  // namespace

struct GRegEx::Implementation {
    Expression expression;
};

GRegEx::GRegEx(const GString& expression, bool ignoreCase) {
    mImplementation = std::make_unique<Implementation>();
    const Units units(expression);
    const auto flags = ignoreCase ? boost::regex::perl | boost::regex::icase : boost::regex::perl;
    Guard([&] { return mImplementation->expression.assign(units.begin, units.end, flags); });
}

GRegEx::~GRegEx() = default;

GRegEx::GRegEx(GRegEx&& other) noexcept = default;

GRegEx& GRegEx::operator=(GRegEx&& other) noexcept = default;

long GRegEx::GetGroupCount() const {
    return static_cast<long>(mImplementation->expression.mark_count());
}

bool GRegEx::Matches(const GString& text) const {
    const Units units(text);
    return Guard([&] { return boost::regex_match(units.begin, units.end, mImplementation->expression); });
}

bool GRegEx::Find(const GString& text, long start, GRange& match) const {
    Match found;
    if (!Search(mImplementation->expression, text, start, found)) return false;
    match = GetRange(found, Units(text));
    return true;
}

bool GRegEx::Find(const GString& text, long start, GRange& match, GTable<GString>& groups) const {
    Match found;
    if (!Search(mImplementation->expression, text, start, found)) return false;
    GTable<GString> texts;
    for (std::size_t group = 0; group < found.size(); ++group) texts.Append(GetGroup(found, group));
    match = GetRange(found, Units(text));
    groups = std::move(texts);
    return true;
}

GString GRegEx::Replace(const GString& text, const GString& with) const {
    const Units units(text);
    const Units format(with);
    const std::u16string replacement(format.begin, format.end);
    const std::u16string result = Guard([&] {
        std::u16string out;
        boost::regex_replace(std::back_inserter(out), units.begin, units.end, mImplementation->expression,
                             replacement);
        return out;
    });
    return MakeString(result.data(), result.data() + result.size());
}
