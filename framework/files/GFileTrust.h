#pragma once

#include <cstdint>

#include "framework/core/GExport.h"
#include "framework/core/text/GString.h"
#include "framework/files/GFileFacts.h"

/// GFileTrust: whether a file or folder that is there already may be used where anybody could have prepared
/// it. Decisions over facts alone; nothing here touches a disk.
struct QUILLON_EXPORT GFileTrust {
    /// Why it may not be used; of several reasons the first that is found.
    enum class Fault : std::uint8_t {
        cNone,
        cLeadsAway,  ///< a link or junction
        cNoFolder,
        cNoFile,
        cLinkedTwice,  ///< another name may lie where others can write
        cForeign,      ///< belongs to another user
        cElsewhere,    ///< really lies in another folder
        cOtherName,    ///< has been opened by a short name, which leads to another file
    };

    /// A folder may be used when it is one, lies directly in `parent` (a final path), and belongs to the
    /// user, the system or the administrators.
    static Fault FindFolderFault(const GFileFacts& facts, const GPathName& parent);
    /// A file, when it has this name and no other, too.
    static Fault FindFileFault(const GFileFacts& facts, const GPathName& parent, const GString& name);
};
