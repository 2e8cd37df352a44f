#pragma once

/// The classes behind the platform names of the framework, in a native build. Each is included here
/// and given its alias; platform/win32 has the same names.
///
/// These three stand first: they know no other class, and the classes below are made of them.
#include "platform/posix/base/PPosixCriticalSection.h"
#include "platform/posix/base/PPosixThreadCacheSlot.h"
#include "platform/posix/base/PPosixThreadLocalSlot.h"

using PCriticalSection = PPosixCriticalSection;
using PThreadCacheSlot = PPosixThreadCacheSlot;
using PThreadLocalSlot = PPosixThreadLocalSlot;

/// These are made of buffers, strings and paths, which themselves need those above: here they are
/// only named, and a source that uses one includes PPlatformFiles.h.
class PPosixFileImp;
class PPosixFileSystemImp;
class PPosixFolderWalk;

using PFileImp = PPosixFileImp;
using PFileSystemImp = PPosixFileSystemImp;
using PFolderWalk = PPosixFolderWalk;
