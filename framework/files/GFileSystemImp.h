#pragma once

#include <concepts>

#include "framework/core/paths/GPathName.h"
#include "framework/core/text/GString.h"
#include "framework/core/time/GDateTime.h"

/// What a platform supplies: static calls that work on one path each. Every one throws when the
/// system refuses, with the path as location.
template <class Imp>
concept GFileSystemImp = requires(const GPathName& path, bool flag, const GDateTime& moment,
                                  const GString& text) {
    { Imp::FileExists(path) } -> std::same_as<bool>;
    { Imp::FolderExists(path) } -> std::same_as<bool>;
    { Imp::FileInUse(path) } -> std::same_as<bool>;
    { Imp::GetVolumeType(path) } -> std::same_as<long>;
    { Imp::GetUserApplicationDataFolder() } -> std::same_as<GPathName>;
    { Imp::GetCommonAppDataFolder() } -> std::same_as<GPathName>;
    { Imp::GetGlobalTempFolder() } -> std::same_as<GPathName>;  // empty when the system does not tell
    { Imp::GetLibraryPath() } -> std::same_as<GPathName>;
    { Imp::GetApplicationPath() } -> std::same_as<GPathName>;
    Imp::CreateFile(path, flag);  // in a folder that exists; flag: a file that is there is a failure
    Imp::CreateFolder(path);      // with missing parents
    Imp::RemoveFile(path);
    Imp::RemoveFolderOnly(path);
    Imp::MoveFile(path, path);  // never replaces, like the next two
    Imp::MoveFolder(path, path);
    Imp::CopyFile(path, path);
    Imp::ReplaceFile(path, path);
    { Imp::IsHidden(path) } -> std::same_as<bool>;
    { Imp::IsWritable(path) } -> std::same_as<bool>;
    Imp::SetHidden(path, flag);
    Imp::SetWritable(path, flag);
    { Imp::GetCreationDateTime(path) } -> std::same_as<GDateTime>;
    { Imp::GetModificationDateTime(path) } -> std::same_as<GDateTime>;
    Imp::SetCreationDateTime(path, moment);
    Imp::SetModificationDateTime(path, moment);
    { Imp::GetFileAttribute(path) } -> std::same_as<unsigned long>;
    Imp::SetFileAttribute(path, 0UL);
    { Imp::IsOnSameVolume(path, path) } -> std::same_as<bool>;
    { Imp::IsSameFileOrFolder(path, path) } -> std::same_as<bool>;
    { Imp::GetUNCPath(path) } -> std::same_as<GPathName>;
    Imp::MoveToTrash(path);
    Imp::CreateAlias(path, path);
    { Imp::IsAlias(path) } -> std::same_as<bool>;
    { Imp::GetAliasTarget(path) } -> std::same_as<GPathName>;
    { Imp::GetPermissions(path) } -> std::same_as<GString>;
    Imp::SetPermissions(path, text);
    { Imp::CheckIfOwner(path) } -> std::same_as<bool>;
};
