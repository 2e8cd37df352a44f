#pragma once

#include "framework/core/GExport.h"

class GPathName;

/// GLockFileImp: what a platform supplies for GLockFile, where the calls are described.
///
/// One object holds at most one lock, and lets go of it when it ends. One thread at a time.
class QUILLON_EXPORT GLockFileImp {
public:
    /// The values are part of the interface.
    enum LockType {
        cNone = 0,
        cReadLock = 1,   ///< shared
        cWriteLock = 2,  ///< exclusive
    };

    GLockFileImp(const GLockFileImp&) = delete;
    GLockFileImp& operator=(const GLockFileImp&) = delete;
    virtual ~GLockFileImp();

    virtual bool Lock(LockType type) = 0;
    virtual void UnLock() = 0;
    virtual bool IsLocked(LockType type) const = 0;
    virtual const GPathName& GetLockFileSpec() const = 0;

    /// The platform's own, for a lock file at that path; the caller owns it.
    static GLockFileImp* Create(const GPathName& path);

protected:
    GLockFileImp() = default;
};
