#pragma once

#include <cstddef>

/// What this process holds at the moment, exactly.
struct ProcessResources {
    std::size_t mHandles;
    std::size_t mHeapBytes;  ///< in use, in all heaps of the process

    static ProcessResources Count();
};
