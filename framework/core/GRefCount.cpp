#include "framework/core/GRefCount.h"

GRefCount::~GRefCount() = default;

GThreadSafeRefCount::~GThreadSafeRefCount() = default;
