#pragma once

/// The definitions of PSharedMemory, PIPMutexImp and PIPEventImp on this platform.
#include "platform/win32/ipc/PWin32IPEventImp.h"
#include "platform/win32/ipc/PWin32IPMutexImp.h"
#include "platform/win32/ipc/PWin32SharedMemory.h"

using PIPEventImp = PWin32IPEventImp;
using PIPMutexImp = PWin32IPMutexImp;
using PSharedMemory = PWin32SharedMemory;
