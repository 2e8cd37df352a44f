#include "framework/core/paths/GValidFileName.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr unsigned short cFallback = '_';

bool IsRefused(unsigned short unit) {
    if (unit < 0x20) return true;
    switch (unit) {
        case '<':
        case '>':
        case ':':
        case '"':
        case '/':
        case '\\':
        case '|':
        case '?':
        case '*':
            return true;
        default:
            return false;
    }
}

bool IsDotOrBlank(unsigned short unit) {
    return unit == '.' || unit == ' ';
}

bool IsASCIIDigit(unsigned short unit) {
    return unit >= '0' && unit <= '9';
}

/// Windows takes superscript one, two and three for the digits behind COM and LPT.
bool IsPortDigit(unsigned short unit) {
    return IsASCIIDigit(unit) || unit == 0xB9 || unit == 0xB2 || unit == 0xB3;
}

bool IsASCIIEqual(GPathUnits units, const char* lower) {
    for (const unsigned short unit : units) {
        if (unit > 0x7F || *lower == 0) return false;
        const char folded = static_cast<char>(GPathText::IsASCIILetter(unit) ? unit | 0x20 : unit);
        if (folded != *lower++) return false;
    }
    return *lower == 0;
}

bool IsAnyOf(GPathUnits units, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(),
                       [units](const char* name) { return IsASCIIEqual(units, name); });
}

/// The system looks at what stands before the first dot, without blanks at its end.
bool IsDeviceName(GPathUnits name) {
    GPathUnits base = name.first(std::min(GPathText::Find(name, '.'), name.size()));
    while (!base.empty() && base.back() == ' ') base = base.first(base.size() - 1);
    if (base.size() == 4 && IsPortDigit(base[3])) return IsAnyOf(base.first(3), {"com", "lpt"});
    return IsAnyOf(base, {"con", "prn", "aux", "nul", "conin$", "conout$"});
}

}  // namespace

GValidFileName::GValidFileName(GPathUnits title, long maxLength, unsigned short replacement)
    : mLimit(maxLength < 1 ? cMaxLength : std::min(static_cast<std::size_t>(maxLength), cMaxLength)) {
    const bool halfOfPair =
        GUnicodeCharacters::IsHighSurrogate(replacement) || GUnicodeCharacters::IsLowSurrogate(replacement);
    mInside = IsRefused(replacement) || halfOfPair ? cFallback : replacement;
    mAtTheEnd = IsDotOrBlank(mInside) ? cFallback : mInside;
    mInFront = GPathText::IsASCIILetter(mAtTheEnd) || IsASCIIDigit(mAtTheEnd) ? cFallback : mAtTheEnd;

    // One unit more than may stay, so that the cut sees whether it would split a pair.
    mCount = std::min(title.size(), mLimit + 1);
    std::transform(title.data(), title.data() + mCount, mUnits,
                   [this](unsigned short unit) { return IsRefused(unit) ? mInside : unit; });
    CutToLimit();
    ReplaceTail();
    JoinEmptyStem();
    if (IsDeviceName(GetUnits())) PutInFront(mInFront);
}

GString GValidFileName::Get() const {
    return GPathText::MakeString(GetUnits());
}

bool GValidFileName::IsFolderName(GPathUnits name) {
    return !name.empty() && name.size() <= cMaxComponent &&
           std::none_of(name.begin(), name.end(), IsRefused) && !IsDotOrBlank(name.back()) &&
           !IsDeviceName(name);
}

void GValidFileName::CutToLimit() {
    if (mCount <= mLimit) return;
    mCount = mLimit;
    if (GUnicodeCharacters::IsHighSurrogate(mUnits[mCount - 1]) &&
        GUnicodeCharacters::IsLowSurrogate(mUnits[mCount]))
        --mCount;
}

void GValidFileName::ReplaceTail() {
    for (std::size_t i = mCount; i > 0 && IsDotOrBlank(mUnits[i - 1]); --i) mUnits[i - 1] = mAtTheEnd;
    if (mCount == 0) mUnits[mCount++] = mAtTheEnd;
}

/// Without its extension the name must still be one.
void GValidFileName::JoinEmptyStem() {
    const std::size_t dot = GPathText::FindLast(GetUnits(), '.');
    if (dot == GPathText::cNotFound) return;
    if (!std::all_of(mUnits, mUnits + dot, IsDotOrBlank)) return;
    std::fill_n(mUnits, std::max<std::size_t>(dot, 1), mAtTheEnd);
}

void GValidFileName::PutInFront(unsigned short unit) {
    std::copy_backward(mUnits, mUnits + mCount, mUnits + mCount + 1);
    mUnits[0] = unit;
    ++mCount;
    CutToLimit();
    ReplaceTail();
}
