#pragma once

#include "framework/core/paths/GPathName.h"
#include "framework/core/time/GDateTime.h"

/// PPosixFileSystemImp: the calls of GFileSystemBase on a UNIX system.
///
/// Failures throw GCustomException GExceptionID::cUNIXSystemError, those of a path with the path as
/// location.
class PPosixFileSystemImp {
public:
    // From the environment (XDG folders); folders that UNIX has no like of are those of /usr and /etc.
    static GPathName GetUserApplicationDataFolder();
    static GPathName GetUserPreferenceFolder();
    static GPathName GetCommonAppDataFolder();
    static GPathName GetGlobalPreferenceFolder();
    static GPathName GetDesktopFolder();
    static GPathName GetUserDocumentsFolder();
    static GPathName GetSystemFolder();
    static GPathName GetGlobalSystemFolder();
    static GPathName GetApplicationsFolder();
    static GPathName GetApplicationsFolder32();
    static GPathName GetUserHomeFolder();
    /// Empty when the system does not tell.
    static GPathName GetGlobalTempFolder();
    static GPathName GetLibraryPath();
    static GPathName GetApplicationPath();

    static bool FileExists(const GPathName& path);
    static bool FolderExists(const GPathName& path);
    static bool FileInUse(const GPathName& path);
    static long GetVolumeType(const GPathName& path);

    /// Makes the file, whose folders exist; an existing one is fine unless `mustBeNew`.
    static void CreateFile(const GPathName& path, bool mustBeNew);
    static void CreateFolder(const GPathName& path);
    static void RemoveFile(const GPathName& path);
    static void RemoveFolderOnly(const GPathName& path);
    /// `from` becomes `to`; across volumes for files only. What exists at `to` is not replaced.
    static void MoveFile(const GPathName& from, const GPathName& to);
    static void MoveFolder(const GPathName& from, const GPathName& to);
    static void CopyFile(const GPathName& from, const GPathName& to);
    /// `from` takes the place of `to`, in one step.
    static void ReplaceFile(const GPathName& from, const GPathName& to);

    static bool IsHidden(const GPathName& path);
    static void SetHidden(const GPathName& path, bool hidden);
    static bool IsWritable(const GPathName& path);
    static void SetWritable(const GPathName& path, bool writable);
    static GDateTime GetCreationDateTime(const GPathName& path);
    static GDateTime GetModificationDateTime(const GPathName& path);

    static unsigned long GetFileAttribute(const GPathName& path);
    static void SetFileAttribute(const GPathName& path, unsigned long attributes);
    static void SetCreationDateTime(const GPathName& path, const GDateTime& moment);
    static void SetModificationDateTime(const GPathName& path, const GDateTime& moment);
    static bool IsOnSameVolume(const GPathName& a, const GPathName& b);
    static bool IsSameFileOrFolder(const GPathName& a, const GPathName& b);
    static GPathName GetUNCPath(const GPathName& path);

    static void MoveToTrash(const GPathName& path);
    static void CreateAlias(const GPathName& alias, const GPathName& target);
    static bool IsAlias(const GPathName& path);
    static GPathName GetAliasTarget(const GPathName& alias);

    static GString GetPermissions(const GPathName& path);
    static void SetPermissions(const GPathName& path, const GString& permissions);
    static bool CheckIfOwner(const GPathName& path);
};
