#pragma once

/// The definitions of PSharedMemory and PIPMutexImp in a native build: memory of this process.
#include "platform/posix/ipc/PMemoryIPMutexImp.h"
#include "platform/posix/ipc/PMemorySharedMemory.h"

using PIPMutexImp = PMemoryIPMutexImp;
using PSharedMemory = PMemorySharedMemory;
