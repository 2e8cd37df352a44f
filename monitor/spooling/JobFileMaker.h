#pragma once

#include "PPlatformFiles.h"
#include "PPlatformTypes.h"
#include "framework/core/memory/GSharedObject.h"
#include "framework/files/GFile.h"
#include "monitor/spooling/JobPath.h"
#include "monitor/spooling/MonitorPlatform.h"

/// JobFileMaker: opens the file of one job, and makes the folders above it, so that nothing is used that
/// another user has prepared.
///
/// Folders and file are made with the rights of the calling thread. What must not be used is renamed, with
/// the rights of the service, and made anew; nothing is ever deleted.
class JobFileMaker {
public:
    explicit JobFileMaker(MonitorPlatform& platform);

    /// The empty file, open for writing; others may read it. Throws when the path is none, something
    /// cannot be made or set aside, or somebody keeps the file open; whatever was set aside stays so.
    GSharedObject<GFile> Open(const JobPath& path);

private:
    using Opened = PFolderWalk::Opened;
    using Purpose = PFolderWalk::Purpose;

    void Start(const GPathName& folder);
    void Enter(const GString& name);
    GSharedObject<GFile> OpenFile(const JobPath& path);
    Opened OpenAsService(const GString& name, Purpose purpose);
    const wchar_t* FindFaultOf(const Opened& file, const GString& name);
    void SetAside(const GString& name, const wchar_t* fault);
    PFolderWalk::Renamed RenameAsService(const GString& name, const GString& newName);

    MonitorPlatform& mPlatform;
    PFolderWalk mWalk;
    GPathName mFinalPath;  // of the folder that the walk has come to
};
