#include "monitor/spooling/JobFileRules.h"

#include "framework/core/paths/GPathText.h"

namespace {

constexpr long cLongestName = 255;

bool IsTrusted(GFileFacts::Owner owner) {
    return owner != GFileFacts::Owner::cOther;
}

constexpr const wchar_t* cLeadsAway = L"PPMStartDocPort: set aside, it leads to another place";

const wchar_t* FindFaultOfPlace(const GFileFacts& facts, const GPathName& parent) {
    if (!IsTrusted(facts.mOwner)) return L"PPMStartDocPort: set aside, it belongs to somebody else";
    GPathName expected = parent;
    expected.Append(facts.mFinalPath.GetLeaf());
    if (!facts.mFinalPath.HasLeaf() || facts.mFinalPath != expected)
        return L"PPMStartDocPort: set aside, it lies in another place";
    return nullptr;
}

/// A multiplication spreads the seed over all bits; the low ones are spread least.
std::uint64_t Spread(std::uint64_t seed) {
    constexpr std::uint64_t cOddFactor = 0x9E3779B97F4A7C15;
    return (seed * cOddFactor) >> 33;
}

}  // namespace

const wchar_t* JobFileRules::FindFolderFault(const GFileFacts& facts, const GPathName& parent) {
    if (facts.mIsReparsePoint) return cLeadsAway;
    if (facts.mKind != GFileFacts::Kind::cFolder) return L"PPMStartDocPort: set aside, it is no folder";
    return FindFaultOfPlace(facts, parent);
}

const wchar_t* JobFileRules::FindFileFault(const GFileFacts& facts, const GPathName& parent,
                                           const GString& name) {
    if (facts.mIsReparsePoint) return cLeadsAway;
    if (facts.mKind != GFileFacts::Kind::cFile) return L"PPMStartDocPort: set aside, it is no file";
    if (facts.mLinkCount > 1) return L"PPMStartDocPort: set aside, it is linked twice";
    if (const wchar_t* fault = FindFaultOfPlace(facts, parent)) return fault;
    // A short name leads to the file of another title.
    const GString leaf = facts.mFinalPath.GetLeaf();
    if (!GPathText::IsEqualIgnoreCase(GPathText::UnitsOf(leaf), GPathText::UnitsOf(name)))
        return L"PPMStartDocPort: set aside, it has another name";
    return nullptr;
}

GString JobFileRules::MakeSetAsideName(const GString& name, int attempt, std::uint64_t seed) {
    const auto counted = static_cast<std::uint64_t>(attempt);
    GString number(static_cast<unsigned long long>(
        attempt <= cCountedAttempts ? counted : Spread(seed + counted) + cCountedAttempts));
    const GString ending = GString(" (set aside ") + number + GString(")");
    const long room = cLongestName - ending.GetLength();
    return (name.GetLength() > room ? name.GetSubstring(0, room) : name) + ending;
}
