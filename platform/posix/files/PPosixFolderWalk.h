#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "framework/files/GFileFacts.h"
#include "platform/posix/files/PPosixFileImp.h"

/// PPosixFolderWalk: goes down from one folder by single names and never follows a link.
///
/// The folders on the way are held open, but others may rename or remove them. A symbolic link is a reparse
/// point, root is the system, and the others are other users. Failures throw GCustomException
/// GExceptionID::cUNIXSystemError with the name or path as location.
class PPosixFolderWalk {
public:
    enum class Purpose { cLook, cEnter, cWrite, cWriteThrough, cRead };
    enum class Renamed { cDone, cMissing, cTaken };

    /// What has been opened, or the reason why not.
    struct Opened {
        Opened() = default;
        Opened(Opened&& other) noexcept
            : mDescriptor(std::exchange(other.mDescriptor, -1)),
              mFailure(other.mFailure),
              mIsNew(other.mIsNew) {}
        Opened& operator=(Opened&& other) noexcept {
            std::swap(mDescriptor, other.mDescriptor);
            mFailure = other.mFailure;
            mIsNew = other.mIsNew;
            return *this;
        }
        ~Opened() { Close(); }

        explicit operator bool() const noexcept { return mDescriptor >= 0; }
        bool IsMissing() const noexcept;
        void Close() noexcept;

        int mDescriptor = -1;
        int mFailure = 0;
        bool mIsNew = false;
    };

    Opened OpenStart(const GPathName& path) const;
    void Enter(Opened&& folder) { mFolders.push_back(std::move(folder)); }
    bool MakeFolder(const GString& name) const;
    Opened Open(const GString& name, Purpose purpose) const;
    [[noreturn]] void Throw(const Opened& nothing, const GString& name) const;
    Renamed Rename(const GString& name, const GString& newName) const;
    GFileFacts GetFacts(const Opened& object) const;
    static std::unique_ptr<PPosixFileImp> TakeFile(Opened&& file, const GPathName& path);

private:
    std::vector<Opened> mFolders;
};
