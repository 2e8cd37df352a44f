#pragma once

#include "framework/core/text/GString.h"
#include "framework/files/GFileFacts.h"

/// JobFileRules: what of the folders and files that are there already a job may use, in the monitor's words,
/// and what becomes of the rest. Decisions alone; nothing here touches a disk.
///
/// A fault is the word by which the monitor traces it; null is none.
struct JobFileRules {
    /// The rules of GFileTrust.
    static const wchar_t* FindFolderFault(const GFileFacts& facts, const GPathName& parent);
    static const wchar_t* FindFileFault(const GFileFacts& facts, const GPathName& parent,
                                        const GString& name);
    /// "anna (set aside 1)", at most 255 units long. Of the attempts the first ones count upwards; later ones
    /// take a number from `seed`, because anybody could have taken the low ones on purpose.
    static GString MakeSetAsideName(const GString& name, int attempt, std::uint64_t seed);

    static constexpr int cCountedAttempts = 32;
    static constexpr int cAllAttempts = 64;
};
