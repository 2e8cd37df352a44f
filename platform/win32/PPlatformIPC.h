#pragma once

/// The definitions of PSharedMemory and PIPMutexImp on this platform.
#include "platform/win32/ipc/PWin32IPMutexImp.h"
#include "platform/win32/ipc/PWin32SharedMemory.h"

using PIPMutexImp = PWin32IPMutexImp;
using PSharedMemory = PWin32SharedMemory;
