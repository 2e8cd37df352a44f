#include "platform/posix/files/PPosixFileSystemIteratorImp.h"

#include <filesystem>
#include <system_error>

#include "platform/posix/core/PPosixFailure.h"

namespace fs = std::filesystem;

namespace {

class PosixFolder : public GFolderIterator::Folder {
public:
    explicit PosixFolder(const GPathName& path) : mPath(path) {}

    bool First() override {
        std::error_code error;
        mEntries = fs::directory_iterator(AsPosixPath(mPath), error);
        return IsAtEntry(error);
    }
    bool Next() override {
        std::error_code error;
        mEntries.increment(error);
        return IsAtEntry(error);
    }
    GPathName GetPath() const override { return GPathName(GString::FromUTF8(mEntries->path().c_str())); }
    bool IsFolder() const override { return mEntries->is_directory(); }
    bool LeadsElsewhere() const override { return mEntries->is_symlink(); }

private:
    bool IsAtEntry(const std::error_code& error) const {
        if (error) ThrowPosixFailure(error.value(), mPath);
        return mEntries != fs::directory_iterator();
    }

    GPathName mPath;
    fs::directory_iterator mEntries;
};

}  // namespace

std::unique_ptr<GFolderIterator::Folder> PPosixFileSystemIteratorImp::Open(const GPathName& path) const {
    return std::make_unique<PosixFolder>(path);
}
