#include "framework/services/GTraceFile.h"

#include "framework/core/errors/GException.h"
#include "framework/core/errors/GFirstFailure.h"
#include "framework/files/GFileSystem.h"
#include "framework/services/GSideName.h"

namespace {

constexpr long cLastNumber = 10;   // of a file that is tried after another could not be opened
constexpr long cLastInUse = 1000;  // of a file that is tried after another was in use

// Where the file cannot be renamed, it is emptied.
void KeepAsOld(const GPathName& path) {
    const GPathName old = MakeSideName(path, "old");
    RunQuietly([&] { GFileSystem::RemoveFile(old); });
    RunQuietly([&] { GFileSystem::RenameFile(path, old.GetLeaf()); });
}

std::unique_ptr<GFileOutStream> Wrap(std::unique_ptr<GFile> file) {
    return std::make_unique<GFileOutStream>(GSharedObject<GFile>(file.release()));
}

/// Looks for the file to write, all of them in one folder.
class Search {
public:
    Search(const GTrustedFolder& folder, const GPathName& base, bool alwaysNew)
        : mFolder(folder), mBase(base), mPath(base), mAlwaysNew(alwaysNew) {}

    std::unique_ptr<GFileOutStream> Open() {
        for (;;) {
            try {
                if (std::unique_ptr<GFileOutStream> stream = Try()) return stream;
            } catch (const GException&) {
                mHasFailed = true;
                ++mNumber;
                if (mNumber > cLastNumber) throw;
            }
        }
    }

private:
    // Null: the one that was looked at is in use.
    std::unique_ptr<GFileOutStream> Try() {
        if (!GFileSystem::FileExists(mPath)) return OpenEmpty(mPath);
        if (!mAlwaysNew && !mHasFailed && !GFileSystem::FileInUse(mPath)) {
            if (IsTooLong()) KeepAsOld(mPath);
            return OpenEmpty(mPath);
        }
        mPath = MakeSideName(mBase, GString(mNumber));
        if (!GFileSystem::FileExists(mPath) || !GFileSystem::FileInUse(mPath)) return OpenEmpty(mPath);
        if (++mNumber > cLastInUse) throw GSimpleException(GExceptionID::cCouldNotOpenFile);
        return nullptr;
    }

    bool IsTooLong() const {
        return mFolder.OpenToRead(mPath.GetLeaf())->GetLength() > GTraceFile::cMaxLength;
    }
    std::unique_ptr<GFileOutStream> OpenEmpty(const GPathName& path) const {
        return Wrap(mFolder.OpenEmpty(path.GetLeaf()));
    }

    const GTrustedFolder& mFolder;
    GPathName mBase;
    GPathName mPath;
    long mNumber = 0;
    bool mAlwaysNew;
    bool mHasFailed = false;
};

}  // namespace

GPathName GTraceFile::GetPath(const char* extension) {
    if (GFileSystem::GetSpecialPath(GSpecialPath::cGlobalTemp).IsEmpty()) return GPathName();
    GPathName path = GFileSystem::GetDebugFolder();
    const GPathName module = GFileSystem::GetSpecialPath(GSpecialPath::cLibrary);
    path.Append(module.GetLeafWithoutExtension() + GString(".") + GString(extension));
    return path;
}

GTraceFile::GTraceFile(const GPathName& path, bool alwaysNew) {
    if (path.IsEmpty()) throw GSimpleException(GExceptionID::cFileNotFound);
    mFolder = std::make_unique<GTrustedFolder>(path.GetBranch(), true);
    mStream = Search(*mFolder, path, alwaysNew).Open();
}

long GTraceFile::Write(const GBuffer& data) {
    if (mStream->GetPosition() > 0 && mStream->GetPosition() + data.GetLength() > cMaxLength) StartAnew();
    return mStream->Write(data);
}

void GTraceFile::StartAnew() {
    const GPathName path = GetPathName();
    // Should it fail, the stream of the closed file refuses to write, and the next entry tries again.
    mStream->GetFile()->Close();
    KeepAsOld(path);
    mStream = Wrap(mFolder->OpenEmpty(path.GetLeaf()));
}
