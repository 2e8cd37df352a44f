#pragma once

/// The definitions of PFileImp and PFileSystemImp on this platform.
#include "platform/win32/files/PWin32FileImp.h"
#include "platform/win32/files/PWin32FileSystemImp.h"
