#include "framework/services/GPrefFileModule.h"

#include "framework/core/errors/GException.h"
#include "framework/core/trace/GTraceLog.h"
#include "framework/files/GFileSystem.h"
#include "framework/files/GLockFile.h"
#include "framework/services/GPrefsFile.h"

namespace {

void Report(const char* what, const GPathName& path) {
    GTraceLog::TraceQuietly("Preferences", [&] { return GString(what) + path.GetNativePathString(); });
}

/// The lock of a shared file for as long as it is in scope.
class SharedLock {
public:
    SharedLock(const GPathName& path, GLockFile::LockType type, long longestWait) : mLock(path, type, false) {
        if (!mLock.HasLock() && !mLock.WaitForLock(longestWait))
            throw GSimpleException(GExceptionID::cCouldNotLock);
    }

private:
    GLockByFile mLock;
};

}  // namespace

GPrefFileModule::GPrefFileModule(const GPathName& path, const GEncoding* encoding)
    : GPrefFileModule(path, encoding, Unread()) {
    GPrefFileModule::Refresh();
}

void GPrefFileModule::ReadDict(GPrefsText::Groups& groups) {
    groups.Clear();
    mIsDamaged = GFileSystem::FileExists(mPath) && !GPrefsFile::Read(mPath, GetEncoding(), groups);
    if (mIsDamaged) Report("damaged: ", mPath);
}

void GPrefFileModule::WriteDict(GPrefsText::Groups& groups, const GPrefChanges&) {
    if (mIsDamaged && GFileSystem::FileExists(mPath)) Report("set aside: ", GPrefsFile::SetAside(mPath));
    mIsDamaged = false;
    GPrefsFile::Write(mPath, GetEncoding(), groups);
}

void GPrefFileModule::SaveAs(const GPathName& path) {
    GPrefsText::Groups groups;
    GTable<GBuffer> names;
    GetGroupNames(names);
    for (const GBuffer& name : names) GetGroupPreferences(name, groups.GetOrInsert(name));
    GPrefsFile::Write(path, GetEncoding(), groups);
}

GPrefSharedFileModule::GPrefSharedFileModule(const GPathName& path, const GEncoding* encoding,
                                             long longestWait)
    : GPrefFileModule(path, encoding, Unread()), mLongestWait(static_cast<std::int32_t>(longestWait)) {
    GPrefSharedFileModule::Refresh();
}

GPathName GPrefSharedFileModule::GetLockPathName() const {
    GPathName path(GetPathName());
    path.ReplaceExtension(path.GetExtension() + GString("lock"));
    return path;
}

void GPrefSharedFileModule::ReadDict(GPrefsText::Groups& groups) {
    groups.Clear();
    if (!GFileSystem::FileExists(GetPathName())) return;
    const SharedLock lock(GetLockPathName(), GLockFile::cReadLock, mLongestWait);
    GPrefFileModule::ReadDict(groups);
}

void GPrefSharedFileModule::WriteDict(GPrefsText::Groups& groups, const GPrefChanges& changes) {
    GPathName folder(GetPathName().GetBranch());
    if (!folder.IsEmpty()) GFileSystem::CreateFolder(folder);  // the lock file needs it, too
    const SharedLock lock(GetLockPathName(), GLockFile::cWriteLock, mLongestWait);
    GPrefsText::Groups present;
    GPrefFileModule::ReadDict(present);
    changes.ApplyTo(present);
    GPrefFileModule::WriteDict(present, changes);
    groups.Swap(present);
}
