#include "platform/base/PMemory.h"

#include "platform/win32/base/PWin32Api.h"

namespace __gnu_cxx {
void __freeres();
}

namespace {

// The C++ run-time library reserves a block for exceptions that are thrown without memory, and leaves
// it to the end of the process. A DLL that brings the library along would lose it at every unload.
struct ExceptionReserve {
    ~ExceptionReserve() { __gnu_cxx::__freeres(); }
};

// Ends after every other static object of the module, so that those may still throw.
ExceptionReserve sExceptionReserve __attribute__((init_priority(101)));

}  // namespace

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

void* PMemory::ReallocateInHeap(void* block, std::size_t size) noexcept {
    return ::HeapReAlloc(::GetProcessHeap(), 0, block, size);
}

void PMemory::FreeToHeap(void* block) noexcept {
    if (block != nullptr) ::HeapFree(::GetProcessHeap(), 0, block);
}

bool PMemory::FenceAllThreads() noexcept {
    ::FlushProcessWriteBuffers();
    return true;
}
