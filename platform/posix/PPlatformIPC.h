#pragma once

/// The definitions of PSharedMemory, PIPMutexImp and PIPEventImp in a native build: memory of this process.
#include "platform/posix/ipc/PMemoryIPEventImp.h"
#include "platform/posix/ipc/PMemoryIPMutexImp.h"
#include "platform/posix/ipc/PMemorySharedMemory.h"

using PIPEventImp = PMemoryIPEventImp;
using PIPMutexImp = PMemoryIPMutexImp;
using PSharedMemory = PMemorySharedMemory;
