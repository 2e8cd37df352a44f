#pragma once

#include "framework/core/memory/GSharedObject.h"

/// GSmartPtr: the name of the same pointer where the object is a GRefCount, on one thread.
template <class T>
using GSmartPtr = GSharedObject<T>;
