#pragma once

/// The definitions of PFileImp, PFileSystemImp, PFileSystemIteratorImp and PFolderWalk on this platform.
#include "platform/win32/files/PWin32FileImp.h"
#include "platform/win32/files/PWin32FileSystemImp.h"
#include "platform/win32/files/PWin32FileSystemIteratorImp.h"
#include "platform/win32/files/PWin32FolderWalk.h"

using PFileSystemIteratorImp = PWin32FileSystemIteratorImp;
