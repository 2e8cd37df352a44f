#include "framework/ipc/GIPMutex.h"

template class GIPMutexBase<PIPMutexImp>;
