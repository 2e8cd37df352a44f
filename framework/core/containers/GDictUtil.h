#pragma once

#include <cstdint>

#include "framework/core/GExport.h"

class GString;

/// GDictUtil: the sizes that dictionaries take, and the line end of dictionary texts.
class QUILLON_EXPORT GDictUtil {
public:
    static constexpr std::int32_t cFirstAllocation = 7;

    /// The first value of the slot sequence that is not below `count`: 7, 13, 23, 41, ... 5613217, from
    /// there on doubled. Throws as GAllocator::ThrowOutOfMemory() beyond 31 bits.
    static long GetAllocation(long count);

    /// The platform's line ending: CR if it uses CR, then LF if it uses LF.
    static GString GetEOLString();
};
