#pragma once

#include <memory>
#include <vector>

#include "framework/core/GExport.h"
#include "framework/core/paths/GPathName.h"

/// PWin32FileSystemIteratorImp: goes through what is in a folder, and in those below it.
///
/// The order is the file system's. What comes and goes meanwhile may be met or not. The entries "." and
/// ".." are left out. Failures throw PWin32SystemException with the folder as location. One thread at a
/// time.
class QUILLON_EXPORT PWin32FileSystemIteratorImp {
public:
    PWin32FileSystemIteratorImp();
    PWin32FileSystemIteratorImp(const PWin32FileSystemIteratorImp&) = delete;
    PWin32FileSystemIteratorImp& operator=(const PWin32FileSystemIteratorImp&) = delete;
    ~PWin32FileSystemIteratorImp();

    /// Starts with the folder; what was under way ends.
    void BeginIterate(const GPathName& folder);
    /// Goes down into the folder that was met last; EndIterate() comes back from there. Throws
    /// GSimpleException cFileNotFound when that was no folder.
    void BeginSubIterate();
    /// The first or the next one in the folder; false, with the outputs left alone, behind the last.
    bool GetFirstObject(GPathName& path, bool& isFolder);
    bool GetNextObject(GPathName& path, bool& isFolder);
    /// The next one of all that is in the folder and below it, each folder before what is in it. A folder
    /// that leads elsewhere (a junction or link) is met, but not gone into.
    bool GetNextFileOrFolder(GPathName& path, bool& isFolder);
    /// Back to the folder above; the last one ends it all.
    void EndIterate() noexcept;

private:
    struct Level;

    std::vector<std::unique_ptr<Level>> mLevels;  // the innermost last
};
