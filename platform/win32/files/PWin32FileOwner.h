#pragma once

#include <vector>

#include "framework/files/GFileFacts.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

/// PWin32FileOwner: one user, as the owner of files.
///
/// It does not change with the rights of the thread that asks.
class PWin32FileOwner {
public:
    /// The user of the calling thread, or of the process when the thread has no user of its own. Throws
    /// PWin32SystemException.
    PWin32FileOwner();

    GFileFacts::Owner GetOwnerOf(void* file) const;
    /// Whether the security identifier is that of the user alone, not of a group.
    bool IsUser(void* sid) const;
    /// The security descriptor of a folder that is open to this user, the system and the administrators,
    /// with all that will be in it, and inherits nothing from the folder around it.
    void* GetFolderDescriptor() const noexcept { return mFolderDescriptor.Get(); }

private:
    std::vector<unsigned char> mUser;  // the answer of the system, which begins with a pointer into itself
    PWin32ScopedHandle<PWin32LocalBlock> mFolderDescriptor;
};
