#pragma once

/// @file
/// Files and folders by their paths.

#include "PPlatformTypes.h"
#include "framework/core/GExport.h"
#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"
#include "framework/core/time/GDateTime.h"
#include "framework/files/GSpecialPath.h"
#include "framework/files/GTypeEnums.h"

/// GFileSystemBase: the framework's static view of the file system, over a platform's calls (what
/// these are stands in GFileSystemImp.h).
///
/// Use it as GFileSystem. Paths are portable GPathNames and may be longer than 260 units. Failures throw
/// PWin32SystemException (GCustomException GExceptionID::cUNIXSystemError in the native build); their
/// full description begins with the path. Callable from any thread.
template <class Imp>
class GFileSystemBase {
public:
    /// @name Special paths: numbered folders (GSpecialPath) that may be overridden.
    /// @{

    /// The stored path of `id`; when there is none, its default, which is stored by that. A number
    /// without a default, and a default that the system does not know, give the empty path and store
    /// nothing.
    static GPathName GetSpecialPath(long id);
    /// Stores `path` for `id`, any number, in place of what was stored.
    static void AddSpecialPath(long id, const GPathName& path);
    /// Forgets the stored path, so that the default returns.
    static void RemoveSpecialPath(long id);
    static void RemoveAllSpecialPaths();  ///< all of them, so that all defaults return
    /// Computes and stores the default now. A number without one is left alone.
    static void SetSpecialPathToDefault(long id);
    /// @}

    /// @name The platform's folders, asked for anew with every call; the shell makes missing ones.
    /// @{

    /// Of the user's programs, roaming with the user: `C:\Users\NAME\AppData\Roaming`.
    static GPathName GetUserApplicationDataFolder();
    static GPathName GetUserPreferenceFolder();    ///< on Windows the same
    static GPathName GetCommonAppDataFolder();     ///< of all users' programs: `C:\ProgramData`
    static GPathName GetGlobalPreferenceFolder();  ///< on Windows the same
    static GPathName GetDesktopFolder();           ///< of the user
    static GPathName GetUserDocumentsFolder();     ///< of the user
    static GPathName GetSystemFolder();            ///< `C:\Windows\System32`
    static GPathName GetGlobalSystemFolder();      ///< `C:\Windows`
    static GPathName GetApplicationsFolder();      ///< `C:\Program Files`
    static GPathName GetApplicationsFolder32();    ///< of 32-bit programs: `C:\Program Files (x86)`
    static GPathName GetUserHomeFolder();          ///< `C:\Users\NAME`
    /// Empty when the system does not tell.
    static GPathName GetGlobalTempFolder();
    /// "QuillonDebug" in the global temporary folder (special path -2), or beside it when that path
    /// turns out to be a file. Nothing is created.
    static GPathName GetDebugFolder();
    /// The folder of the library module, then "Resources".
    static GPathName GetResourceFolder();
    /// @}

    /// @name Asking
    /// @{

    /// True for a file, false for a folder and for nothing.
    static bool FileExists(const GPathName& path);
    /// The same, but false as well when the system refuses to tell. Never throws.
    static bool TryFileExists(const GPathName& path) noexcept;
    static bool FolderExists(const GPathName& path);  ///< true for a folder, false for a file and for nothing
    /// True when anybody, this process included, has the file open, and when it cannot be opened for
    /// any other reason; so ask FileExists first.
    static bool FileInUse(const GPathName& path);
    /// 0 unknown, 1 fixed, 2 network, 3 CD-ROM, 4 no such volume, 5 removable, 6 RAM disk.
    static long GetVolumeType(const GPathName& path);
    /// @}

    /// @name Making and removing
    /// @{

    /// Makes an empty file, and the missing folders of its path. A file that is there already is left
    /// as it is, or is a failure when `mustBeNew` is set. `type` matters only on file systems that
    /// store one.
    static void CreateFile(const GPathName& path, GTypeEnums::Types type, bool mustBeNew);
    /// Makes the folder and its missing parents; one that is there already is fine, a file in the way
    /// is not.
    static void CreateFolder(const GPathName& path);
    /// The folder that is to hold `path`, as CreateFolder(); a path that names none needs none.
    static void CreateParentFolder(const GPathName& path);
    static void RemoveFile(const GPathName& path);  ///< a missing file is a failure
    /// Removes an empty folder.
    static void RemoveFolderOnly(const GPathName& path);
    /// @}

    /// @name Renaming, copying and moving. What is already there is never replaced: that throws. A copy
    /// that ends midway leaves nothing under its name. Failures bear "Moving %1 to %2" or "Copying %1 to
    /// %2", all others of this class the path.
    /// @{

    /// Gives the file another leaf in its folder and returns its new path.
    static GPathName RenameFile(const GPathName& path, const GString& newLeaf);
    /// The same for a folder.
    static GPathName RenameFolder(const GPathName& path, const GString& newLeaf);
    /// Copies the file into `folder` under its own leaf or under `newLeaf`; returns the copy's path.
    static GPathName CopyFileTo(const GPathName& path, const GPathName& folder);
    /// The same under another leaf.
    static GPathName CopyAndRenameFile(const GPathName& path, const GPathName& folder,
                                       const GString& newLeaf);
    /// Moves the file into `folder`, across volumes too, and returns its new path.
    static GPathName MoveFileTo(const GPathName& path, const GPathName& folder);
    /// The same for a folder; only within one volume.
    static GPathName MoveFolderTo(const GPathName& path, const GPathName& folder);
    /// @}

    /// The one that replaces: the file at `from` takes the place of one at `to`, in one step; a reader
    /// finds the old one or the new one. Only within one volume. On Windows it fails while somebody has
    /// the old one open.
    static void ReplaceFile(const GPathName& from, const GPathName& to);

    /// @name Attributes and dates
    /// @{
    static bool IsHidden(const GPathName& path);                ///< whether it bears the mark
    static void SetHidden(const GPathName& path, bool hidden);  ///< sets or takes the mark
    /// False for a file marked read-only; says nothing about permissions.
    static bool IsWritable(const GPathName& path);
    static void SetWritable(const GPathName& path, bool writable);  ///< takes or sets the read-only mark
    /// In UTC.
    static GDateTime GetCreationDateTime(const GPathName& path);
    static GDateTime GetModificationDateTime(const GPathName& path);  ///< in UTC
    /// From the UTC fields, in whole seconds. The native build cannot set when a file was made.
    static void SetCreationDateTime(const GPathName& path, const GDateTime& moment);
    /// From the UTC fields, in whole seconds.
    static void SetModificationDateTime(const GPathName& path, const GDateTime& moment);
    /// The system's own bits: 1 read-only, 2 hidden, 4 system, 16 folder, 32 archive and so on; 0 sets
    /// none. The native build knows the first alone.
    static unsigned long GetFileAttribute(const GPathName& path);
    /// The bits of GetFileAttribute().
    static void SetFileAttribute(const GPathName& path, unsigned long attributes);
    /// @}

    /// @name Identity
    /// @{

    /// Paths that are not there count as the nearest folder above them that is.
    static bool IsOnSameVolume(const GPathName& a, const GPathName& b);
    /// Whether two paths lead to one file or folder; both must be there.
    static bool IsSameFileOrFolder(const GPathName& a, const GPathName& b);
    /// The path by server and share of what lies on a network drive; any other path as it is. It must be
    /// there.
    static GPathName GetUNCPath(const GPathName& path);
    /// @}

    /// @name Trash. What the trash cannot take stays and is a failure. The native build has none.
    /// @{
    static void MoveToTrash(const GPathName& path);  ///< a file or a folder
    /// The same for what is a file, or a folder; anything else throws GSimpleException cFileNotFound.
    static void MoveFileToTrash(const GPathName& path);
    static void MoveFolderToTrash(const GPathName& path);  ///< throws the same for what is no folder
    /// @}

    /// @name Aliases: shortcuts, files whose names end in ".lnk" (symbolic links in the native build).
    /// Renaming and copying one keeps that extension.
    /// @{

    /// Makes the file `alias`, which must not be there; the target need not be there.
    static void CreateAlias(const GPathName& alias, const GPathName& target);
    static bool IsAlias(const GPathName& path);  ///< a file whose name ends so; false for what is not there
    /// The path that the alias leads to, whether something is there or not; empty for one that leads to
    /// something other than a file or folder.
    static GPathName GetAliasTarget(const GPathName& alias);
    static bool AliasHasTarget(const GPathName& alias);  ///< whether what the alias leads to is there
    /// @}

    /// @name Permissions, as a text of the system: on Windows the access control list of a security
    /// descriptor ("D:(A;;FA;;;SY)"), in the native build the mode in octal digits. The forms for an
    /// alias work on what it leads to.
    /// @{
    static GString GetPermissions(const GPathName& path);  ///< of a file or folder
    /// From a text of GetPermissions().
    static void SetPermissions(const GPathName& path, const GString& permissions);
    /// What GetPermissions() gives of the one.
    static void CopyPermissions(const GPathName& from, const GPathName& to);
    /// True when it belongs to the user, or to a group that the user is in.
    static bool CheckIfOwner(const GPathName& path);
    static GString GetAliasPermissions(const GPathName& alias);  ///< of what the alias leads to
    /// Of what the alias leads to.
    static void SetAliasPermissions(const GPathName& alias, const GString& permissions);
    /// Of and to what the aliases lead to.
    static void CopyAliasPermissions(const GPathName& fromAlias, const GPathName& toAlias);
    static bool CheckIfAliasOwner(const GPathName& alias);  ///< as CheckIfOwner()
    /// @}

private:
    struct Registry;
    static Registry& GetRegistry();
    static GPathName GetDefault(long id);
    static GString KeepAliasExtension(const GPathName& path, const GString& leaf);
    static GPathName WithLeaf(const GPathName& path, const GString& leaf);
    static GPathName InFolder(const GPathName& folder, const GString& leaf);
};

/// The file system of this platform.
using GFileSystem = GFileSystemBase<PFileSystemImp>;
extern template class QUILLON_EXPORT GFileSystemBase<PFileSystemImp>;
