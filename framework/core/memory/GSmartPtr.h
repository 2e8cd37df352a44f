#pragma once

/// @file
/// A share in an object that counts its references on one thread.

#include "framework/core/memory/GSharedObject.h"

/// GSmartPtr: the name of the same pointer where the object is a GRefCount, on one thread.
template <class T>
using GSmartPtr = GSharedObject<T>;
