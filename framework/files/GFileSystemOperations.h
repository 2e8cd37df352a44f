#pragma once

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GExceptionLocation.h"
#include "framework/files/GFileSystem.h"

// The members of GFileSystemBase that look for, make, move and remove files and folders. See
// GFileSystemDefinitions.h.

template <class Imp>
bool GFileSystemBase<Imp>::FileExists(const GPathName& path) {
    return Imp::FileExists(path);
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
void GFileSystemBase<Imp>::CreateFile(const GPathName& path, GTypeEnums::Types, bool mustBeNew) {
    CreateParentFolder(path);
    Imp::CreateFile(path, mustBeNew);
}

template <class Imp>
void GFileSystemBase<Imp>::CreateFolder(const GPathName& path) {
    Imp::CreateFolder(path);
}

template <class Imp>
void GFileSystemBase<Imp>::CreateParentFolder(const GPathName& path) {
    if (path.HasLeaf() && path.HasBranch()) Imp::CreateFolder(path.GetBranch());
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
void GFileSystemBase<Imp>::ReplaceFile(const GPathName& from, const GPathName& to) {
    Imp::ReplaceFile(from, to);
}

template <class Imp>
void GFileSystemBase<Imp>::MoveToTrash(const GPathName& path) {
    Imp::MoveToTrash(path);
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
