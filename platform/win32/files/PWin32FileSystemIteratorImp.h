#pragma once

#include "framework/files/GFolderIterator.h"

/// PWin32FileSystemIteratorImp: a GFolderIterator over this platform's folders.
class QUILLON_EXPORT PWin32FileSystemIteratorImp : public GFolderIterator {
private:
    std::unique_ptr<Folder> Open(const GPathName& path) const override;
};
