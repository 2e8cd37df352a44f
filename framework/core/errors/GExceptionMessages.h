#pragma once

#include "framework/core/errors/GStringPool.h"

/// The English texts of all failures, of every platform alike.
struct GExceptionMessages {
    static const GStringPoolRow* GetRows();
    static long GetCount();
};
