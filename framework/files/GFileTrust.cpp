#include "framework/files/GFileTrust.h"

#include "framework/core/paths/GPathText.h"

namespace {

using Fault = GFileTrust::Fault;

Fault FindFaultOfPlace(const GFileFacts& facts, const GPathName& parent) {
    if (facts.mOwner == GFileFacts::Owner::cOther) return Fault::cForeign;
    GPathName expected = parent;
    expected.Append(facts.mFinalPath.GetLeaf());
    return facts.mFinalPath.HasLeaf() && facts.mFinalPath == expected ? Fault::cNone : Fault::cElsewhere;
}

}  // namespace

GFileTrust::Fault GFileTrust::FindFolderFault(const GFileFacts& facts, const GPathName& parent) {
    if (facts.mIsReparsePoint) return Fault::cLeadsAway;
    if (facts.mKind != GFileFacts::Kind::cFolder) return Fault::cNoFolder;
    return FindFaultOfPlace(facts, parent);
}

GFileTrust::Fault GFileTrust::FindFileFault(const GFileFacts& facts, const GPathName& parent,
                                            const GString& name) {
    if (facts.mIsReparsePoint) return Fault::cLeadsAway;
    if (facts.mKind != GFileFacts::Kind::cFile) return Fault::cNoFile;
    if (facts.mLinkCount > 1) return Fault::cLinkedTwice;
    if (const Fault fault = FindFaultOfPlace(facts, parent); fault != Fault::cNone) return fault;
    const bool hasName = GPathText::IsEqualIgnoreCase(GPathText::UnitsOf(facts.mFinalPath.GetLeaf()),
                                                      GPathText::UnitsOf(name));
    return hasName ? Fault::cNone : Fault::cOtherName;
}
