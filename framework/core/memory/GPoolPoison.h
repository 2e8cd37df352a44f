#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define QUILLON_POOL_POISON 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUILLON_POOL_POISON 1
#endif
#endif

#ifdef QUILLON_POOL_POISON
#include <sanitizer/asan_interface.h>
#endif

/// GPoolPoison: shows an address sanitizer which pooled blocks are free, so that it reports their use
/// as it does for the heap's. Costs nothing in a build without the sanitizer.
///
/// A free block holds the address of the next free one in its first word.
class GPoolPoison {
public:
    static void Forbid([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept {
#ifdef QUILLON_POOL_POISON
        __asan_poison_memory_region(memory, size);
#endif
    }
    static void Permit([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept {
#ifdef QUILLON_POOL_POISON
        __asan_unpoison_memory_region(memory, size);
#endif
    }

    /// Chains a free block, of which the user has no more to see.
    static void SetNext(void* block, void* next) noexcept {
        Permit(block, sizeof next);
        *static_cast<void**>(block) = next;
        Forbid(block, sizeof next);
    }
    /// Takes a block of `size` bytes for use; what it was chained to.
    static void* GetNext(void* block, [[maybe_unused]] std::size_t size) noexcept {
        Permit(block, size);
        return *static_cast<void**>(block);
    }
};
