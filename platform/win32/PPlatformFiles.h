#pragma once

/// The definitions of PFileImp and PFileSystemImp on this platform.
#include "platform/win32/PWin32FileImp.h"
#include "platform/win32/PWin32FileSystemImp.h"
