#pragma once

#include "framework/ipc/GSharedMemory.h"
#include "platform/posix/ipc/PMemoryIPMutexImp.h"
#include "platform/posix/ipc/PMemorySharedMemory.h"
#include "tests/Testing.h"

// The stand-in that the native tests of everything above rest on has to behave as the real thing.
#ifdef _WIN32
using SegmentsUnderTest = testing::Types<PSharedMemory, PMemorySharedMemory>;
using MutexesUnderTest = testing::Types<PIPMutexImp, PMemoryIPMutexImp>;
#else
using SegmentsUnderTest = testing::Types<PMemorySharedMemory>;
using MutexesUnderTest = testing::Types<PMemoryIPMutexImp>;
#endif
