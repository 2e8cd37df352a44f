#include <linux/membarrier.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/base/PMemory.h"

void* PMemory::AllocateAligned(std::size_t size) noexcept {
    return std::aligned_alloc(size, size);
}

void PMemory::FreeAligned(void* block) noexcept {
    std::free(block);
}

void* PMemory::AllocateFromHeap(std::size_t size) noexcept {
    return std::malloc(size);
}

void* PMemory::ReallocateInHeap(void* block, std::size_t size) noexcept {
    return std::realloc(block, size);
}

void PMemory::FreeToHeap(void* block) noexcept {
    std::free(block);
}

bool PMemory::FenceAllThreads() noexcept {
    static const bool sIsThere =
        ::syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0, 0) == 0;
    return sIsThere && ::syscall(SYS_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0, 0) == 0;
}
