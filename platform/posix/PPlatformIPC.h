#pragma once

/// The definitions of PSharedMemory and PIPMutexImp in a native build: memory of this process.
#include "platform/posix/PMemoryIPMutexImp.h"
#include "platform/posix/PMemorySharedMemory.h"

using PIPMutexImp = PMemoryIPMutexImp;
using PSharedMemory = PMemorySharedMemory;
