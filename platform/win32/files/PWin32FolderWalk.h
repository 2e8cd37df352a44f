#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "framework/files/GFileFacts.h"
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/files/PWin32FileImp.h"
#include "platform/win32/files/PWin32FileOwner.h"

/// PWin32FolderWalk: goes down from one folder by single names, for one user, and never follows a link.
///
/// Each folder on the way is held open: nobody can rename or remove it meanwhile, and what is in it is
/// reached from it, not by a path that somebody could change. A name has 1 to 255 units and no separator.
/// Every call has the rights that the thread has at that moment. Failures throw PWin32SystemException with
/// the name or path as location.
class PWin32FolderWalk {
public:
    enum class Purpose {
        cLook,          ///< at its facts, whoever has it open
        cEnter,         ///< a folder to go on from
        cWrite,         ///< a file, made when it is not there; others may read it meanwhile
        cWriteThrough,  ///< the same; writes reach the disk before they return
        cRead,          ///< a file; others may do anything with it meanwhile
    };
    enum class Renamed { cDone, cMissing, cTaken };

    /// What has been opened, or the reason why not.
    struct Opened {
        explicit operator bool() const noexcept { return static_cast<bool>(mHandle); }
        bool IsMissing() const noexcept;
        void Close() noexcept { mHandle.Reset(PWin32FileHandle::None()); }

        PWin32ScopedHandle<PWin32FileHandle> mHandle;
        std::int32_t mFailure = 0;  ///< as Win32 functions tell it
        bool mIsNew = false;        ///< made by that
    };

    /// For the user of the calling thread.
    PWin32FolderWalk() = default;

    /// Opens the folder to start from. This path is followed wherever it leads.
    Opened OpenStart(const GPathName& path) const;
    /// The folder becomes the one that all calls work in.
    void Enter(Opened&& folder) { mFolders.push_back(std::move(folder.mHandle)); }

    /// Makes a folder that only the user, the system and administrators may use; false when something has
    /// that name.
    bool MakeFolder(const GString& name) const;
    Opened Open(const GString& name, Purpose purpose) const;
    /// Throws the reason why `nothing`, which has that name, could not be opened.
    [[noreturn]] void Throw(const Opened& nothing, const GString& name) const;
    /// Never replaces what is there.
    Renamed Rename(const GString& name, const GString& newName) const;

    /// Of nothing: unknown.
    GFileFacts GetFacts(const Opened& object) const;
    /// The opened file by the name that callers know it under.
    static std::unique_ptr<PWin32FileImp> TakeFile(Opened&& file, const GPathName& path);

private:
    PWin32FileOwner mUser;
    std::vector<PWin32ScopedHandle<PWin32FileHandle>> mFolders;
};
