#include "framework/core/memory/GRefCount.h"

GRefCount::~GRefCount() = default;

GThreadSafeRefCount::~GThreadSafeRefCount() = default;
