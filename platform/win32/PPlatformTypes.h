#pragma once

/// The classes behind the platform names of the framework, in a build for Windows. Each is included
/// here and given its alias; platform/posix has the same names.
///
/// These three stand first: they know no other class, and the classes below are made of them.
#include "platform/win32/base/PWin32CriticalSection.h"
#include "platform/win32/base/PWin32ThreadCacheSlot.h"
#include "platform/win32/base/PWin32ThreadLocalSlot.h"

using PCriticalSection = PWin32CriticalSection;
using PThreadCacheSlot = PWin32ThreadCacheSlot;
using PThreadLocalSlot = PWin32ThreadLocalSlot;

/// These are made of buffers, strings and paths, which themselves need those above: here they are
/// only named, and a source that uses one includes PPlatformFiles.h.
class PWin32FileImp;
class PWin32FileSystemImp;
class PWin32FolderWalk;

using PFileImp = PWin32FileImp;
using PFileSystemImp = PWin32FileSystemImp;
using PFolderWalk = PWin32FolderWalk;
