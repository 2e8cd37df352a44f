#include "framework/ipc/GSharedMemory.h"

template class GSharedMemoryBase<PSharedMemory>;
