#pragma once

/// The definitions of PFileImp and PFileSystemImp on this platform.
#include "platform/posix/files/PPosixFileImp.h"
#include "platform/posix/files/PPosixFileSystemImp.h"
