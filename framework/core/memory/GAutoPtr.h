#pragma once

/// @file
/// The owner of one object.

#include <memory>

/// GAutoPtr: the one owner of an object, which it deletes at its end.
template <class T>
using GAutoPtr = std::unique_ptr<T>;
