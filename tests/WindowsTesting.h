#pragma once

// What the tests of all rooms on Windows use beside Testing.h: the system itself, owners of its objects, wide
// texts and folders.
#include "platform/win32/base/PWin32ScopedHandle.h"
#include "platform/win32/core/PWin32Wide.h"
#include "tests/Testing.h"
#include "tests/core/TextForTests.h"
#include "tests/files/TestFolder.h"

#include "platform/win32/base/PWin32Api.h"

/// A file that is there, as somebody opens it who lets others do so much; nothing when that is refused.
inline PWin32ScopedHandle<PWin32FileHandle> OpenSharing(const std::filesystem::path& path, DWORD access,
                                                        DWORD share) {
    return PWin32ScopedHandle<PWin32FileHandle>(
        ::CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}
