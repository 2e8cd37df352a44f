#pragma once

#include <cstddef>

#include "framework/core/memory/GAllocator.h"

/// GFastAllocatable: base of small objects that live in the pooled allocator's blocks.
///
/// A class deleted through a pointer to its base needs a virtual destructor, which tells the size of
/// the whole object. Arrays of such objects come from the ordinary heap.
class QUILLON_EXPORT GFastAllocatable {
public:
    /// Throws as GAllocator::Allocate().
    static void* operator new(std::size_t size) { return GAllocator::GetInstance().Allocate(size); }
    /// Gives the block back to the pool of its size.
    static void operator delete(void* block, std::size_t size) noexcept {
        GAllocator::GetInstance().Free(block, size);
    }
    ///@{ At a place that the caller owns, such as a table's element: no memory is taken or given back.
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void*, void*) noexcept {}
    ///@}

protected:
    GFastAllocatable() noexcept = default;
    GFastAllocatable(const GFastAllocatable&) noexcept = default;
    GFastAllocatable& operator=(const GFastAllocatable&) noexcept = default;
    ~GFastAllocatable() = default;
};
