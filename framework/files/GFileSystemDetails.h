#pragma once

#include "framework/files/GFileSystem.h"

// The members of GFileSystemBase that tell and set what belongs to a file or folder beside its content. See
// GFileSystemDefinitions.h.

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
