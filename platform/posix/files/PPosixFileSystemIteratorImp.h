#pragma once

#include "framework/files/GFolderIterator.h"

/// PPosixFileSystemIteratorImp: a GFolderIterator over this platform's folders.
class QUILLON_EXPORT PPosixFileSystemIteratorImp : public GFolderIterator {
private:
    std::unique_ptr<Folder> Open(const GPathName& path) const override;
};
