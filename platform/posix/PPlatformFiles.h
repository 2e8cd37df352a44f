#pragma once

/// The definitions of PFileImp, PFileSystemImp, PFileSystemIteratorImp and PFolderWalk on this platform.
#include "platform/posix/files/PPosixFileImp.h"
#include "platform/posix/files/PPosixFileSystemImp.h"
#include "platform/posix/files/PPosixFileSystemIteratorImp.h"
#include "platform/posix/files/PPosixFolderWalk.h"

using PFileSystemIteratorImp = PPosixFileSystemIteratorImp;
