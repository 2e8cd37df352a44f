#pragma once

#include <memory>
#include <vector>

#include "framework/core/GExport.h"
#include "framework/core/paths/GPathName.h"

/// GFolderIterator: goes through what is in a folder, and in those below it. Programs use the platform's
/// own, PFileSystemIteratorImp, which supplies the folders.
///
/// The order is the file system's. What comes and goes meanwhile may be met or not. The entries "." and
/// ".." are left out. Failures throw what the platform throws, with the folder as location; a folder that
/// could not be read is passed over by the next call. One thread at a time.
class QUILLON_EXPORT GFolderIterator {
public:
    /// For platforms: one folder that is being gone through.
    class QUILLON_EXPORT Folder {
    public:
        Folder() = default;
        Folder(const Folder&) = delete;
        Folder& operator=(const Folder&) = delete;
        virtual ~Folder();

        ///@{ Go to the first or next entry; false behind the last. First() comes before all else.
        virtual bool First() = 0;
        virtual bool Next() = 0;
        ///@}
        virtual GPathName GetPath() const = 0;    ///< of the entry
        virtual bool IsFolder() const = 0;        ///< whether the entry is one
        virtual bool LeadsElsewhere() const = 0;  ///< whether the entry is a junction or link
    };

    GFolderIterator(const GFolderIterator&) = delete;
    GFolderIterator& operator=(const GFolderIterator&) = delete;
    virtual ~GFolderIterator();

    /// Starts with the folder; what was under way ends.
    void BeginIterate(const GPathName& folder);
    /// Goes down into the folder that was met last; EndIterate() comes back from there. Throws
    /// GSimpleException cFileNotFound when that was no folder.
    void BeginSubIterate();
    ///@{ The first or the next one in the folder; false, with the outputs left alone, behind the last.
    bool GetFirstObject(GPathName& path, bool& isFolder);
    bool GetNextObject(GPathName& path, bool& isFolder);
    ///@}
    /// The next one of all that is in the folder and below it, each folder before what is in it. A folder
    /// that leads elsewhere (a junction or link) is met, but not gone into.
    bool GetNextFileOrFolder(GPathName& path, bool& isFolder);
    /// Back to the folder above; the last one ends it all.
    void EndIterate() noexcept;

protected:
    GFolderIterator();

private:
    struct Level {
        std::unique_ptr<Folder> folder;
        bool hasBegun = false;
        bool isOnEntry = false;
    };

    /// Does not read yet.
    virtual std::unique_ptr<Folder> Open(const GPathName& path) const = 0;
    bool IsOnFolder() const;
    bool GoTo(bool (Folder::*step)(), GPathName& path, bool& isFolder);

    std::vector<Level> mLevels;  // the innermost last
};
