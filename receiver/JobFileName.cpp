#include "receiver/JobFileName.h"

#include <algorithm>

namespace {

/// A path as its folder with the backslash, the name without its ending, and the ending with its dot.
struct Parts {
    explicit Parts(std::wstring_view path) {
        const std::size_t nameStart = path.find_last_of(L'\\') + 1;
        const std::size_t dot = path.find_last_of(L'.');
        const std::size_t end = dot == path.npos || dot <= nameStart ? path.size() : dot;
        folder = path.substr(0, nameStart);
        stem = path.substr(nameStart, end - nameStart);
        ending = path.substr(end);
    }
    std::wstring_view folder, stem, ending;
};

// Without " (word 4711-1)" at its end.
std::wstring_view WithoutMark(std::wstring_view stem, std::wstring_view word) {
    const std::wstring start = L" (" + std::wstring(word) + L' ';
    const std::size_t mark = stem.rfind(start);
    if (mark == stem.npos || !stem.ends_with(L')')) return stem;
    const std::wstring_view number = stem.substr(mark + start.size());
    const bool isNumber = number.find_first_not_of(L"0123456789-") == number.size() - 1;
    return isNumber && number.size() > 1 ? stem.substr(0, mark) : stem;
}

std::wstring_view WithoutOwnMark(std::wstring_view stem) {
    return WithoutMark(WithoutMark(stem, JobFileName::cWaiting), JobFileName::cTaken);
}

bool HasMark(std::wstring_view stem, std::wstring_view word) {
    return WithoutMark(stem, word).size() != stem.size();
}

bool IsHighSurrogate(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

}  // namespace

bool JobFileName::IsPending(std::wstring_view path) {
    const Parts parts(path);
    const auto isEnding = [](wchar_t one, wchar_t other) { return (one | 0x20) == other; };
    return std::ranges::equal(parts.ending, std::wstring_view(L".ps"), isEnding) && !parts.stem.empty() &&
           !HasMark(parts.stem, cTaken);
}

bool JobFileName::IsWaiting(std::wstring_view path) {
    return HasMark(Parts(path).stem, cWaiting);
}

bool JobFileName::IsSetAside(std::wstring_view path) {
    return HasMark(path, L"set aside");
}

std::wstring JobFileName::GetTitle(std::wstring_view path) {
    return std::wstring(WithoutOwnMark(Parts(path).stem));
}

std::wstring JobFileName::Mark(std::wstring_view path, std::wstring_view word, std::wstring_view number) {
    constexpr std::size_t cMaxPathUnits = 259;
    constexpr std::size_t cMaxNameUnits = 255;
    const Parts parts(path);
    const std::wstring mark =
        L" (" + std::wstring(word) + L' ' + std::wstring(number) + L')' + std::wstring(parts.ending);
    const std::size_t taken = mark.size() + parts.folder.size();
    const std::size_t room = std::min(cMaxPathUnits - std::min(cMaxPathUnits, taken),
                                      cMaxNameUnits - std::min(cMaxNameUnits, mark.size()));
    std::wstring_view title = WithoutOwnMark(parts.stem);
    title = title.substr(0, room);
    while (!title.empty() && IsHighSurrogate(title.back())) title.remove_suffix(1);
    return title.empty() ? std::wstring() : std::wstring(parts.folder) + std::wstring(title) + mark;
}
