#include "platform/PMemory.h"

#include "platform/win32/PWin32Api.h"

void* PMemory::AllocateAligned(std::size_t size) noexcept {
    // The system places every reservation on a boundary of 64 KiB, which is enough up to that size.
    constexpr std::size_t cGranularity = 65536;
    if (size > cGranularity) return nullptr;
    return ::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void PMemory::FreeAligned(void* block) noexcept {
    ::VirtualFree(block, 0, MEM_RELEASE);
}

void* PMemory::AllocateFromHeap(std::size_t size) noexcept {
    return ::HeapAlloc(::GetProcessHeap(), 0, size);
}

void PMemory::FreeToHeap(void* block) noexcept {
    if (block != nullptr) ::HeapFree(::GetProcessHeap(), 0, block);
}
