#pragma once

/// The definitions of PFileImp and PFileSystemImp on this platform.
#include "platform/posix/PPosixFileImp.h"
#include "platform/posix/PPosixFileSystemImp.h"
