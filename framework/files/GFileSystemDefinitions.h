#pragma once

#include <algorithm>
#include <concepts>
#include <iterator>
#include <mutex>

#include "PPlatformTypes.h"
#include "framework/core/containers/GDict.h"
#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/files/GFileSystem.h"

// The members of GFileSystemBase, apart from its header so that a program that uses the file system
// does not compile the platform's classes. Included where the template is instantiated.

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
    Imp::CreateParentFolder(path);
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

template <class Imp>
struct GFileSystemBase<Imp>::Registry {
    PCriticalSection lock;
    GDict<long, GPathName> paths;
};

template <class Imp>
typename GFileSystemBase<Imp>::Registry& GFileSystemBase<Imp>::GetRegistry() {
    static_assert(GFileSystemImp<Imp>);
    static Registry sSpecialPaths;
    return sSpecialPaths;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetDefault(long id) {
    struct Place {
        long id;
        GPathName (*getFolder)();
        const char* leaf;  // null: the folder itself
    };
    constexpr const char* cPrefsFolder = "Quillon Prefs Folder";
    constexpr auto getProductParent = [] { return GetSpecialPath(GSpecialPath::cUserApplicationData); };
    static constexpr Place cPlaces[] = {
        {GSpecialPath::cUserApplicationData, &Imp::GetUserApplicationDataFolder, nullptr},
        {GSpecialPath::cSystem, &Imp::GetSystemFolder, nullptr},
        {GSpecialPath::cLibrary, &Imp::GetLibraryPath, nullptr},
        {GSpecialPath::cApplication, &Imp::GetApplicationPath, nullptr},
        {GSpecialPath::cUserPreferenceRoot, &Imp::GetUserPreferenceFolder, nullptr},
        {GSpecialPath::cGlobalPreferenceRoot, &Imp::GetGlobalPreferenceFolder, nullptr},
        {GSpecialPath::cGlobalTemp, &Imp::GetGlobalTempFolder, nullptr},
        {GSpecialPath::cGlobalSystem, &Imp::GetGlobalSystemFolder, nullptr},
        {GSpecialPath::cResources, &GetResourceFolder, nullptr},
        {GSpecialPath::cCMap, &GetResourceFolder, "CMap"},
        {GSpecialPath::cFontMetrics, &GetResourceFolder, "FontMetrics"},
        {GSpecialPath::cLanguages, &GetResourceFolder, "lng"},
        {GSpecialPath::cICC, &GetResourceFolder, "ICC"},
        {GSpecialPath::cXML, &GetResourceFolder, "xml"},
        {GSpecialPath::cArtwork, &GetResourceFolder, "Artwork"},
        {GSpecialPath::cGlobalPreferences, &Imp::GetCommonAppDataFolder, cPrefsFolder},
        {GSpecialPath::cUserPreferences, &Imp::GetUserApplicationDataFolder, cPrefsFolder},
        {GSpecialPath::cProductData, getProductParent, "Quillon"},
    };
    const Place* const place = std::ranges::find(cPlaces, id, &Place::id);
    if (place == std::end(cPlaces)) return GPathName();
    GPathName path = place->getFolder();
    if (place->leaf != nullptr) path.Append(place->leaf);
    return path;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetSpecialPath(long id) {
    Registry& registry = GetRegistry();
    const std::lock_guard<PCriticalSection> guard(registry.lock);
    if (registry.paths.Find(id) == nullptr) SetSpecialPathToDefault(id);
    const GPathName* const path = registry.paths.Find(id);
    return path != nullptr ? *path : GPathName();
}

template <class Imp>
void GFileSystemBase<Imp>::AddSpecialPath(long id, const GPathName& path) {
    Registry& registry = GetRegistry();
    const std::lock_guard<PCriticalSection> guard(registry.lock);
    registry.paths.Set(id, path);
}

template <class Imp>
void GFileSystemBase<Imp>::RemoveSpecialPath(long id) {
    Registry& registry = GetRegistry();
    const std::lock_guard<PCriticalSection> guard(registry.lock);
    registry.paths.Remove(id);
}

template <class Imp>
void GFileSystemBase<Imp>::RemoveAllSpecialPaths() {
    Registry& registry = GetRegistry();
    const std::lock_guard<PCriticalSection> guard(registry.lock);
    registry.paths.Clear();
}

template <class Imp>
void GFileSystemBase<Imp>::SetSpecialPathToDefault(long id) {
    const GPathName path = GetDefault(id);
    if (!path.IsEmpty()) AddSpecialPath(id, path);
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetDebugFolder() {
    GPathName path = GetSpecialPath(GSpecialPath::cGlobalTemp);
    const GString leaf("QuillonDebug");
    if (FileExists(path)) {
        path.ReplaceLeaf(leaf);
    } else {
        path.Append(leaf);
    }
    return path;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetResourceFolder() {
    GPathName path = Imp::GetLibraryPath();
    path.ReplaceLeaf(GString("Resources"));
    return path;
}

template <class Imp>
bool GFileSystemBase<Imp>::TryFileExists(const GPathName& path) noexcept {
    try {
        return Imp::FileExists(path);
    } catch (...) {
        return false;
    }
}

template <class Imp>
void GFileSystemBase<Imp>::CreateFile(const GPathName& path, GTypeEnums::Types, bool mustBeNew) {
    Imp::CreateParentFolder(path);
    Imp::CreateFile(path, mustBeNew);
}

template <class Imp>
GString GFileSystemBase<Imp>::KeepAliasExtension(const GPathName& path, const GString& leaf) {
    const auto isShortcut = [](const GString& name) {
        GString extension = GPathName(name).GetExtension();
        extension.ToLower();
        return extension == GString("lnk");
    };
    return isShortcut(path.GetLeaf()) && !isShortcut(leaf) ? leaf + GString(".lnk") : leaf;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::WithLeaf(const GPathName& path, const GString& leaf) {
    GPathName renamed(path);
    renamed.ReplaceLeaf(leaf);
    return renamed;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::InFolder(const GPathName& folder, const GString& leaf) {
    GPathName inside(folder);
    inside.Append(leaf);
    return inside;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::RenameFile(const GPathName& path, const GString& newLeaf) {
    GPathName renamed = WithLeaf(path, KeepAliasExtension(path, newLeaf));
    Imp::MoveFile(path, renamed);
    return renamed;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::RenameFolder(const GPathName& path, const GString& newLeaf) {
    GPathName renamed = WithLeaf(path, newLeaf);
    Imp::MoveFolder(path, renamed);
    return renamed;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::CopyFileTo(const GPathName& path, const GPathName& folder) {
    return CopyAndRenameFile(path, folder, path.GetLeaf());
}

template <class Imp>
GPathName GFileSystemBase<Imp>::CopyAndRenameFile(const GPathName& path, const GPathName& folder,
                                                  const GString& newLeaf) {
    GPathName copy = InFolder(folder, KeepAliasExtension(path, newLeaf));
    Imp::CopyFile(path, copy);
    return copy;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::MoveFileTo(const GPathName& path, const GPathName& folder) {
    GPathName moved = InFolder(folder, path.GetLeaf());
    Imp::MoveFile(path, moved);
    return moved;
}

template <class Imp>
GPathName GFileSystemBase<Imp>::MoveFolderTo(const GPathName& path, const GPathName& folder) {
    GPathName moved = InFolder(folder, path.GetLeaf());
    Imp::MoveFolder(path, moved);
    return moved;
}

template <class Imp>
void GFileSystemBase<Imp>::MoveFileToTrash(const GPathName& path) {
    const GExceptionLocation location(path);
    if (!Imp::FileExists(path)) throw GSimpleException(GExceptionID::cFileNotFound);
    Imp::MoveToTrash(path);
}

template <class Imp>
void GFileSystemBase<Imp>::MoveFolderToTrash(const GPathName& path) {
    const GExceptionLocation location(path);
    if (!Imp::FolderExists(path)) throw GSimpleException(GExceptionID::cFileNotFound);
    Imp::MoveToTrash(path);
}

template <class Imp>
bool GFileSystemBase<Imp>::AliasHasTarget(const GPathName& alias) {
    const GPathName target = Imp::GetAliasTarget(alias);
    return !target.IsEmpty() && (Imp::FileExists(target) || Imp::FolderExists(target));
}

template <class Imp>
void GFileSystemBase<Imp>::CopyPermissions(const GPathName& from, const GPathName& to) {
    const GString permissions = Imp::GetPermissions(from);
    Imp::SetPermissions(to, permissions);
}

// What the platform does alone.

template <class Imp>
void GFileSystemBase<Imp>::ReplaceFile(const GPathName& from, const GPathName& to) {
    Imp::ReplaceFile(from, to);
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetUserApplicationDataFolder() {
    return Imp::GetUserApplicationDataFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetUserPreferenceFolder() {
    return Imp::GetUserPreferenceFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetCommonAppDataFolder() {
    return Imp::GetCommonAppDataFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetGlobalPreferenceFolder() {
    return Imp::GetGlobalPreferenceFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetDesktopFolder() {
    return Imp::GetDesktopFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetUserDocumentsFolder() {
    return Imp::GetUserDocumentsFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetSystemFolder() {
    return Imp::GetSystemFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetGlobalSystemFolder() {
    return Imp::GetGlobalSystemFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetApplicationsFolder() {
    return Imp::GetApplicationsFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetGlobalTempFolder() {
    return Imp::GetGlobalTempFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetUserHomeFolder() {
    return Imp::GetUserHomeFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetApplicationsFolder32() {
    return Imp::GetApplicationsFolder32();
}

template <class Imp>
bool GFileSystemBase<Imp>::FileExists(const GPathName& path) {
    return Imp::FileExists(path);
}

template <class Imp>
bool GFileSystemBase<Imp>::FolderExists(const GPathName& path) {
    return Imp::FolderExists(path);
}

template <class Imp>
bool GFileSystemBase<Imp>::FileInUse(const GPathName& path) {
    return Imp::FileInUse(path);
}

template <class Imp>
long GFileSystemBase<Imp>::GetVolumeType(const GPathName& path) {
    return Imp::GetVolumeType(path);
}

template <class Imp>
void GFileSystemBase<Imp>::CreateFolder(const GPathName& path) {
    Imp::CreateFolder(path);
}

template <class Imp>
void GFileSystemBase<Imp>::RemoveFile(const GPathName& path) {
    Imp::RemoveFile(path);
}

template <class Imp>
void GFileSystemBase<Imp>::RemoveFolderOnly(const GPathName& path) {
    Imp::RemoveFolderOnly(path);
}

template <class Imp>
bool GFileSystemBase<Imp>::IsHidden(const GPathName& path) {
    return Imp::IsHidden(path);
}

template <class Imp>
bool GFileSystemBase<Imp>::IsWritable(const GPathName& path) {
    return Imp::IsWritable(path);
}

template <class Imp>
GDateTime GFileSystemBase<Imp>::GetCreationDateTime(const GPathName& path) {
    return Imp::GetCreationDateTime(path);
}

template <class Imp>
GDateTime GFileSystemBase<Imp>::GetModificationDateTime(const GPathName& path) {
    return Imp::GetModificationDateTime(path);
}

template <class Imp>
void GFileSystemBase<Imp>::SetHidden(const GPathName& path, bool hidden) {
    Imp::SetHidden(path, hidden);
}

template <class Imp>
void GFileSystemBase<Imp>::SetWritable(const GPathName& path, bool writable) {
    Imp::SetWritable(path, writable);
}

template <class Imp>
void GFileSystemBase<Imp>::SetCreationDateTime(const GPathName& path, const GDateTime& moment) {
    Imp::SetCreationDateTime(path, moment);
}

template <class Imp>
void GFileSystemBase<Imp>::SetModificationDateTime(const GPathName& path, const GDateTime& moment) {
    Imp::SetModificationDateTime(path, moment);
}

template <class Imp>
unsigned long GFileSystemBase<Imp>::GetFileAttribute(const GPathName& path) {
    return Imp::GetFileAttribute(path);
}

template <class Imp>
void GFileSystemBase<Imp>::SetFileAttribute(const GPathName& path, unsigned long attributes) {
    Imp::SetFileAttribute(path, attributes);
}

template <class Imp>
bool GFileSystemBase<Imp>::IsOnSameVolume(const GPathName& a, const GPathName& b) {
    return Imp::IsOnSameVolume(a, b);
}

template <class Imp>
bool GFileSystemBase<Imp>::IsSameFileOrFolder(const GPathName& a, const GPathName& b) {
    return Imp::IsSameFileOrFolder(a, b);
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetUNCPath(const GPathName& path) {
    return Imp::GetUNCPath(path);
}

template <class Imp>
void GFileSystemBase<Imp>::MoveToTrash(const GPathName& path) {
    Imp::MoveToTrash(path);
}

template <class Imp>
void GFileSystemBase<Imp>::CreateAlias(const GPathName& alias, const GPathName& target) {
    Imp::CreateAlias(alias, target);
}

template <class Imp>
bool GFileSystemBase<Imp>::IsAlias(const GPathName& path) {
    return Imp::IsAlias(path);
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetAliasTarget(const GPathName& alias) {
    return Imp::GetAliasTarget(alias);
}

template <class Imp>
GString GFileSystemBase<Imp>::GetPermissions(const GPathName& path) {
    return Imp::GetPermissions(path);
}

template <class Imp>
void GFileSystemBase<Imp>::SetPermissions(const GPathName& path, const GString& permissions) {
    Imp::SetPermissions(path, permissions);
}

template <class Imp>
bool GFileSystemBase<Imp>::CheckIfOwner(const GPathName& path) {
    return Imp::CheckIfOwner(path);
}

template <class Imp>
GString GFileSystemBase<Imp>::GetAliasPermissions(const GPathName& alias) {
    return Imp::GetPermissions(Imp::GetAliasTarget(alias));
}

template <class Imp>
void GFileSystemBase<Imp>::SetAliasPermissions(const GPathName& alias, const GString& permissions) {
    Imp::SetPermissions(Imp::GetAliasTarget(alias), permissions);
}

template <class Imp>
void GFileSystemBase<Imp>::CopyAliasPermissions(const GPathName& fromAlias, const GPathName& toAlias) {
    CopyPermissions(Imp::GetAliasTarget(fromAlias), Imp::GetAliasTarget(toAlias));
}

template <class Imp>
bool GFileSystemBase<Imp>::CheckIfAliasOwner(const GPathName& alias) {
    return Imp::CheckIfOwner(Imp::GetAliasTarget(alias));
}
