#pragma once

#include <cstdint>

#include "framework/core/paths/GPathName.h"

/// GFileFacts: what the system says about one opened file or folder, for a decision whether to trust it.
struct GFileFacts {
    /// What it is.
    enum class Kind : std::uint8_t {
        cUnknown,  ///< the system does not tell
        cFile,
        cFolder,
        cDevice,  ///< a pipe, a device and whatever else is no file on a disk
    };
    /// Whom it belongs to, from the view of the user for whom it is opened.
    enum class Owner : std::uint8_t {
        cOther,  ///< also when the system does not tell
        cUser,
        cSystem,
        cAdministrators,
        cTrustedInstaller,
        cNotKept,  ///< the volume knows no owners
    };

    Kind mKind = Kind::cUnknown;   ///< cUnknown until the system has told
    Owner mOwner = Owner::cOther;  ///< cOther until the system has told
    bool mIsReparsePoint = false;  ///< a junction, a link, or what else leads away from here
    std::int32_t mLinkCount = 0;   ///< the names under which it is found
    GPathName mFinalPath;          ///< where it really is, on its volume; for comparison with others
};
