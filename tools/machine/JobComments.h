#pragma once

#include <optional>
#include <string>

#include "framework/streams/documents/GPostScriptComments.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

/// What an open job file says of itself. `path` names it in failures, which are thrown as GExceptions.
GPostScriptComments ReadJobComments(PWin32ScopedHandle<PWin32FileHandle> file, const std::wstring& path);
/// The same of the file at `path`, while others do with it what they like; nothing when it cannot be read, or
/// is none on a disk. Links are not followed.
std::optional<GPostScriptComments> TryReadJobComments(const std::wstring& path);
