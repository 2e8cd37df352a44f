#include "monitor/spooling/JobFileRules.h"

#include "framework/files/GFileTrust.h"

namespace {

constexpr long cLongestName = 255;

const wchar_t* WordOf(GFileTrust::Fault fault) {
    using Fault = GFileTrust::Fault;
    switch (fault) {
        case Fault::cLeadsAway:
            return L"PPMStartDocPort: set aside, it leads to another place";
        case Fault::cNoFolder:
            return L"PPMStartDocPort: set aside, it is no folder";
        case Fault::cNoFile:
            return L"PPMStartDocPort: set aside, it is no file";
        case Fault::cLinkedTwice:
            return L"PPMStartDocPort: set aside, it is linked twice";
        case Fault::cForeign:
            return L"PPMStartDocPort: set aside, it belongs to somebody else";
        case Fault::cElsewhere:
            return L"PPMStartDocPort: set aside, it lies in another place";
        case Fault::cOtherName:
            return L"PPMStartDocPort: set aside, it has another name";
        default:
            return nullptr;
    }
}

/// A multiplication spreads the seed over all bits; the low ones are spread least.
std::uint64_t Spread(std::uint64_t seed) {
    constexpr std::uint64_t cOddFactor = 0x9E3779B97F4A7C15;
    return (seed * cOddFactor) >> 33;
}

}  // namespace

const wchar_t* JobFileRules::FindFolderFault(const GFileFacts& facts, const GPathName& parent) {
    return WordOf(GFileTrust::FindFolderFault(facts, parent));
}

const wchar_t* JobFileRules::FindFileFault(const GFileFacts& facts, const GPathName& parent,
                                           const GString& name) {
    return WordOf(GFileTrust::FindFileFault(facts, parent, name));
}

GString JobFileRules::MakeSetAsideName(const GString& name, int attempt, std::uint64_t seed) {
    const auto counted = static_cast<std::uint64_t>(attempt);
    GString number(static_cast<unsigned long long>(
        attempt <= cCountedAttempts ? counted : Spread(seed + counted) + cCountedAttempts));
    const GString ending = GString(" (set aside ") + number + GString(")");
    const long room = cLongestName - ending.GetLength();
    return (name.GetLength() > room ? name.GetSubstring(0, room) : name) + ending;
}
