#pragma once

#include <string>

#include "framework/streams/documents/GPostScriptComments.h"
#include "platform/win32/base/PWin32ScopedHandle.h"

/// What an open job file says of itself. `path` names it in failures, which are thrown as GExceptions.
GPostScriptComments ReadJobComments(PWin32ScopedHandle<PWin32FileHandle> file, const std::wstring& path);
