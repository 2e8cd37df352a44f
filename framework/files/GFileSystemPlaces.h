#pragma once

#include <algorithm>
#include <iterator>
#include <mutex>

#include "PPlatformTypes.h"
#include "framework/core/containers/GDict.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GFileSystemImp.h"

// The members of GFileSystemBase that know where folders are. See GFileSystemDefinitions.h.

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
GPathName GFileSystemBase<Imp>::GetApplicationsFolder32() {
    return Imp::GetApplicationsFolder32();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetUserHomeFolder() {
    return Imp::GetUserHomeFolder();
}

template <class Imp>
GPathName GFileSystemBase<Imp>::GetGlobalTempFolder() {
    return Imp::GetGlobalTempFolder();
}
