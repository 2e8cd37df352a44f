#pragma once

#include <memory>

#include "PPlatformTypes.h"
#include "framework/core/GExport.h"
#include "framework/core/paths/GPathName.h"
#include "framework/files/GFileTrust.h"

class GFile;

/// GTrustedFolder: a folder in a place where everybody may write, such as the temporary folder, and the
/// files in it, used only when no other user can have prepared them (GFileTrust).
///
/// The path of the folder above is followed wherever it leads; from there on no link is. The folder stays
/// open, so that nobody puts another in its place. Whatever must not be used stays as it is and is a
/// GCustomException cCouldNotOpenFile that tells why; what the system refuses throws as GFileSystem does.
/// Both have the path as location. The user is that of the thread that makes the object.
class QUILLON_EXPORT GTrustedFolder {
public:
    /// With `make`, a missing folder is made, for the user, the system and administrators alone.
    GTrustedFolder(const GPathName& path, bool make);
    GTrustedFolder(const GTrustedFolder&) = delete;
    GTrustedFolder& operator=(const GTrustedFolder&) = delete;
    ~GTrustedFolder();

    /// A file that is there; others may write it meanwhile.
    std::unique_ptr<GFile> OpenToRead(const GString& name) const;
    /// The file, made or emptied; others may read it meanwhile. Writes reach the disk before they return.
    std::unique_ptr<GFile> OpenEmpty(const GString& name) const;

private:
    std::unique_ptr<GFile> Open(const GString& name, bool toWrite) const;

    GPathName mPath;
    GPathName mFinalPath;
    std::unique_ptr<PFolderWalk> mWalk;
};
