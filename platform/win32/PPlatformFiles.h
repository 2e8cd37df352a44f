#pragma once

/// The definitions of PFileImp, PFileSystemImp and PFolderWalk on this platform.
#include "platform/win32/files/PWin32FileImp.h"
#include "platform/win32/files/PWin32FileSystemImp.h"
#include "platform/win32/files/PWin32FolderWalk.h"
