#include "tests/monitor/dll/ProcessResources.h"

#include <cstdint>
#include <vector>

#include "platform/win32/base/PWin32Api.h"

#include <winternl.h>

namespace {

// The system's own table of all handles: the documented call for the number does not work everywhere.
std::size_t CountHandles() {
    std::vector<std::uint64_t> buffer(1 << 17);
    const auto size = static_cast<ULONG>(buffer.size() * sizeof buffer[0]);
    if (::NtQuerySystemInformation(SystemHandleInformation, buffer.data(), size, nullptr) != 0) return 0;
    const auto& table = *reinterpret_cast<const SYSTEM_HANDLE_INFORMATION*>(buffer.data());
    const DWORD self = ::GetCurrentProcessId();
    std::size_t count = 0;
    for (ULONG i = 0; i < table.Count; ++i) count += table.Handle[i].OwnerPid == self ? 1 : 0;
    return count;
}

std::size_t CountBusyBytes(HANDLE heap) {
    std::size_t bytes = 0;
    ::HeapLock(heap);
    PROCESS_HEAP_ENTRY entry{};
    while (::HeapWalk(heap, &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    ::HeapUnlock(heap);
    return bytes;
}

std::size_t CountHeapBytes() {
    HANDLE heaps[64];
    const DWORD count = ::GetProcessHeaps(64, heaps);
    std::size_t bytes = 0;
    for (DWORD i = 0; i < count && i < 64; ++i) bytes += CountBusyBytes(heaps[i]);
    return bytes;
}

}  // namespace

ProcessResources ProcessResources::Count() {
    // The heap first: counting handles needs memory itself.
    const std::size_t heapBytes = CountHeapBytes();
    return {CountHandles(), heapBytes};
}
