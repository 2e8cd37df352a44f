#pragma once

#include <memory>

#include "framework/core/GExport.h"
#include "framework/files/GLockFileImp.h"

/// GLockFile: an ordinary file whose open handle is a lock between processes on something else.
///
/// Any number of objects may hold a read lock, or one a write lock. The system's rules on sharing an
/// open file keep the others out, in this process and in all others; the lock of a process that dies
/// is free at once. Nothing is written into the file, and it stays when the lock goes. (The native
/// build uses advisory locks instead, which bind those only who ask for them, too.)
///
/// One object belongs to one thread and holds at most one lock.
class QUILLON_EXPORT GLockFile {
public:
    using LockType = GLockFileImp::LockType;                          ///< for reading or for writing
    static constexpr LockType cReadLock = GLockFileImp::cReadLock;    ///< any number of objects may hold one
    static constexpr LockType cWriteLock = GLockFileImp::cWriteLock;  ///< excludes all others

    /// Touches no file.
    explicit GLockFile(const GPathName& path);
    GLockFile(const GLockFile&) = delete;
    GLockFile& operator=(const GLockFile&) = delete;
    /// Lets go of the lock.
    ~GLockFile();

    /// Never waits. False when another object holds a lock that excludes this one, and when this
    /// object holds one already, which stays. Makes the file when it is missing; an existing one that
    /// may only be read can still be locked for reading.
    ///
    /// Throws cCouldNotLock for a path that cannot become a lock: a GSimpleException when its folder
    /// is missing, a GCustomException with the path as text when a folder is in its place or when the
    /// file may not be made or opened at all.
    bool Lock(LockType type);
    /// Without a lock it does nothing.
    void UnLock();
    /// Whether this object holds such a lock; one for writing counts as one for reading, too. Says
    /// nothing about others.
    bool IsLocked(LockType type) const;
    /// Removes the file, if that can be done; others may still hold it. Throws GSimpleException
    /// cLockFileInUse while this object holds a lock.
    void DeleteFile();
    const GPathName& GetLockFileSpec() const;  ///< the file, as it was given

private:
    std::unique_ptr<GLockFileImp> mImp;
};

/// GLockByFile: holds a GLockFile's lock for as long as it is in scope.
class QUILLON_EXPORT GLockByFile {
public:
    /// With `wait`, tries again every 150 ms until the lock is free, without limit; otherwise HasLock()
    /// tells. Throws what GLockFile::Lock() throws.
    GLockByFile(const GPathName& path, GLockFile::LockType type, bool wait);
    GLockByFile(const GLockByFile&) = delete;
    GLockByFile& operator=(const GLockByFile&) = delete;
    ~GLockByFile();

    bool HasLock() const noexcept { return mHasLock; }  ///< whether the lock is held
    /// For a guard that did not get its lock: tries again every few milliseconds, for at most that long.
    /// True when it holds the lock then.
    bool WaitForLock(long milliseconds);
    void ReleaseLock();  ///< lets go of the lock early; without one it does nothing

private:
    GLockFile mLockFile;
    GLockFile::LockType mType;
    bool mHasLock;
};
