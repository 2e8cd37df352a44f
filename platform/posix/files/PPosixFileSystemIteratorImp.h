#pragma once

#include <filesystem>
#include <vector>

#include "framework/core/paths/GPathName.h"

/// PPosixFileSystemIteratorImp: the twin of PWin32FileSystemIteratorImp, where the calls are described.
class PPosixFileSystemIteratorImp {
public:
    void BeginIterate(const GPathName& folder);
    void BeginSubIterate();
    bool GetFirstObject(GPathName& path, bool& isFolder);
    bool GetNextObject(GPathName& path, bool& isFolder);
    bool GetNextFileOrFolder(GPathName& path, bool& isFolder);
    void EndIterate() noexcept;

private:
    struct Level {
        GPathName folder;
        std::filesystem::directory_iterator entries;
        bool isOnEntry = false;
        bool hasBegun = false;
    };

    bool Take(GPathName& path, bool& isFolder);
    bool IsOnFolder() const;

    std::vector<Level> mLevels;  // the innermost last
};
